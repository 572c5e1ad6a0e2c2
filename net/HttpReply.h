#pragma once

#include <net/HttpServer.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace VX
{

/// Waits for the reply to its request.
/// @threads any for all operations, while the gate is open
class HttpReplyTaker
{
public:
    virtual ~HttpReplyTaker() = default;

    virtual void takeReply(HttpResponse response) = 0;

    /// The stream of the reply has grown or ended.
    virtual void takeMore() = 0;

    /// Somebody wants to know when the client goes.
    virtual void watchClient() = 0;
};

/// Lets replies reach their connections for as long as the server runs.
class HttpReplyGate
{
public:
    /// Runs `action` on the connection, unless the gate is closed or the connection gone.
    /// @threads any
    void pass(const std::weak_ptr<HttpReplyTaker>& to, const std::function<void(HttpReplyTaker&)>& action);

    /// Once it returns, no reply is on its way into the server.
    /// @threads any
    void close();

    /// A request on its way from the handler's call to the end of its answer, while it lives.
    class Exchange
    {
    public:
        explicit Exchange(std::shared_ptr<HttpReplyGate> gate);
        ~Exchange();

        Exchange(const Exchange&) = delete;
        Exchange& operator=(const Exchange&) = delete;

    private:
        const std::shared_ptr<HttpReplyGate> gate_;
    };

    /// Waits until no request is on its way, but no longer than that.
    /// @threads any
    void waitForExchanges(std::chrono::milliseconds limit);

    /// Connections that are open now.
    std::atomic<unsigned> connections = 0;

private:
    std::mutex mutex_;
    bool isOpen_ = true;
    unsigned exchanges_ = 0;
    std::condition_variable allAnswered_;
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
