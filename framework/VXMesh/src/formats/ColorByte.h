#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace VX
{

/// A colour channel that should lie from 0 to 255 as a byte; what is no number gives 0.
inline std::uint8_t toColorByte(double value)
{
    constexpr double kMost = 255.0;
    return value > 0.0 ? static_cast<std::uint8_t>(std::lround(std::min(value, kMost))) : std::uint8_t{0};
}

} // namespace VX
