#include "WorkerPool.h"

#include <utility>

namespace VX
{

WorkerPool::WorkerPool(unsigned threads, std::size_t queueLimit)
    : queueLimit_(queueLimit)
{
    for (unsigned i = 0; i < threads; ++i)
        threads_.emplace_back([this] { work_(); });
}

WorkerPool::~WorkerPool()
{
    std::deque<Task> dropped;
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
        dropped.swap(tasks_);
    }
    changed_.notify_all();
    dropped.clear();
    for (auto& thread : threads_)
        thread.join();
}

bool WorkerPool::run(Task task)
{
    {
        const MutexLock lock(mutex_);
        if (stopping_ || tasks_.size() >= queueLimit_)
            return false;
        tasks_.push_back(std::move(task));
    }
    changed_.notify_one();
    return true;
}

/// @return an empty task when the pool is being destroyed
WorkerPool::Task WorkerPool::next_()
{
    MutexLock lock(mutex_);
    while (!stopping_ && tasks_.empty())
        changed_.wait(lock);
    if (stopping_)
        return {};
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    return task;
}

void WorkerPool::work_()
{
    while (const Task task = next_())
        task();
}

} // namespace VX
