#pragma once

#include <VXViewer/Export.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace VX
{

/// A running program that serves agents, as its file in getUserRuntimeDir() says, by which other programs of the user
/// find it. The file has mode 0600.
struct AgentInstance
{
    std::int64_t process = 0; ///< its number
    std::uint16_t port = 0;   ///< on 127.0.0.1, path /mcp
};

/// Writes the file of this process, in place of an earlier one.
/// @return `Cannot write "NAME": REASON.`; `Cannot create "NAME": REASON.`
/// @threads any
[[nodiscard]] VXVIEWER_API tl::expected<void, std::string> announceAgentInstance(std::uint16_t port);

/// Removes it.
/// @threads any
VXVIEWER_API void withdrawAgentInstance();

/// Those that run now, the one started last in front. Files of processes that ended without removing them are removed.
/// @threads any
[[nodiscard]] VXVIEWER_API std::vector<AgentInstance> findAgentInstances();

} // namespace VX
