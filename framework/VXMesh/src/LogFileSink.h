#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <spdlog/sinks/rotating_file_sink.h>

#include <memory>

namespace VX
{

/// Writes to getUserStateDir()/log/PROGRAM.log, which is created by the first line, rotating at 5 MB. Where that
/// fails it warns once, on the logger, and swallows the lines.
/// @threads any
class LogFileSink : public spdlog::sinks::sink
{
public:
    LogFileSink();

    void log(const spdlog::details::log_msg& message) override;
    void flush() override;
    void set_pattern(const std::string& pattern) override;
    void set_formatter(std::unique_ptr<spdlog::formatter> formatter) override;

    /// Closes the file; the next line opens it, or another one, anew.
    void close();

private:
    enum class State
    {
        Closed,
        Open,
        Failed
    };

    using File = spdlog::sinks::rotating_file_sink_st;

    State state_();
    void open_();
    void fail_();

    Mutex mutex_;
    State fileState_ VX_GUARDED_BY(mutex_) = State::Closed;
    std::unique_ptr<File> file_ VX_GUARDED_BY(mutex_);
    std::unique_ptr<spdlog::formatter> formatter_ VX_GUARDED_BY(mutex_);
};

} // namespace VX
