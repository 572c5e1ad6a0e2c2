#pragma once

#include "RpcMessage.h"

#include <VXMesh/ThreadAnnotations.h>

#include <net/HttpBodyStream.h>
#include <net/HttpClientWatch.h>
#include <net/HttpServer.h>

#include <functional>
#include <memory>

namespace VX::Mcp
{

/// The way back of one request: its answer is one JSON body, or a stream of events as soon as something else has to be
/// said first.
/// @threads any
class Exchange
{
public:
    /// What the client takes, by its Accept header.
    struct Accepts
    {
        bool json = true;
        bool stream = false;
    };

    Exchange(Json::Value id, HttpHandler::Respond respond, std::shared_ptr<HttpClientWatch> client, Accepts accepts);

    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    [[nodiscard]] const Json::Value& id() const { return id_; }

    [[nodiscard]] bool canStream() const { return accepts_.stream; }

    /// Sends a notification ahead of the answer; it is left out where the client takes no stream or reads too slowly.
    void notify(const Json::Value& message);

    /// Sends a request of the server ahead of the answer.
    /// @return false where it cannot reach the client
    bool ask(const Json::Value& message);

    /// Ends the exchange. Of several ends the first one counts.
    void succeed(Json::Value result, HttpHeaders headers = {});

    /// @param status  of HTTP, where no stream has begun
    void fail(int status, const RpcError& error);

    /// Turns the answer into a stream that others write; the exchange ends with it.
    [[nodiscard]] std::shared_ptr<HttpBodyStream> stream();

    /// Calls `callback` when the client closes its connection before the answer.
    void onGone(std::function<void()> callback);

private:
    HttpBodyStream& beginStream_() VX_REQUIRES(mutex_);
    void end_(int status, const Json::Value& message, HttpHeaders headers);

    const Json::Value id_;
    const HttpHandler::Respond respond_;
    const std::shared_ptr<HttpClientWatch> client_;
    const Accepts accepts_;
    Mutex mutex_;
    std::shared_ptr<HttpBodyStream> stream_ VX_GUARDED_BY(mutex_);
    bool isEnded_ VX_GUARDED_BY(mutex_) = false;
};

} // namespace VX::Mcp
