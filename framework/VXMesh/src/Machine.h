#pragma once

#include <cstdint>
#include <string>

namespace VX::Machine
{

/// What the operating system says of itself and of the hardware; see SystemInfo.h.
[[nodiscard]] std::string osNoSpaces();
[[nodiscard]] std::string detailedOsName();
[[nodiscard]] std::string cpuName();

/// Zero where it is not known.
[[nodiscard]] std::uint64_t memoryBytes();

} // namespace VX::Machine
