#pragma once

#include "StepSolid.h"

namespace VX
{

/// How much a shape is looked into before it is meshed.
enum class HealingDepth
{
    /// What meshing needs: curves of the edges in the surfaces' parameters, seams, degenerated edges, the order and the
    /// orientation of edges, wires and faces.
    Quick,
    /// All that the library knows, self-intersections and tolerances among it: twice as slow, for shapes that the
    /// mesher cannot mesh otherwise.
    Thorough
};

/// Heals the shape of `solid` in place and follows the replacement of its coloured faces. A shape that the healing
/// fails on stays as it is.
/// @threads any, for shapes that share no edges and faces
void healStepSolid(StepSolid& solid, HealingDepth depth);

} // namespace VX
