#pragma once

#include <VXMesh/Geometry.h>

#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS_Shape.hxx>

#include <cstdint>
#include <vector>

namespace VX
{

/// Finds the polylines of the sharp edges of meshed faces: boundaries, and edges whose faces' normals differ by more
/// than 3 degrees. Seams of closed surfaces and smooth edges are left out, unless the surface has a crease there.
/// @param shape       holds the edges
/// @param faces       the meshed faces of `shape`
/// @param firstPoints the index of each face's first vertex in the mesh
/// @param normals     of the mesh's vertices
/// @return each edge's vertices of the mesh, in order along the edge
/// @threads any
[[nodiscard]] std::vector<std::vector<std::uint32_t>> findSharpEdges(const TopoDS_Shape& shape,
                                                                     const TopTools_IndexedMapOfShape& faces,
                                                                     const std::vector<std::uint32_t>& firstPoints,
                                                                     const std::vector<Vector3f>& normals);

} // namespace VX
