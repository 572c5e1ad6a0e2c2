#pragma once

#include <cstdint>

namespace VX
{

/// Bytes of memory that this machine has; 0 where it does not say.
std::uint64_t machineMemory();

} // namespace VX
