#pragma once

#include "StepSolid.h"

#include <memory>
#include <span>

namespace VX
{

/// What a body of the file looks like, ready for the scene.
struct BodyGeometry
{
    std::shared_ptr<const Mesh> mesh = {};   ///< never without triangles; with face colours only where they differ
    std::shared_ptr<const Lines> edges = {}; ///< the sharp edges; null where there are none
    Vector3d offset = Vector3d::Zero();      ///< to be added to the points, for bodies far from the origin
    std::optional<Color> color = {};         ///< of the faces where `mesh` has no colours, else of the body
};

/// Whether there is a triangle and all points are finite: a damaged file may place them beyond all numbers.
[[nodiscard]] bool isDrawable(const Mesh& mesh);

/// Gathers the triangles of meshed solids into one mesh. Vertices belong to one face each, with the normals of its
/// surface, so that curved faces look smooth and the edges between them crisp.
/// The edges are the boundaries of faces, and those between faces whose normals differ by more than 3 degrees; seams of
/// closed surfaces and edges where faces meet smoothly are left out.
/// @return nothing when there is no triangle
/// @threads any; uses the TBB pool
[[nodiscard]] std::optional<BodyGeometry> makeBodyGeometry(std::span<const StepSolid* const> solids);

} // namespace VX
