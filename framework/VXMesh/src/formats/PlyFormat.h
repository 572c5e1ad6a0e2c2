#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// Polygon file format (Turk, 1994): text and both binary orders are read, little-endian binary is written.
[[nodiscard]] FileFormat plyFormat();

/// Reads the bytes of a PLY file into a mesh, or into a point cloud where it has no faces.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readPly(const Source& source,
                                                                          const ProgressCallback& progress);

/// Writes what is visible of `root` and below it as one mesh in scene coordinates.
[[nodiscard]] tl::expected<void, std::string> writePly(const Object& root, const std::filesystem::path& path,
                                                       const ProgressCallback& progress, AtomicFile::Existing existing);

} // namespace VX
