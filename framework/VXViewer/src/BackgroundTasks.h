#pragma once

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/Export.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

namespace VX
{

/// Runs functions on threads of its own, a few at once and the others in order as threads get free. Not for short
/// computations, which the TBB pool is for: one of these may wait for minutes.
/// @threads any
class VXVIEWER_API BackgroundTasks
{
public:
    explicit BackgroundTasks(std::size_t maxThreads);

    /// `stop`.
    ~BackgroundTasks();

    BackgroundTasks(const BackgroundTasks&) = delete;
    BackgroundTasks& operator=(const BackgroundTasks&) = delete;

    /// Runs `work`, which throws nothing, soon.
    void start(std::function<void()> work);

    /// Forgets what has not begun and waits for what has; `start` works again then.
    void stop();

private:
    void run_();

    const std::size_t maxThreads_;
    Mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<std::function<void()>> waiting_ VX_GUARDED_BY(mutex_);
    std::vector<std::thread> threads_ VX_GUARDED_BY(mutex_);
    std::size_t idleThreads_ VX_GUARDED_BY(mutex_) = 0;
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
};

} // namespace VX
