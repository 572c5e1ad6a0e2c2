#pragma once

#include <cstddef>
#include <thread>
#include <vector>

namespace VX::Test
{

/// Runs `body(i)` for i from 0 to `count` - 1, each on a thread of its own.
/// @return the threads; the end of the vector, or its `clear`, waits for them
template <typename Body>
[[nodiscard]] std::vector<std::jthread> startThreads(std::size_t count, const Body& body)
{
    std::vector<std::jthread> threads;
    threads.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        threads.emplace_back([body, i] { body(i); });
    return threads;
}

} // namespace VX::Test
