#pragma once

#include "launcher/CommandLine.h"

namespace VX
{

/// Connects an agent on standard input and output to the running program, until the input ends. Where none runs it says
/// so in answer to each request or, with `-hidden`, starts one that ends with this process, in whatever way that ends.
/// @param line  with `-mcpPort`, only the program that serves there counts
/// @return the exit status, 0
[[nodiscard]] int runMcpStdio(const CommandLine& line);

} // namespace VX
