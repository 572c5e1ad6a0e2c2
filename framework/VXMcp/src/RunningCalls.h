#pragma once

#include <VXMcp/Tool.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace VX::Mcp
{

/// The calls in progress, by the session and the id of their requests.
/// @threads any
class RunningCalls
{
public:
    /// @param sessionId  empty: without a session
    /// @return a number for `remove`
    std::uint64_t add(std::string sessionId, Json::Value id, std::shared_ptr<ToolCall> call);
    void remove(std::uint64_t number);

    /// Cancels a call at the client's request. Clients without a session cannot be told apart by their ids: where two
    /// of them use the same one, nothing is cancelled.
    void cancel(const std::string& sessionId, const Json::Value& id);

    void cancelAll();

private:
    struct Entry
    {
        std::string sessionId;
        Json::Value id;
        std::shared_ptr<ToolCall> call;
    };

    Mutex mutex_;
    std::map<std::uint64_t, Entry> calls_ VX_GUARDED_BY(mutex_);
    std::uint64_t last_ VX_GUARDED_BY(mutex_) = 0;
};

} // namespace VX::Mcp
