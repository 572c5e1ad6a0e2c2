#include "RequestThreadPool.h"

#include <spdlog/spdlog.h>

#include <exception>
#include <iterator>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

void runTask(const std::function<void()>& task)
{
    try
    {
        task();
    }
    catch (const std::exception& exception)
    {
        spdlog::error("The handler of a web answer failed");
        spdlog::debug("The handler of a web answer threw: {}", exception.what());
    }
    catch (...)
    {
        spdlog::error("The handler of a web answer failed");
    }
}

} // namespace

RequestThreadPool::RequestThreadPool()
    : RequestThreadPool(Limits())
{
}

RequestThreadPool::RequestThreadPool(Limits limits)
    : limits_(limits)
{
}

RequestThreadPool::~RequestThreadPool()
{
    finish();
}

bool RequestThreadPool::post(const std::function<void()>& task)
{
    Threads ended;
    {
        const MutexLock lock(mutex_);
        if (isFinished_)
            return false;
        if (idle_ <= tasks_.size() && threads_.size() < limits_.threads && !startThread_() && threads_.empty())
            return false;
        tasks_.push_back(task);
        ended.swap(ended_);
    }
    hasTask_.notify_one();
    for (auto& thread : ended)
        thread.join();
    return true;
}

bool RequestThreadPool::startThread_()
{
    const auto self = threads_.emplace(threads_.end());
    try
    {
        *self = std::thread([this, self] { run_(self); });
        return true;
    }
    catch (const std::system_error&)
    {
        threads_.erase(self);
        return false;
    }
}

void RequestThreadPool::run_(Threads::iterator self)
{
    MutexLock lock(mutex_);
    while (waitForTask_(lock))
    {
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        runTask(task);
        task = nullptr; // what it captured goes outside the lock
        lock.lock();
    }
    ended_.splice(ended_.end(), threads_, self);
    hasEnded_.notify_all();
}

bool RequestThreadPool::waitForTask_(MutexLock& lock)
{
    const auto deadline = std::chrono::steady_clock::now() + limits_.idleTime;
    ++idle_;
    while (tasks_.empty() && !isFinishing_)
        if (hasTask_.wait_until(lock, deadline) == std::cv_status::timeout)
            break;
    --idle_;
    return !tasks_.empty();
}

void RequestThreadPool::finish()
{
    Threads ended;
    {
        MutexLock lock(mutex_);
        isFinishing_ = true;
        hasTask_.notify_all();
        while (!threads_.empty())
            hasEnded_.wait(lock);
        isFinished_ = true;
        ended.swap(ended_);
    }
    for (auto& thread : ended)
        thread.join();
}

std::size_t RequestThreadPool::threadCount() const
{
    const MutexLock lock(mutex_);
    return threads_.size();
}

} // namespace VX
