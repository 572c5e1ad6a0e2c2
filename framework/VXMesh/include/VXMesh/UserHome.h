#pragma once

#include <VXMesh/Export.h>

#include <filesystem>

namespace VX
{

/// The user's home folder; the private temporary one of UserFolders.h where none is known.
/// @threads any
[[nodiscard]] VXMESH_API std::filesystem::path getUserHomeDir();

} // namespace VX
