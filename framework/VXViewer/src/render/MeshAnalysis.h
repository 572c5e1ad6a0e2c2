#pragma once

#include "render/VertexNormals.h"

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <optional>
#include <vector>

namespace VX
{

/// A run of consecutive triangles that is drawn or left out as a whole.
struct MeshCluster
{
    std::uint32_t firstTriangle = 0;
    std::uint32_t triangleCount = 0;
    Box3f box;     ///< of its points
    Box3f normals; ///< of its unit normals; empty when all its triangles are degenerate
};

/// What drawing needs to know of a mesh.
struct MeshAnalysis
{
    static constexpr std::uint32_t clusterTriangles = 128;

    Box3f box;
    std::vector<MeshCluster> clusters;
    /// Every edge has its two triangles and every part of the surface has its outside on the outside: from outside
    /// the box nobody sees the back of a triangle.
    bool solid = false;
    /// Sums of the adjacent unit normals weighted by angle (Thürmer and Wüthrich, 1998); nothing when the mesh brings
    /// its own normals.
    std::optional<NormalSums> normalSums;
};

/// The runs of `triangles`, which are few enough for one thread.
/// @threads any
[[nodiscard]] std::vector<MeshCluster> makeClusters(const std::vector<Vector3f>& points,
                                                    const std::vector<Triangle>& triangles);

/// One pass over the triangles, and over those of closed meshes a second and third light one.
/// @threads any; uses the TBB pool
VXVIEWER_API MeshAnalysis analyzeMesh(const Mesh& mesh);

} // namespace VX
