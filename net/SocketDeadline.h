#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <memory>

namespace VX
{

/// Ends the operations of a socket that take too long. A single timer looks after all of them: it is set again only
/// when it has run out, which is cheaper than starting and cancelling one for each piece of a body.
/// @threads the strand of the socket only
class SocketDeadline
{
public:
    explicit SocketDeadline(boost::asio::ip::tcp::socket& socket);

    SocketDeadline(const SocketDeadline&) = delete;
    SocketDeadline& operator=(const SocketDeadline&) = delete;

    /// @param self  this object, for as long as its owner and the socket live
    void setSelf(std::weak_ptr<SocketDeadline> self) { self_ = std::move(self); }

    /// The operation that follows must end within this time.
    void expectWithin(std::chrono::milliseconds time);

    /// Whether the last operation was ended here.
    [[nodiscard]] bool isOver() const { return isOver_; }

private:
    void watch_();
    void check_();

    boost::asio::ip::tcp::socket& socket_;
    std::weak_ptr<SocketDeadline> self_;
    boost::asio::steady_timer timer_;
    std::chrono::steady_clock::time_point due_;
    bool isWatched_ = false;
    bool isOver_ = false;
};

} // namespace VX
