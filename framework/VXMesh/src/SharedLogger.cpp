#include "SharedLogger.h"

#include "Redactor.h"

#include <spdlog/sinks/sink.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace VX
{

SharedLogger::SharedLogger(std::vector<spdlog::sink_ptr> sinks)
    : spdlog::logger("", sinks.begin(), sinks.end())
    , current_(std::make_shared<const Sinks>(std::move(sinks)))
{
}

void SharedLogger::addSink(spdlog::sink_ptr sink)
{
    const MutexLock lock(mutex_);
    sinks_.push_back(std::move(sink));
    current_ = std::make_shared<const Sinks>(sinks_);
}

void SharedLogger::removeSink(const spdlog::sink_ptr& sink)
{
    const MutexLock lock(mutex_);
    std::erase(sinks_, sink);
    current_ = std::make_shared<const Sinks>(sinks_);
}

void SharedLogger::sink_it_(const spdlog::details::log_msg& original)
{
    spdlog::details::log_msg message = original;
    const auto redacted = redact({original.payload.data(), original.payload.size()});
    if (redacted)
        message.payload = *redacted;
    const auto sinks = snapshot_();
    for (const auto& sink : *sinks)
    {
        if (!sink->should_log(message.level))
            continue;
        try
        {
            sink->log(message);
        }
        catch (const std::exception& error)
        {
            err_handler_(error.what());
        }
    }
}

void SharedLogger::flush_()
{
    const auto sinks = snapshot_();
    for (const auto& sink : *sinks)
    {
        try
        {
            sink->flush();
        }
        catch (const std::exception& error)
        {
            err_handler_(error.what());
        }
    }
}

std::shared_ptr<const SharedLogger::Sinks> SharedLogger::snapshot_()
{
    const MutexLock lock(mutex_);
    return current_;
}

} // namespace VX
