#pragma once

#include <VXMesh/Progress.h>

#include <atomic>
#include <cstddef>
#include <thread>

namespace VX
{

/// Progress of a parallel loop: any thread counts, and the thread that made this object, which takes part in the loop,
/// calls the callback.
class ParallelProgress
{
public:
    /// @param total  of all counts, at least 1
    ParallelProgress(const ProgressCallback& callback, std::size_t total)
        : callback_(callback)
        , total_(static_cast<float>(total))
        , owner_(std::this_thread::get_id())
    {
    }

    /// @return false when the loop is to stop
    bool advance(std::size_t count = 1)
    {
        const std::size_t done = done_.fetch_add(count, std::memory_order_relaxed) + count;
        if (callback_ && std::this_thread::get_id() == owner_ && !isCanceled() &&
            !callback_(static_cast<float>(done) / total_))
            canceled_.store(true, std::memory_order_relaxed);
        return !isCanceled();
    }

    [[nodiscard]] bool isCanceled() const { return canceled_.load(std::memory_order_relaxed); }

private:
    ProgressCallback callback_;
    float total_;
    std::thread::id owner_;
    std::atomic<std::size_t> done_{0};
    std::atomic<bool> canceled_{false};
};

} // namespace VX
