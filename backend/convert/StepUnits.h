#pragma once

#include "StepFile.h"

namespace VX
{

/// The length of one unit in millimetres, as a representation's context assigns it: SI units with their prefixes, and
/// units such as the inch that are based on others. Where the context assigns none it is the millimetre.
/// @param context  a GLOBAL_UNIT_ASSIGNED_CONTEXT, on its own or as a part; may be `noStepInstance`
/// @threads any
[[nodiscard]] double stepLengthUnit(const StepFile& file, StepIndex context);

} // namespace VX
