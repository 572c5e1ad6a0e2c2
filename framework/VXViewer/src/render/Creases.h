#pragma once

#include "render/VertexNormals.h"

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <vector>

namespace VX
{

/// What makes a smoothly shaded mesh keep its sharp edges: points on such edges get one normal for each of the smooth
/// areas that meet there.
struct Creases
{
    /// A drawn vertex that replaces another point's, or takes its place in some triangles.
    struct Vertex
    {
        std::uint32_t point = 0; ///< where it lies
        Vector3f normal = Vector3f::Zero();
    };

    /// Corner k of triangle t (`corner` is 3 t + k) uses vertex `vertex` of `added`.
    struct Patch
    {
        std::uint32_t corner = 0;
        std::uint32_t vertex = 0;
    };

    std::vector<Vertex> changed;
    std::vector<Vertex> added;
    std::vector<Patch> patches;
    /// The sharp edges and the open borders, between points of the mesh, each once; without short scraps, which are the
    /// noise of a scan.
    std::vector<Segment> edges;
};

/// Finds the edges where the directions of the adjacent triangles differ by more than 33 degrees.
/// @param sums  the normals of the points, from all their triangles
/// @threads any; uses the TBB pool
[[nodiscard]] VXVIEWER_API Creases findCreases(const Mesh& mesh, const NormalSums& sums);

} // namespace VX
