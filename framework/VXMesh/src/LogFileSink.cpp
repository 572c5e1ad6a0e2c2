#include "LogFileSink.h"

#include <VXMesh/SystemPath.h>
#include <VXMesh/UserFolders.h>

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/spdlog.h>

namespace VX
{

namespace
{

constexpr std::size_t maxFileSize = 5U << 20U;
constexpr std::size_t oldFiles = 2;

std::filesystem::path logFile(const std::filesystem::path& folder)
{
    const auto program = SystemPath::getExecutablePath();
    return folder / ((program ? program->stem().string() : std::string("program")) + ".log");
}

} // namespace

LogFileSink::LogFileSink()
    : formatter_(std::make_unique<spdlog::pattern_formatter>())
{
}

void LogFileSink::log(const spdlog::details::log_msg& message)
{
    if (state_() == State::Closed)
        open_();
    bool failed = false;
    {
        const MutexLock lock(mutex_);
        if (!file_)
            return;
        try
        {
            file_->log(message);
            // These may be the last words of the program.
            if (message.level >= spdlog::level::warn)
                file_->flush();
        }
        catch (const spdlog::spdlog_ex&)
        {
            failed = true;
        }
    }
    if (failed)
        fail_();
}

void LogFileSink::flush()
{
    bool failed = false;
    {
        const MutexLock lock(mutex_);
        try
        {
            if (file_)
                file_->flush();
        }
        catch (const spdlog::spdlog_ex&)
        {
            failed = true;
        }
    }
    if (failed)
        fail_();
}

void LogFileSink::set_pattern(const std::string& pattern)
{
    set_formatter(std::make_unique<spdlog::pattern_formatter>(pattern));
}

void LogFileSink::set_formatter(std::unique_ptr<spdlog::formatter> formatter)
{
    const MutexLock lock(mutex_);
    formatter_ = std::move(formatter);
    if (file_)
        file_->set_formatter(formatter_->clone());
}

void LogFileSink::close()
{
    const MutexLock lock(mutex_);
    file_.reset();
    fileState_ = State::Closed;
}

LogFileSink::State LogFileSink::state_()
{
    const MutexLock lock(mutex_);
    return fileState_;
}

void LogFileSink::open_()
{
    // Asked without the lock: the answer may write a line of its own.
    const std::filesystem::path folder = getUserStateDir() / "log";
    const auto created = createUserFolder(folder);
    const std::filesystem::path path = logFile(folder);
    bool failed = !created;
    if (created)
    {
        const MutexLock lock(mutex_);
        if (fileState_ != State::Closed)
            return;
        try
        {
            file_ = std::make_unique<File>(path.native(), maxFileSize, oldFiles);
            file_->set_formatter(formatter_->clone());
            fileState_ = State::Open;
        }
        catch (const spdlog::spdlog_ex&)
        {
            failed = true;
        }
    }
    if (failed)
        fail_();
}

void LogFileSink::fail_()
{
    {
        const MutexLock lock(mutex_);
        file_.reset();
        if (fileState_ == State::Failed)
            return;
        fileState_ = State::Failed;
    }
    spdlog::default_logger_raw()->warn("The log file cannot be written; the log goes on without it");
}

} // namespace VX
