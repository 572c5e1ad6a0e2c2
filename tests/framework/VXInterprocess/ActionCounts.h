#pragma once

#include <atomic>
#include <cstdint>

namespace VX::Test
{

/// What the notifying processes count in memory that they share with the test.
struct ActionCounts
{
    std::atomic<std::uint64_t> started;  ///< actions
    std::atomic<std::uint64_t> returned; ///< calls of `notify`
};

} // namespace VX::Test
