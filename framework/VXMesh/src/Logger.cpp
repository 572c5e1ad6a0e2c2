#include "Environment.h"
#include "LogFileSink.h"
#include "SharedLogger.h"

#include <VXMesh/Logger.h>

#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <chrono>

namespace VX
{

namespace
{

spdlog::level::level_enum consoleLevel()
{
    const std::string wanted = environmentVariable("VX_LOG");
    const auto level = spdlog::level::from_str(wanted);
    // An unknown word reads as "off" too.
    return level == spdlog::level::off && wanted != "off" ? spdlog::level::warn : level;
}

} // namespace

Logger& Logger::instance()
{
    static Logger logger;
    return logger;
}

Logger::Logger()
    : fileSink_(std::make_shared<LogFileSink>())
{
    // The user's folders must not be asked for here: they may log, and so come back.
    auto console = std::make_shared<spdlog::sinks::stderr_color_sink_mt>();
    console->set_level(consoleLevel());
    console->set_pattern("%^%l%$: %v");
    const auto fileLevel = std::min(spdlog::level::debug, console->level());
    fileSink_->set_level(fileLevel);
    fileSink_->set_pattern("%Y-%m-%dT%H:%M:%S.%e%z %P %t %l: %v");
    logger_ = std::make_shared<SharedLogger>(std::vector<spdlog::sink_ptr>{std::move(console), fileSink_});
    logger_->set_level(fileLevel);
    spdlog::set_default_logger(logger_);
    spdlog::flush_every(std::chrono::seconds(1));
}

Logger::~Logger()
{
    spdlog::flush_every(std::chrono::seconds(0));
    logger_->flush();
}

void Logger::addSink(spdlog::sink_ptr sink)
{
    logger_->addSink(std::move(sink));
}

void Logger::removeSink(const spdlog::sink_ptr& sink)
{
    logger_->removeSink(sink);
}

std::shared_ptr<spdlog::logger> Logger::getSpdLogger() const
{
    return logger_;
}

void Logger::closeFile()
{
    fileSink_->close();
}

} // namespace VX
