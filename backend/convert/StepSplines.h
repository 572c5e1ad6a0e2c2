#pragma once

#include "StepFile.h"

namespace VX
{

/// Whether the counts of a B-spline curve or surface fit each other: a degree from 1 to 25, as many control points in
/// each row, and multiplicities of knots that belong to about so many points. The geometry library takes memory as the
/// counts tell it, and reads beyond the points where they lie.
/// @return true for every instance that is no B-spline
/// @threads any
[[nodiscard]] bool hasFittingSplineCounts(const StepFile& file, StepIndex index);

} // namespace VX
