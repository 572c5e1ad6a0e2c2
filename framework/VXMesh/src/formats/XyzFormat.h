#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

namespace VX
{

class Source;

/// Points as text, one a line: x y z, and colours or normals behind them.
[[nodiscard]] FileFormat xyzFormat();

/// Reads the bytes of such a file into a point cloud.
/// @return one sentence for the user, or "Operation was canceled"
[[nodiscard]] VXMESH_API tl::expected<LoadedObjects, std::string> readXyz(const Source& source,
                                                                          const ProgressCallback& progress);

/// Writes the points of what is visible of `root` and below it in scene coordinates, with colours where any point has
/// one, else with normals where all points have one.
[[nodiscard]] tl::expected<void, std::string> writeXyz(const Object& root, const std::filesystem::path& path,
                                                       const ProgressCallback& progress, AtomicFile::Existing existing);

} // namespace VX
