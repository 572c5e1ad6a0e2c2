#include <quorvix/telemetry/LogBatch.h>

#include <fmt/chrono.h>
#include <json/value.h>
#include <json/writer.h>

namespace VX
{

namespace
{

std::string timestamp(LogRecord::Time time)
{
    // The library's versions differ in what they write of a fraction.
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return fmt::format("{:%FT%T}.{:07}Z", seconds, (time - seconds).count());
}

std::string nameOf(spdlog::level::level_enum level)
{
    const auto& name = spdlog::level::to_string_view(level);
    return {name.data(), name.size()};
}

} // namespace

std::string logBatchBody(const std::vector<LogRecord>& records, const ServerSendSink::Params& params)
{
    Json::Value body(Json::objectValue);
    Json::Value& items = body["items"] = Json::Value(Json::arrayValue);
    for (const LogRecord& record : records)
    {
        Json::Value& item = items.append(Json::objectValue);
        item["timestamp"] = timestamp(record.time);
        item["logLevel"] = nameOf(record.level);
        item["serviceName"] = params.serviceName;
        item["serviceVersion"] = params.serviceVersion;
        item["platform"] = params.platform;
        item["environment"] = params.environment;
        item["message"] = record.message;
    }
    return Json::writeString(Json::StreamWriterBuilder(), body);
}

} // namespace VX
