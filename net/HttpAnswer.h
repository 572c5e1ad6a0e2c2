#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <net/HttpServer.h>
#include <net/SocketDeadline.h>

#include <chrono>
#include <vector>

namespace VX
{

/// Writes the answers of one connection.
/// @threads the strand of the socket only
class HttpAnswer
{
public:
    /// What the request leaves to its answer.
    struct Form
    {
        bool headOnly = false;
        bool keepAlive = false;
        bool mayChunk = true; ///< the client knows chunked bodies
    };

    /// @param woken    cancelled when a stream has something to take
    /// @param timeout  for each piece
    HttpAnswer(boost::asio::ip::tcp::socket& socket, SocketDeadline& deadline, boost::asio::steady_timer& woken,
               std::chrono::milliseconds timeout);

    HttpAnswer(const HttpAnswer&) = delete;
    HttpAnswer& operator=(const HttpAnswer&) = delete;

    /// @return whether the connection may serve another request
    boost::asio::awaitable<bool> send(HttpResponse response, Form form);

    /// Closes the connection at once.
    /// @return false
    bool hangUp();

private:
    boost::asio::awaitable<bool> sendBody_(const HttpResponse& response, Form form);
    boost::asio::awaitable<bool> sendStream_(const HttpResponse& response, Form form);
    boost::asio::awaitable<bool> write_(std::string_view first, std::string_view second);
    boost::asio::awaitable<bool> isPauseOver_(std::chrono::milliseconds pause);

    boost::asio::ip::tcp::socket& socket_;
    SocketDeadline& deadline_;
    boost::asio::steady_timer& woken_;
    const std::chrono::milliseconds timeout_;
    std::vector<char> piece_;
};

} // namespace VX
