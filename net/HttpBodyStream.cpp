#include <net/HttpBodyStream.h>

#include <utility>

namespace VX
{

HttpBodyStream::HttpBodyStream(std::string heartbeat, std::chrono::milliseconds pause)
    : heartbeat_(std::move(heartbeat))
    , pause_(pause)
{
}

bool HttpBodyStream::write(std::string_view bytes)
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(mutex_);
        if (isClosed_ || isEnded_)
            return false;
        // Whoever has been told once takes all there is.
        if (bytes_.empty())
            wake = wake_;
        bytes_ += bytes;
    }
    if (wake)
        wake();
    return true;
}

void HttpBodyStream::end()
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(mutex_);
        isEnded_ = true;
        wake = wake_;
    }
    if (wake)
        wake();
}

std::size_t HttpBodyStream::waiting() const
{
    const std::lock_guard lock(mutex_);
    return bytes_.size();
}

HttpBodyStream::Piece HttpBodyStream::take()
{
    const std::lock_guard lock(mutex_);
    return {.bytes = std::exchange(bytes_, {}), .isLast = isEnded_, .isClosed = isClosed_};
}

void HttpBodyStream::attach(std::function<void()> wake)
{
    const std::lock_guard lock(mutex_);
    wake_ = std::move(wake);
}

void HttpBodyStream::close()
{
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    wake_ = nullptr;
    bytes_.clear();
}

} // namespace VX
