#pragma once

#include <VXMesh/Export.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// Where the program is installed.
struct SystemPath
{
    /// The file of the running program, absolute and without symbolic links.
    /// @return `Cannot find the program's own file: REASON.`
    /// @threads any
    [[nodiscard]] VXMESH_API static tl::expected<std::filesystem::path, std::string> getExecutablePath();
};

} // namespace VX
