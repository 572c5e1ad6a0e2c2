#include "Activity.h"

#include <utility>

namespace VX::Mcp
{

namespace
{

constexpr std::size_t callsKept = 20;

} // namespace

void Activity::setAddress(std::string address)
{
    {
        const MutexLock lock(mutex_);
        address_ = std::move(address);
    }
    changed();
}

void Activity::addCall(const std::string& tool, const std::string& client, bool failed)
{
    {
        const MutexLock lock(mutex_);
        calls_.push_front({.tool = tool, .client = client, .time = std::chrono::system_clock::now(), .failed = failed});
        if (calls_.size() > callsKept)
            calls_.pop_back();
    }
    changed();
}

Server::Status Activity::status() const
{
    const MutexLock lock(mutex_);
    return {
        .running = !address_.empty(), .address = address_, .clients = 0, .lastCalls = {calls_.begin(), calls_.end()}};
}

} // namespace VX::Mcp
