#include <quorvix/telemetry/LogBatch.h>

#include <fmt/chrono.h>
#include <json/value.h>
#include <json/writer.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>

namespace VX
{

namespace
{

/// Of a line without its message, about; it only saves moving the text while it grows.
constexpr std::size_t typicalLineBytes = 320;

/// Whether the writer puts the text between quotes as it is.
bool isPlain(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

std::string quoted(std::string_view text)
{
    return Json::writeString(Json::StreamWriterBuilder(), Json::Value(text.data(), text.data() + text.size()));
}

class BatchText
{
public:
    BatchText(const ServerSendSink::Params& params, std::size_t expectedBytes)
        : beforeLevel_("\n\t\t{\n\t\t\t\"environment\" : " + quoted(params.environment) + ",\n\t\t\t\"logLevel\" : ")
        , beforeTime_(",\n\t\t\t\"platform\" : " + quoted(params.platform) +
                      ",\n\t\t\t\"serviceName\" : " + quoted(params.serviceName) +
                      ",\n\t\t\t\"serviceVersion\" : " + quoted(params.serviceVersion) + ",\n\t\t\t\"timestamp\" : \"")
    {
        text_.reserve(expectedBytes);
        text_ = "{\n\t\"items\" : \n\t[";
    }

    void add(const LogRecord& record)
    {
        text_ += beforeLevel_;
        const auto& level = spdlog::level::to_string_view(record.level);
        addQuoted_({level.data(), level.size()});
        text_ += ",\n\t\t\t\"message\" : ";
        addQuoted_(record.message);
        text_ += beforeTime_;
        addTime_(record.time);
        text_ += "\"\n\t\t},";
    }

    /// @return all of it, after one line or more
    [[nodiscard]] std::string take()
    {
        text_.back() = '\n'; // the comma behind the last line
        text_ += "\t]\n}";
        return std::move(text_);
    }

private:
    void addQuoted_(std::string_view text)
    {
        if (!isPlain(text))
        {
            text_ += quoted(text);
            return;
        }
        text_ += '"';
        text_ += text;
        text_ += '"';
    }

    void addTime_(LogRecord::Time time)
    {
        const auto second = std::chrono::floor<std::chrono::seconds>(time);
        if (second != second_)
        {
            second_ = second;
            secondText_ = fmt::format("{:%FT%T}", second);
        }
        text_ += secondText_;
        // The library's versions differ in what they write of a fraction.
        fmt::format_to(std::back_inserter(text_), ".{:07}Z", (time - second).count());
    }

    const std::string beforeLevel_;
    const std::string beforeTime_;
    std::optional<std::chrono::sys_seconds> second_; ///< of the line before, which most often has the same
    std::string secondText_;
    std::string text_;
};

} // namespace

std::string logBatchBody(const LogChunks& lines, const ServerSendSink::Params& params)
{
    std::size_t count = 0;
    std::size_t messageBytes = 0;
    for (const auto& chunk : lines)
    {
        count += chunk->count();
        messageBytes += chunk->messageBytes();
    }
    if (count == 0)
        return "{\n\t\"items\" : []\n}";
    BatchText text(params, count * typicalLineBytes + messageBytes);
    for (const auto& chunk : lines)
        chunk->forEach([&text](const LogRecord& record) { text.add(record); });
    return text.take();
}

} // namespace VX
