#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <cstddef>
#include <functional>
#include <optional>

namespace VX
{

/// What a surface is made of.
struct MeshStructure
{
    std::size_t components = 0;  ///< parts that share no point
    std::size_t holes = 0;       ///< borders that share no point: loops of sides that one face alone has
    std::size_t borderEdges = 0; ///< those sides
};

/// The triangles of `mesh` over points of which no two are at the same place; points that none uses then stay. Parts
/// from CAD files have points of their own on each face, so that normals differ along the edges: that makes no hole.
/// @threads any; uses the TBB pool
[[nodiscard]] VXVIEWER_API Mesh joinEqualPoints(const Mesh& mesh);

/// Joins points by triangles, and the points of the border by its sides, in two passes with disjoint sets (Tarjan,
/// 1975).
/// @param isToStop  asked between the passes; may be empty
/// @return nothing where it was to stop
/// @threads any; uses the TBB pool
[[nodiscard]] VXVIEWER_API std::optional<MeshStructure> findMeshStructure(const Mesh& mesh,
                                                                          const std::function<bool()>& isToStop = {});

} // namespace VX
