#pragma once

#include "launcher/CommandLine.h"
#include "launcher/DeepLink.h"

namespace VX
{

/// Runs the program as `line` says.
/// @param arguments  all arguments, normalised, for those parts that read their own
/// @param link       what became of the sign-in link among them
/// @return the exit status: 0; 1 when a file could not be opened or written; 2 when the arguments cannot be used
/// @threads UI thread
[[nodiscard]] int runLauncher(const CommandLine& line, std::vector<std::string> arguments, DeepLink link);

} // namespace VX
