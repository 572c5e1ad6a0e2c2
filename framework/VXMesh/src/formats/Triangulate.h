#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <span>

namespace VX
{

/// Cuts a polygon into triangles with its winding: a fan where it is convex, else by clipping ears (Meisters, 1975) in
/// the plane of its mean normal. Where that finds no ear, as in polygons that cross themselves, the rest becomes a fan.
/// @param corners  n finite points, at least 3
/// @param[out] triangles  room for n - 2 triangles, whose indices count the corners
/// @threads any
VXMESH_API void triangulatePolygon(std::span<const Vector3d> corners, std::span<Triangle> triangles);

} // namespace VX
