#include "Session.h"

#include "Secrets.h"

#include <algorithm>
#include <utility>

namespace VX::Mcp
{

namespace
{

constexpr std::size_t maxSessions = 256;
constexpr std::size_t maxSubscriptions = 1000;

} // namespace

Session::Session(std::string ownId, std::string name, Json::Value ownCapabilities)
    : id(std::move(ownId))
    , clientName(std::move(name))
    , capabilities(std::move(ownCapabilities))
{
}

LogLevel Session::logLevel() const
{
    const MutexLock lock(mutex_);
    return level_;
}

void Session::setLogLevel(LogLevel level)
{
    const MutexLock lock(mutex_);
    level_ = level;
}

bool Session::isSubscribed(const std::string& uri) const
{
    const MutexLock lock(mutex_);
    return subscriptions_.contains(uri);
}

bool Session::subscribe(const std::string& uri)
{
    const MutexLock lock(mutex_);
    if (subscriptions_.size() >= maxSubscriptions && !subscriptions_.contains(uri))
        return false;
    subscriptions_.insert(uri);
    return true;
}

void Session::unsubscribe(const std::string& uri)
{
    const MutexLock lock(mutex_);
    subscriptions_.erase(uri);
}

std::shared_ptr<Session> Sessions::open(std::string clientName, Json::Value capabilities)
{
    auto session = std::make_shared<Session>(randomName(), std::move(clientName), std::move(capabilities));
    const MutexLock lock(mutex_);
    if (sessions_.size() >= maxSessions)
        sessions_.erase(
            std::ranges::min_element(sessions_, {}, [](const auto& entry) { return entry.second.lastUse; }));
    sessions_[session->id] = {.session = session, .lastUse = ++uses_};
    return session;
}

std::shared_ptr<Session> Sessions::find(const std::string& id)
{
    const MutexLock lock(mutex_);
    const auto found = sessions_.find(id);
    if (found == sessions_.end())
        return nullptr;
    found->second.lastUse = ++uses_;
    return found->second.session;
}

bool Sessions::close(const std::string& id)
{
    const MutexLock lock(mutex_);
    return sessions_.erase(id) > 0;
}

void Sessions::closeAll()
{
    const MutexLock lock(mutex_);
    sessions_.clear();
}

} // namespace VX::Mcp
