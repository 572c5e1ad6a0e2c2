#pragma once

#include <VXMesh/Export.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace VX
{

/// One sentence for the user about a file operation that failed: `Cannot open "part.stl": permission denied.`
/// It names the file without its folder.
/// @param action  what was tried, in lower case: "open", "write"
/// @threads any
[[nodiscard]] VXMESH_API std::string fileErrorText(std::string_view action, const std::filesystem::path& path,
                                                   const std::error_code& error);

/// The same with a reason in words, which begins in lower case and has its own full stop.
[[nodiscard]] VXMESH_API std::string fileErrorText(std::string_view action, const std::filesystem::path& path,
                                                   std::string_view reason);

} // namespace VX
