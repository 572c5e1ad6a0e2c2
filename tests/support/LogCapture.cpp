#include "LogCapture.h"

#include <VXMesh/Logger.h>

#include <spdlog/sinks/sink.h>

#include <algorithm>
#include <ostream>

namespace VX::Test
{

class LogCapture::Sink : public spdlog::sinks::sink
{
public:
    void log(const spdlog::details::log_msg& message) override
    {
        const MutexLock lock(mutex_);
        lines_.push_back({message.level, std::string(message.payload.data(), message.payload.size())});
    }

    void flush() override {}

    void set_pattern(const std::string&) override {}

    void set_formatter(std::unique_ptr<spdlog::formatter>) override {}

    std::vector<Line> lines()
    {
        const MutexLock lock(mutex_);
        return lines_;
    }

    void clear()
    {
        const MutexLock lock(mutex_);
        lines_.clear();
    }

private:
    Mutex mutex_;
    std::vector<Line> lines_ VX_GUARDED_BY(mutex_);
};

LogCapture::LogCapture()
    : sink_(std::make_shared<Sink>())
{
    Logger::instance().addSink(sink_);
}

LogCapture::~LogCapture()
{
    Logger::instance().removeSink(sink_);
}

std::vector<LogCapture::Line> LogCapture::lines() const
{
    return sink_->lines();
}

std::vector<std::string> LogCapture::texts(spdlog::level::level_enum level) const
{
    std::vector<std::string> result;
    for (Line& line : sink_->lines())
        if (line.level == level)
            result.push_back(std::move(line.text));
    return result;
}

bool LogCapture::contains(std::string_view part) const
{
    const auto all = sink_->lines();
    return std::any_of(all.begin(), all.end(),
                       [part](const Line& line) { return line.text.find(part) != std::string::npos; });
}

void LogCapture::clear()
{
    sink_->clear();
}

void PrintTo(const LogCapture::Line& line, std::ostream* stream)
{
    const auto level = spdlog::level::to_string_view(line.level);
    *stream << std::string_view(level.data(), level.size()) << ": " << line.text;
}

} // namespace VX::Test
