#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// Wavefront OBJ: faces, polylines, points, vertex colours, objects and groups.
[[nodiscard]] FileFormat objFormat();

/// Reads the bytes of an OBJ file: into one object, or into one for each object and group below one named after the
/// file; into a point cloud where there are only points.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readObj(const Source& source,
                                                                          const ProgressCallback& progress);

/// Writes what is visible of `root` and below it in scene coordinates, each object as an "o" of its own.
[[nodiscard]] tl::expected<void, std::string> writeObj(const Object& root, const std::filesystem::path& path,
                                                       const ProgressCallback& progress, AtomicFile::Existing existing);

} // namespace VX
