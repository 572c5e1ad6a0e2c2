#pragma once

#include "LogStore.h"

#include <string>
#include <vector>

namespace VX
{

/// A table of the columns day, action, version and count, each wide enough for what is in it.
/// @threads any
[[nodiscard]] std::string statsTable(const std::vector<ActionCount>& counts);

} // namespace VX
