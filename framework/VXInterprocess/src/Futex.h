#pragma once

#include <atomic>
#include <cstdint>

namespace VX
{

/// Blocks while `word`, which other processes may have mapped too, has this value and nobody wakes it. Returns without
/// a reason at times.
/// @throws std::system_error
void futexWait(const std::atomic<std::uint32_t>& word, std::uint32_t value);

/// Adds 1 << `bit` to `word` and wakes all that wait for it, in all processes. A process that is killed does both or
/// nothing.
/// @throws std::system_error
void futexAddAndWake(std::atomic<std::uint32_t>& word, unsigned bit);

} // namespace VX
