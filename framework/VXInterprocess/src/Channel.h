#pragma once

#include "RobustMutex_linux.h"

#include <VXInterprocess/Export.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <type_traits>

namespace VX
{

/// What the objects of one name share: a lock, and a count of notifications that can be slept on. Lies in memory that
/// several processes have mapped, any of which may die at any moment.
class VXINTERPROCESS_API Channel
{
public:
    /// The state at one moment.
    struct Look
    {
        std::uint64_t step; ///< grows by one with each notification
        std::uint32_t bell; ///< changes with each notification and each `rouse`
    };

    Channel();

    /// Runs `action` under the lock, then counts a step and wakes all sleepers.
    void notify(const std::function<void()>& action);

    [[nodiscard]] Look look() const;

    /// Blocks until something has happened since `last`. Returns without a reason at times.
    void sleep(const Look& last) const;

    /// Wakes all sleepers without a step.
    void rouse();

private:
    RobustMutex mutex_;
    // A notification counts once its step is in the bell. The whole number is announced before that and is one too
    // high in between, for good if the process dies there.
    std::atomic<std::uint64_t> announced_;
    std::atomic<std::uint32_t> bell_;
};

static_assert(std::is_trivially_destructible_v<Channel>, "the memory goes without a destructor");
static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "it is shared with other processes");

} // namespace VX
