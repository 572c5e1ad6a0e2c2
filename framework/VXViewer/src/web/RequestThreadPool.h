#pragma once

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Export.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <thread>

namespace VX
{

/// Runs tasks that may block for long: another thread is started while all are busy, and one that has had nothing to do
/// for a while ends.
class VXVIEWER_API RequestThreadPool
{
public:
    struct Limits
    {
        std::size_t threads = 64;
        std::chrono::milliseconds idleTime{10'000};
    };

    RequestThreadPool();
    explicit RequestThreadPool(Limits limits);

    /// Finishes.
    ~RequestThreadPool();

    RequestThreadPool(const RequestThreadPool&) = delete;
    RequestThreadPool& operator=(const RequestThreadPool&) = delete;

    /// Runs `task` once on a thread of the pool; while as many as there may be are busy, the tasks wait in order. What
    /// a task throws is logged and dropped.
    /// @return false where the pool has finished or no thread can be started; the task is not run then
    /// @threads any
    [[nodiscard]] bool post(const std::function<void()>& task);

    /// Waits until every task has run, also those that tasks post meanwhile, and ends the threads.
    /// @threads one, not of the pool
    void finish();

    /// @threads any
    [[nodiscard]] std::size_t threadCount() const;

private:
    using Threads = std::list<std::thread>;

    bool startThread_() VX_REQUIRES(mutex_);
    bool waitForTask_(MutexLock& lock) VX_REQUIRES(mutex_);
    void run_(Threads::iterator self);

    const Limits limits_;
    mutable Mutex mutex_;
    std::condition_variable_any hasTask_;
    std::condition_variable_any hasEnded_;
    std::deque<std::function<void()>> tasks_ VX_GUARDED_BY(mutex_);
    Threads threads_ VX_GUARDED_BY(mutex_);
    Threads ended_ VX_GUARDED_BY(mutex_); ///< have left the loop, wait to be joined
    std::size_t idle_ VX_GUARDED_BY(mutex_) = 0;
    bool isFinishing_ VX_GUARDED_BY(mutex_) = false;
    bool isFinished_ VX_GUARDED_BY(mutex_) = false;
};

} // namespace VX
