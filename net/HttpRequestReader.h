#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>

#include <net/HttpAnswer.h>
#include <net/HttpServer.h>
#include <net/SocketDeadline.h>

#include <memory>

namespace VX
{

/// Reads the requests of one connection, one after the other: the head of each and then its body, unless it is refused
/// between the two.
/// @threads the strand of the socket only
class HttpRequestReader
{
public:
    /// What a step finds of its request: the status that refuses it, or one of these.
    static constexpr int goOn = 0;
    static constexpr int hangUp = -1;

    HttpRequestReader(boost::asio::ip::tcp::socket& socket, SocketDeadline& deadline,
                      const HttpServer::Settings& settings);
    ~HttpRequestReader();

    HttpRequestReader(const HttpRequestReader&) = delete;
    HttpRequestReader& operator=(const HttpRequestReader&) = delete;

    /// Waits for the next request. All of it but the body is in `request` then.
    boost::asio::awaitable<int> readHead(HttpRequest& request);

    /// Whether the request whose head was read has a body.
    [[nodiscard]] bool hasBody() const;

    /// What the request whose head was read leaves to its answer.
    [[nodiscard]] HttpAnswer::Form answerForm() const;

    /// Reads the body to where `sink` says.
    boost::asio::awaitable<int> readBody(const HttpBodySink& sink, HttpRequest& request);

private:
    struct State;

    const std::unique_ptr<State> state_;
};

} // namespace VX
