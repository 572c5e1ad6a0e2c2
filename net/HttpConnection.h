#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <net/HttpReply.h>
#include <net/HttpServer.h>

#include <memory>

namespace VX
{

/// Answers the requests of one client, one after the other, until either side closes the connection.
/// `settings` and `handler` live at least as long as the execution context of `socket`.
/// @threads runs on the executor of `socket`, which is a strand
boost::asio::awaitable<void> serveHttpConnection(boost::asio::ip::tcp::socket socket,
                                                 const HttpServer::Settings& settings, HttpHandler& handler,
                                                 std::shared_ptr<HttpReplyGate> gate);

} // namespace VX
