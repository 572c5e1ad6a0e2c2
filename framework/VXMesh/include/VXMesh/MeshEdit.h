#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/FaceSet.h>
#include <VXMesh/Geometry.h>

namespace VX
{

/// `mesh` without `faces` and without the points that no face uses then. What is left keeps its order and its normals
/// and colours.
/// @param faces  of `mesh`
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API Mesh deleteFaces(const Mesh& mesh, const FaceSet& faces);

} // namespace VX
