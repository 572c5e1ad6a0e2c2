#pragma once

#include "StepFile.h"

#include <VXMesh/Geometry.h>

#include <optional>

namespace VX
{

/// The transform that an AXIS2_PLACEMENT_3D or a CARTESIAN_TRANSFORMATION_OPERATOR_3D (which may scale and mirror)
/// stands for, from the coordinates placed to those of its representation.
/// @param unit  millimetres in the length unit of the representation; the transform's translation is in millimetres
/// @return nothing where the instance is neither, or damaged
/// @threads any
[[nodiscard]] std::optional<Transform> stepPlacement(const StepFile& file, StepIndex placement, double unit);

} // namespace VX
