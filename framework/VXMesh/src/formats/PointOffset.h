#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Geometry.h>

#include <vector>

namespace VX
{

/// Where points lie far from the origin compared with their extent, single precision would lose their detail. They are
/// then kept relative to an offset, a round number near their middle, which belongs into the object's transform.
/// Elsewhere the offset is 0. Points that are not finite stay so and do not count.

/// @param points  N
/// @param[out] offset  what was subtracted
/// @return the points less the offset
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API std::vector<Vector3f> subtractOffset(const std::vector<Vector3d>& points, Vector3d& offset);

/// The same in place, for points that are in single precision already; it loses nothing.
/// @return the offset
/// @threads any; uses the TBB pool
[[nodiscard]] VXMESH_API Vector3d subtractOffset(std::vector<Vector3f>& points);

/// The offset for points in `box`.
[[nodiscard]] VXMESH_API Vector3d chooseOffset(const Box3d& box);

} // namespace VX
