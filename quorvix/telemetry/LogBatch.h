#pragma once

#include <quorvix/Export.h>
#include <quorvix/telemetry/LogLines.h>
#include <quorvix/telemetry/ServerSendSink.h>

#include <string>

namespace VX
{

/// What is sent of `lines`: {"items": [{"timestamp", "logLevel", "serviceName", "serviceVersion", "platform",
/// "environment", "message"}, …]}, in their order; "timestamp" is ISO 8601 in UTC with seven decimals. Every byte is as
/// the default writer of jsoncpp puts it, without the tree that it would need: hundreds of bytes for each line.
/// @threads any
[[nodiscard]] QUORVIX_API std::string logBatchBody(const LogChunks& lines, const ServerSendSink::Params& params);

} // namespace VX
