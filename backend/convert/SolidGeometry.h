#pragma once

#include "BodyGeometry.h"
#include "StepSolid.h"

#include <optional>
#include <span>

namespace VX
{

/// Gathers the triangles of meshed solids into one mesh. Vertices belong to one face each, with the normals of its
/// surface, so that curved faces look smooth and the edges between them crisp.
/// The edges are the boundaries of faces, and those between faces whose normals differ by more than 3 degrees; seams of
/// closed surfaces and edges where faces meet smoothly are left out.
/// @return nothing when there is no triangle
/// @threads any; uses the TBB pool
[[nodiscard]] std::optional<BodyGeometry> makeSolidGeometry(std::span<const StepSolid* const> solids);

} // namespace VX
