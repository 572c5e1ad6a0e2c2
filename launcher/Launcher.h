#pragma once

#include "launcher/CommandLine.h"

namespace VX
{

/// Runs the program as `line` says.
/// @param arguments  all arguments, normalised, for those parts that read their own
/// @return the exit status: 0; 1 when a file could not be opened or written; 2 when the arguments cannot be used
/// @threads UI thread
[[nodiscard]] int runLauncher(const CommandLine& line, const std::vector<std::string>& arguments);

} // namespace VX
