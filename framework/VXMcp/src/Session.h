#pragma once

#include "LogLevel.h"

#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace VX::Mcp
{

/// A client of the revisions that begin with "initialize", from there until it says that it leaves.
/// @threads any
class Session
{
public:
    Session(std::string id, std::string clientName, Json::Value capabilities);

    const std::string id;
    const std::string clientName;
    const Json::Value capabilities;

    [[nodiscard]] LogLevel logLevel() const;
    void setLogLevel(LogLevel level);

    [[nodiscard]] bool isSubscribed(const std::string& uri) const;

    /// @return false where the session has too many subscriptions
    bool subscribe(const std::string& uri);
    void unsubscribe(const std::string& uri);

private:
    mutable Mutex mutex_;
    LogLevel level_ VX_GUARDED_BY(mutex_) = LogLevel::Info;
    std::set<std::string> subscriptions_ VX_GUARDED_BY(mutex_);
};

/// The sessions that are open. Clients may leave without a word: of many sessions the one that was not used for longest
/// is given up.
/// @threads any
class Sessions
{
public:
    std::shared_ptr<Session> open(std::string clientName, Json::Value capabilities);

    /// @return null where there is none
    [[nodiscard]] std::shared_ptr<Session> find(const std::string& id);

    /// @return false where there was none
    bool close(const std::string& id);

    void closeAll();

private:
    struct Entry
    {
        std::shared_ptr<Session> session;
        std::uint64_t lastUse = 0;
    };

    Mutex mutex_;
    std::map<std::string, Entry> sessions_ VX_GUARDED_BY(mutex_);
    std::uint64_t uses_ VX_GUARDED_BY(mutex_) = 0;
};

} // namespace VX::Mcp
