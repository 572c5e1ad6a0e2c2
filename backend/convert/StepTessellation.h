#pragma once

#include "StepSolid.h"

#include <span>

namespace VX
{

/// The largest distance of the triangles from the surfaces, in parts of the diagonal of the part's box.
inline constexpr double chordTolerance = 0.001;
/// The largest angle between neighbouring segments and normals, in radians: 20 degrees.
inline constexpr double angleTolerance = 0.349;

/// Heals solids, all of them different, several at a time.
/// @threads one at a time; uses the TBB pool
void healStepSolids(std::span<StepSolid> solids);

/// The diagonal of the box around healed solids, in millimetres; 0 where they have no extent.
[[nodiscard]] double diagonalOf(std::span<const StepSolid* const> solids);

/// A solid to mesh, and how finely.
struct TessellationTask
{
    StepSolid* solid = nullptr;
    double diagonal = 0; ///< of the part that the solid belongs to
};

/// Meshes the faces of healed solids, all of them different; the triangles stay with the faces. A solid with a face
/// that cannot be meshed is healed thoroughly and meshed once more.
/// @threads one at a time; uses the TBB pool
void tessellateStepSolids(std::span<const TessellationTask> tasks);

} // namespace VX
