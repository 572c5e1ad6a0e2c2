#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

namespace VX
{

/// A few threads for work that takes too long for those of the server, with a bounded queue before them.
/// @threads any
class WorkerPool
{
public:
    using Task = std::function<void()>;

    /// @param queueLimit  tasks that may wait
    WorkerPool(unsigned threads, std::size_t queueLimit);

    /// Drops the tasks that wait and waits for those that run.
    ~WorkerPool();

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// Runs `task`, which must not throw, on one of the threads.
    /// @return false where too many wait already
    [[nodiscard]] bool run(Task task);

private:
    void work_();
    [[nodiscard]] Task next_();

    const std::size_t queueLimit_;
    Mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<Task> tasks_ VX_GUARDED_BY(mutex_);
    bool stopping_ VX_GUARDED_BY(mutex_) = false;
    std::vector<std::thread> threads_;
};

} // namespace VX
