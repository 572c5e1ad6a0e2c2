#include "RunningCalls.h"

#include <utility>
#include <vector>

namespace VX::Mcp
{

std::uint64_t RunningCalls::add(std::string sessionId, Json::Value id, std::shared_ptr<ToolCall> call)
{
    const MutexLock lock(mutex_);
    calls_[++last_] = {.sessionId = std::move(sessionId), .id = std::move(id), .call = std::move(call)};
    return last_;
}

void RunningCalls::remove(std::uint64_t number)
{
    const MutexLock lock(mutex_);
    calls_.erase(number);
}

void RunningCalls::cancel(const std::string& sessionId, const Json::Value& id)
{
    std::vector<std::shared_ptr<ToolCall>> found;
    {
        const MutexLock lock(mutex_);
        for (const auto& [number, entry] : calls_)
            if (entry.sessionId == sessionId && entry.id == id)
                found.push_back(entry.call);
    }
    if (!sessionId.empty() || found.size() == 1)
        for (const auto& call : found)
            call->cancel();
}

void RunningCalls::cancelAll()
{
    std::map<std::uint64_t, Entry> calls;
    {
        const MutexLock lock(mutex_);
        calls = calls_;
    }
    for (const auto& [number, entry] : calls)
        entry.call->cancel();
}

} // namespace VX::Mcp
