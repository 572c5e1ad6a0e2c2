#pragma once

#include <quorvix/Export.h>

#include <tl/expected.hpp>

#include <string>

namespace VX
{

/// Whether an agent may use a tool now: any while a user is signed in, otherwise only those that close the program and
/// take its picture.
/// @return nothing; or what to tell the agent
/// @threads any
[[nodiscard]] QUORVIX_API tl::expected<void, std::string> checkMcpTool(const std::string& toolName);

} // namespace VX
