#pragma once

#include "StepFile.h"

#include <cstddef>

namespace VX
{

/// Whether an instance of type `from` may refer to one of type `to`, as far as the common types of exact geometry are
/// concerned: a line needs a point and a vector, a face needs bounds and a surface. What it does not know passes.
/// @param position  of the reference among those of the instance, from 0
/// @param count  how many references the instance has
/// @threads any
[[nodiscard]] bool mayReferTo(StepType from, std::size_t position, std::size_t count, StepType to);

} // namespace VX
