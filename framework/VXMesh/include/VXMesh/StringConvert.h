#pragma once

#include <VXMesh/Export.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// `text` with the letters A to Z in lower case; every other byte stays, so UTF-8 does.
/// @threads any
[[nodiscard]] VXMESH_API std::string toLower(std::string text);

/// `text` without the blanks, tabs and line ends that it begins with.
/// @threads any
[[nodiscard]] VXMESH_API std::string trimLeft(std::string_view text);

/// `path` as UTF-8, with "/" between its parts.
/// @threads any
[[nodiscard]] VXMESH_API std::string utf8string(const std::filesystem::path& path);

/// The path that `text`, in UTF-8, names.
/// @threads any
[[nodiscard]] VXMESH_API std::filesystem::path pathFromUtf8(std::string_view text);

/// What kind of files `paths` are, for telemetry and messages: "STL file" for one, "3 STL files" for several of one
/// kind, "3 files" for different kinds, "file" for a kind that is not well known. Never a part of a file's name: an
/// ending that is not a well-known file format could say something about its owner.
/// @threads any
[[nodiscard]] VXMESH_API std::string commonFilesName(const std::vector<std::filesystem::path>& paths);

} // namespace VX
