#include <net/SocketDeadline.h>

namespace VX
{

using Clock = std::chrono::steady_clock;
using boost::system::error_code;

SocketDeadline::SocketDeadline(boost::asio::ip::tcp::socket& socket)
    : socket_(socket)
    , timer_(socket.get_executor())
{
}

void SocketDeadline::expectWithin(std::chrono::milliseconds time)
{
    isOver_ = false;
    due_ = Clock::now() + time;
    if (!isWatched_ || due_ < timer_.expiry())
        watch_();
}

void SocketDeadline::watch_()
{
    isWatched_ = true;
    timer_.expires_at(due_);
    timer_.async_wait(
        [weak = self_](error_code error)
        {
            const auto self = weak.lock();
            if (!error && self)
                self->check_();
        });
}

/// While the handler thinks, nothing is expected of the client: the time may run out then, but there is no operation
/// that it could end.
void SocketDeadline::check_()
{
    isWatched_ = false;
    if (Clock::now() < due_)
    {
        watch_();
        return;
    }
    isOver_ = true;
    error_code ignored;
    socket_.cancel(ignored);
}

} // namespace VX
