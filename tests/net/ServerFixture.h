#pragma once

#include "tests/support/RawSocket.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <net/HttpServer.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace VX::Test
{

/// A server whose two decisions a test makes; without any it answers each request with its method, path and body.
class ServerFixture : public ::testing::Test, public HttpHandler
{
public:
    /// The server calls this object: it ends before the object does.
    void TearDown() override { server.reset(); }

    void serve(HttpServer::Settings settings = {})
    {
        auto started = HttpServer::start(settings, *this);
        ASSERT_TRUE(started) << started.error();
        server = std::move(*started);
    }

    [[nodiscard]] RawSocket connect() const { return RawSocket::connect(server->port()); }

    /// The answer to bytes sent on a connection of their own.
    [[nodiscard]] std::string answerTo(std::string_view bytes) const
    {
        auto socket = connect();
        socket.send(bytes);
        return socket.receiveAnswer();
    }

    std::function<tl::expected<HttpBodySink, HttpResponse>(const HttpRequest&)> accept;
    std::function<void(HttpRequest, Respond)> answer = [](const HttpRequest& request, const Respond& respond)
    { respond({.body = request.method + ' ' + request.path + ' ' + request.body}); };
    std::unique_ptr<HttpServer> server;

private:
    tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest& head) override
    {
        return accept ? accept(head) : HttpHandler::acceptBody(head);
    }

    void handle(HttpRequest request, Respond respond) override { answer(std::move(request), std::move(respond)); }
};

} // namespace VX::Test
