#pragma once

#include "StepRecord.h"

#include <string_view>
#include <vector>

namespace VX
{

/// Whether `text` is an instance as the grammar of ISO 10303-21 wants it, so that a strict reader takes it.
/// @param references  if not null, gets the numbers of the instances that a well-formed one refers to, in order
[[nodiscard]] bool isWellFormedStepInstance(std::string_view text, std::vector<StepId>* references = nullptr);

} // namespace VX
