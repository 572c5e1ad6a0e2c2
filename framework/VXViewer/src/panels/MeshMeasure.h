#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <optional>

namespace VX
{

/// How large a surface is and what it encloses, in scene units squared and cubed.
struct MeshMeasure
{
    double area = 0;
    std::optional<double> volume; ///< of a closed surface; negative where it is inside out, which a mirror image is not
};

/// Measures `mesh` after `toScene`. The volume is the sum of the signed tetrahedra between a point and the triangles
/// (Zhang and Chen, 2001). The surface counts as closed when each edge is used as often in one direction as in the
/// other, which sums of random numbers per edge decide: a surface that is open passes once in 2^64 cases.
/// @threads any; uses the TBB pool
[[nodiscard]] VXVIEWER_API MeshMeasure measureMesh(const Mesh& mesh, const Transform& toScene);

} // namespace VX
