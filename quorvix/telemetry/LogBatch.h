#pragma once

#include <quorvix/Export.h>
#include <quorvix/telemetry/ServerSendSink.h>

#include <chrono>
#include <cstdint>
#include <ratio>
#include <string>
#include <vector>

namespace VX
{

/// A line of the log on its way to the service.
struct LogRecord
{
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    using Time = std::chrono::time_point<std::chrono::system_clock, Ticks>;

    Time time; ///< when the sink got it
    spdlog::level::level_enum level;
    std::string message;
};

/// What is sent of `records`: {"items": [{"timestamp", "logLevel", "serviceName", "serviceVersion", "platform",
/// "environment", "message"}, …]}, in their order; "timestamp" is ISO 8601 in UTC with seven decimals.
/// @threads any
[[nodiscard]] QUORVIX_API std::string logBatchBody(const std::vector<LogRecord>& records,
                                                   const ServerSendSink::Params& params);

} // namespace VX
