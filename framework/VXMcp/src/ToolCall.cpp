#include <VXMcp/Tool.h>

#include <utility>

namespace VX::Mcp
{

ToolCall::ToolCall(Json::Value arguments, ProgressSink progress)
    : ToolCall(std::move(arguments), Client{.progress = std::move(progress)})
{
}

ToolCall::ToolCall(Json::Value arguments, Client client)
    : arguments_(std::move(arguments))
    , client_(std::move(client))
{
}

bool ToolCall::isCanceled() const
{
    const MutexLock lock(mutex_);
    return isCanceled_;
}

void ToolCall::onCanceled(std::function<void()> callback)
{
    {
        const MutexLock lock(mutex_);
        if (!isCanceled_)
        {
            callback_ = std::move(callback);
            return;
        }
    }
    if (callback)
        callback();
}

void ToolCall::progress(double value, double total, const std::string& message)
{
    if (!client_.progress)
        return;
    {
        const MutexLock lock(mutex_);
        if (isCanceled_ || !(value > reported_))
            return;
        reported_ = value;
    }
    client_.progress(value, total, message);
}

void ToolCall::log(const std::string& level, const Json::Value& data)
{
    if (client_.log && !isCanceled())
        client_.log(level, data);
}

void ToolCall::cancel()
{
    std::function<void()> callback;
    {
        const MutexLock lock(mutex_);
        isCanceled_ = true;
        callback = std::exchange(callback_, nullptr);
    }
    if (callback)
        callback();
}

} // namespace VX::Mcp
