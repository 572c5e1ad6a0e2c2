#pragma once

#include <VXMesh/Export.h>

#include <spdlog/common.h>

#include <memory>

namespace spdlog
{
class logger; // NOLINT(readability-identifier-naming)
}

namespace VX
{

class LogFileSink;
class SharedLogger;

/// The log of the process: owns spdlog's default logger, so that `spdlog::info` and its like go here from the first
/// call of `instance` on. Warnings and above are written to standard error; everything from debug on goes to
/// getUserStateDir()/log/PROGRAM.log (three files of 5 MB, one after another), which is opened by the first line. A log
/// file that cannot be written costs one warning. All sinks are flushed once a second by a thread of spdlog's.
/// The environment variable VX_LOG (trace, debug, info, warning, error, critical or off) sets the level of standard
/// error, and with "trace" the least level of all.
/// Lines of level info and above hold no path, file name, e-mail or anything typed by the user. Passwords, tokens,
/// codes and the like are logged nowhere; should a line hold one, every sink gets "[redacted]" in its place.
/// @threads any
class VXMESH_API Logger
{
public:
    static Logger& instance();

    /// Flushes all sinks and stops the periodic flush.
    ~Logger();

    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// From now on every line goes to `sink` too, as far as the sink's own level lets it.
    void addSink(spdlog::sink_ptr sink);

    /// The opposite; a sink that is not there is ignored. A line that another thread is just writing may still reach
    /// it.
    void removeSink(const spdlog::sink_ptr& sink);

    /// Its `sinks()` may be read while no other thread adds or removes one; change them through this class only.
    [[nodiscard]] std::shared_ptr<spdlog::logger> getSpdLogger() const;

    /// Closes the log file; the next line opens the one of the then current user folder.
    void closeFile();

private:
    Logger();

    std::shared_ptr<SharedLogger> logger_;
    std::shared_ptr<LogFileSink> fileSink_;
};

} // namespace VX
