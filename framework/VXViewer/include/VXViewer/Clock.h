#pragma once

#include <chrono>

namespace VX
{

/// Seconds of a clock that only moves forward, for animations and waiting.
/// @threads any
[[nodiscard]] inline double monotonicSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace VX
