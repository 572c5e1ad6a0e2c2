#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <span>

namespace VX
{

/// The smallest axis-parallel box around N finite points; empty for none.
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API Box3f computeBox(std::span<const Vector3f> points);

/// The smallest axis-parallel box around N finite points after `transform`; empty for none.
/// @param box  the points' own box: saves the walk over them where `transform` keeps axes parallel to axes
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API Box3d computeBox(std::span<const Vector3f> points, const Box3d& box,
                                          const Transform& transform);

} // namespace VX
