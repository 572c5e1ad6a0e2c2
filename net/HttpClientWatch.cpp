#include <net/HttpClientWatch.h>

#include <utility>

namespace VX
{

HttpClientWatch::HttpClientWatch(std::function<void()> begin)
    : begin_(std::move(begin))
{
}

void HttpClientWatch::onGone(std::function<void()> callback)
{
    std::function<void()> begin;
    // What it keeps alive goes outside the lock.
    std::function<void()> previous;
    {
        const std::lock_guard lock(mutex_);
        if (!isGone_)
        {
            if (callback)
                begin = std::exchange(begin_, nullptr);
            previous = std::exchange(callback_, std::move(callback));
            callback = nullptr;
        }
    }
    if (callback)
        callback();
    else if (begin)
        begin();
}

void HttpClientWatch::reportGone()
{
    std::function<void()> callback;
    {
        const std::lock_guard lock(mutex_);
        isGone_ = true;
        callback = std::exchange(callback_, nullptr);
    }
    if (callback)
        callback();
}

} // namespace VX
