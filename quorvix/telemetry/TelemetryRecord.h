#pragma once

#include <quorvix/Export.h>

#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>
#include <spdlog/common.h>

#include <chrono>
#include <filesystem>

namespace VX
{

/// The user's own record of what telemetry has sent: one JSON object a line, {"time": "2025-01-31T09:15:02Z",
/// "sent": BODY}, in a file of up to 1 MiB, with two older ones behind it. Without room for it telemetry goes on.
/// @threads any
class TelemetryRecord
{
public:
    /// getUserStateDir()/log/telemetry.jsonl; there once something was sent.
    [[nodiscard]] QUORVIX_API static std::filesystem::path file();

    void add(const Json::Value& body, std::chrono::system_clock::time_point time);

private:
    Mutex mutex_;
    std::filesystem::path path_ VX_GUARDED_BY(mutex_);
    spdlog::sink_ptr lines_ VX_GUARDED_BY(mutex_); ///< null where the file could not be opened
};

} // namespace VX
