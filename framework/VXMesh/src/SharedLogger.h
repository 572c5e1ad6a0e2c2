#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <spdlog/logger.h>

#include <vector>

namespace VX
{

/// A logger whose sinks may change while other threads write lines. A line goes to the sinks there were when it began;
/// no lock is held while they write, so a sink may log and add sinks itself. No sink sees a secret (Redactor.h).
class SharedLogger : public spdlog::logger
{
public:
    explicit SharedLogger(std::vector<spdlog::sink_ptr> sinks);

    void addSink(spdlog::sink_ptr sink);
    void removeSink(const spdlog::sink_ptr& sink);

protected:
    void sink_it_(const spdlog::details::log_msg& original) override;
    void flush_() override;

private:
    using Sinks = std::vector<spdlog::sink_ptr>;

    std::shared_ptr<const Sinks> snapshot_();

    Mutex mutex_;
    std::shared_ptr<const Sinks> current_ VX_GUARDED_BY(mutex_);
};

} // namespace VX
