#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// Object file format: OFF, and its kinds with colours (COFF) and normals (NOFF) of points, as text.
[[nodiscard]] FileFormat offFormat();

/// Reads the bytes of an OFF file into a mesh, or into a point cloud where it has no faces.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readOff(const Source& source,
                                                                          const ProgressCallback& progress);

/// Writes what is visible of `root` and below it as one mesh in scene coordinates.
[[nodiscard]] tl::expected<void, std::string> writeOff(const Object& root, const std::filesystem::path& path,
                                                       const ProgressCallback& progress, AtomicFile::Existing existing);

} // namespace VX
