#pragma once

#include <VXMcp/Server.h>

namespace VX::Mcp
{

/// The server of this process. Nothing is registered in it, and it does not run, until somebody does so.
/// @threads any
[[nodiscard]] VXMCP_API Server& getDefaultServer();

} // namespace VX::Mcp
