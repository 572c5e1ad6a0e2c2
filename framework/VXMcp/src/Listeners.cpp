#include "Listeners.h"

#include "EventStream.h"
#include "RpcMessage.h"

#include <utility>

namespace VX::Mcp
{

namespace
{

const char* methodOf(Change::Kind kind)
{
    switch (kind)
    {
    case Change::Kind::ToolList:
        return "notifications/tools/list_changed";
    case Change::Kind::PromptList:
        return "notifications/prompts/list_changed";
    case Change::Kind::ResourceList:
        return "notifications/resources/list_changed";
    case Change::Kind::Resource:
        break;
    }
    return "notifications/resources/updated";
}

std::string eventOf(const Change& change, const Json::Value& subscriptionId)
{
    Json::Value params(Json::objectValue);
    if (change.kind == Change::Kind::Resource)
        params["uri"] = change.uri;
    if (!subscriptionId.isNull())
        params["_meta"]["io.modelcontextprotocol/subscriptionId"] = subscriptionId;
    return toEvent(makeRpcNotification(methodOf(change.kind), std::move(params)));
}

} // namespace

std::uint64_t Listeners::add(Listener listener)
{
    const MutexLock lock(mutex_);
    listeners_[++last_] = std::move(listener);
    return last_;
}

void Listeners::remove(std::uint64_t number)
{
    const MutexLock lock(mutex_);
    listeners_.erase(number);
}

void Listeners::publish(const Change& change)
{
    const MutexLock lock(mutex_);
    for (const auto& [number, listener] : listeners_)
        if (listener.wants(change) && listener.stream->waiting() < streamBacklog)
            listener.stream->write(eventOf(change, listener.subscriptionId));
}

void Listeners::endSession(const std::string& sessionId)
{
    const MutexLock lock(mutex_);
    std::erase_if(listeners_,
                  [&](const auto& entry)
                  {
                      const bool isOfSession = entry.second.sessionId == sessionId;
                      if (isOfSession)
                          entry.second.stream->end();
                      return isOfSession;
                  });
}

void Listeners::endAll()
{
    const MutexLock lock(mutex_);
    for (const auto& [number, listener] : listeners_)
        listener.stream->end();
    listeners_.clear();
}

} // namespace VX::Mcp
