#include "Exchange.h"

#include "EventStream.h"
#include "JsonText.h"

#include <utility>

namespace VX::Mcp
{

Exchange::Exchange(Json::Value id, HttpHandler::Respond respond, std::shared_ptr<HttpClientWatch> client,
                   Accepts accepts)
    : id_(std::move(id))
    , respond_(std::move(respond))
    , client_(std::move(client))
    , accepts_(accepts)
{
}

HttpBodyStream& Exchange::beginStream_()
{
    if (!stream_)
    {
        stream_ = makeEventStream();
        respond_(makeEventResponse(stream_));
    }
    return *stream_;
}

void Exchange::notify(const Json::Value& message)
{
    if (!accepts_.stream)
        return;
    const std::string event = toEvent(message);
    const MutexLock lock(mutex_);
    if (!isEnded_ && beginStream_().waiting() < streamBacklog)
        beginStream_().write(event);
}

bool Exchange::ask(const Json::Value& message)
{
    if (!accepts_.stream)
        return false;
    const std::string event = toEvent(message);
    const MutexLock lock(mutex_);
    return !isEnded_ && beginStream_().write(event);
}

void Exchange::succeed(Json::Value result, HttpHeaders headers)
{
    end_(200, makeRpcResult(id_, std::move(result)), std::move(headers));
}

void Exchange::fail(int status, const RpcError& error)
{
    end_(status, makeRpcError(id_, error), {});
}

std::shared_ptr<HttpBodyStream> Exchange::stream()
{
    const MutexLock lock(mutex_);
    isEnded_ = true;
    beginStream_();
    return stream_;
}

void Exchange::onGone(std::function<void()> callback)
{
    client_->onGone(std::move(callback));
}

void Exchange::end_(int status, const Json::Value& message, HttpHeaders headers)
{
    std::string text = accepts_.json ? toJsonText(message) : std::string();
    client_->onGone({});
    const MutexLock lock(mutex_);
    if (std::exchange(isEnded_, true))
        return;
    if (stream_ || !accepts_.json)
    {
        beginStream_().write(toEvent(message));
        stream_->end();
        return;
    }
    headers["Content-Type"] = "application/json";
    respond_({.status = status, .headers = std::move(headers), .body = std::move(text)});
}

} // namespace VX::Mcp
