#include "BackgroundTasks.h"

#include <utility>

namespace VX
{

BackgroundTasks::BackgroundTasks(std::size_t maxThreads)
    : maxThreads_(maxThreads)
{
}

BackgroundTasks::~BackgroundTasks()
{
    stop();
}

void BackgroundTasks::start(std::function<void()> work)
{
    {
        const MutexLock lock(mutex_);
        waiting_.push_back(std::move(work));
        if (idleThreads_ < waiting_.size() && threads_.size() < maxThreads_)
            threads_.emplace_back([this] { run_(); });
    }
    changed_.notify_one();
}

void BackgroundTasks::stop()
{
    std::vector<std::thread> threads;
    std::deque<std::function<void()>> dropped;
    {
        const MutexLock lock(mutex_);
        stopping_ = true;
        threads.swap(threads_);
        dropped.swap(waiting_);
    }
    changed_.notify_all();
    for (std::thread& thread : threads)
        thread.join();
    const MutexLock lock(mutex_);
    stopping_ = false;
}

void BackgroundTasks::run_()
{
    while (true)
    {
        std::function<void()> work;
        {
            MutexLock lock(mutex_);
            ++idleThreads_;
            while (waiting_.empty() && !stopping_)
                changed_.wait(lock);
            --idleThreads_;
            if (stopping_)
                return;
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work();
    }
}

} // namespace VX
