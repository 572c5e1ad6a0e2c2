#pragma once

#include <VXMesh/Geometry.h>

#include <TopoDS_Face.hxx>

#include <cstddef>
#include <cstdint>

namespace VX
{

/// The number of vertices and triangles of a meshed face; 0 where it is not meshed.
struct FaceMeshSize
{
    std::size_t points = 0;
    std::size_t triangles = 0;
};

[[nodiscard]] FaceMeshSize faceMeshSize(const TopoDS_Face& face);

/// Where to put a face's vertices and triangles.
struct FaceMeshTarget
{
    Vector3d* points = nullptr;
    Vector3f* normals = nullptr;
    Triangle* triangles = nullptr;
    std::uint32_t firstPoint = 0; ///< the index of the first vertex in the mesh
};

/// Writes the vertices, normals and triangles of a meshed face, seen from outside. The normals are those of the
/// surface; at points without one, such as the tip of a cone, the average of the triangles there.
/// @threads any
void writeFaceMesh(const TopoDS_Face& face, const FaceMeshTarget& target);

} // namespace VX
