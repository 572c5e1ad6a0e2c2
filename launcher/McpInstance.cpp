#include "launcher/McpInstance.h"

#include <algorithm>
#include <utility>

namespace VX
{

McpInstance::McpInstance(std::optional<int> port, Find find)
    : named_(port)
    , find_(std::move(find))
{
}

std::optional<std::uint16_t> McpInstance::port()
{
    std::vector<AgentInstance> running = find_();
    if (named_)
        std::erase_if(running, [this](const AgentInstance& each) { return each.port != *named_; });
    if (running.empty())
        return std::nullopt;
    const MutexLock lock(mutex_);
    const auto known = std::ranges::find(running, process_, &AgentInstance::process);
    const AgentInstance& chosen = known != running.end() ? *known : running.front();
    process_ = chosen.process;
    return chosen.port;
}

} // namespace VX
