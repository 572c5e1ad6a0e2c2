#pragma once

#include <net/HttpServer.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace VX
{

/// Waits for the reply to its request.
class HttpReplyTaker
{
public:
    virtual ~HttpReplyTaker() = default;

    /// @threads any, while the gate is open
    virtual void takeReply(HttpResponse response) = 0;
};

/// Lets replies reach their connections for as long as the server runs.
class HttpReplyGate
{
public:
    /// Hands `response` over, unless the gate is closed or the connection gone.
    /// @threads any
    void pass(const std::weak_ptr<HttpReplyTaker>& to, HttpResponse response);

    /// Once it returns, no reply is on its way into the server.
    /// @threads any
    void close();

    /// Connections that are open now.
    std::atomic<unsigned> connections = 0;

private:
    std::mutex mutex_;
    bool isOpen_ = true;
};

/// The one reply to a request: the first that is given, or status 500 when the handler lets go of it.
class HttpReply
{
public:
    HttpReply(std::shared_ptr<HttpReplyGate> gate, std::weak_ptr<HttpReplyTaker> to);
    ~HttpReply();

    HttpReply(const HttpReply&) = delete;
    HttpReply& operator=(const HttpReply&) = delete;

    /// @threads any
    void give(HttpResponse response);

private:
    std::shared_ptr<HttpReplyGate> gate_;
    std::weak_ptr<HttpReplyTaker> to_;
    std::atomic<bool> isGiven_ = false;
};

} // namespace VX
