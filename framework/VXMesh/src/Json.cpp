#include "StartLower.h"

#include <VXMesh/FileError.h>
#include <VXMesh/Json.h>
#include <VXMesh/MappedFile.h>

#include <fmt/format.h>
#include <json/reader.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace VX
{

namespace
{

// The parser's report is a list of "* Line 1, Column 2", each followed by the reason on a line of its own; the first
// one is the cause of the others.
std::string firstReason(std::string_view report)
{
    const auto takeLine = [&report]
    {
        const std::size_t end = std::min(report.find('\n'), report.size());
        std::string_view line = report.substr(0, end);
        report.remove_prefix(std::min(end + 1, report.size()));
        line.remove_prefix(std::min(line.find_first_not_of("* "), line.size()));
        return line;
    };
    std::string place(takeLine());
    std::string reason(takeLine());
    if (!reason.empty() && reason.back() == '.')
        reason.pop_back();
    // The one reason that quotes the text, which may be a secret.
    if (reason.ends_with("' is not a number"))
        reason = "a number is not complete";
    if (place.starts_with("Line"))
        place.front() = 'l';
    if (const auto column = place.find("Column"); column != std::string::npos)
        place[column] = 'c';
    return fmt::format("{}: {}.", place, startLower(reason));
}

tl::expected<Json::Value, std::string> parse(std::string_view text)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    builder["failIfExtra"] = true;
    builder["allowTrailingCommas"] = false;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value value;
    std::string report;
    try
    {
        if (reader->parse(text.data(), text.data() + text.size(), &value, &report))
            return value;
    }
    catch (const std::exception&)
    {
        // The parser has one exception: for values within values within values.
        return tl::unexpected<std::string>("it is nested too deeply.");
    }
    return tl::unexpected(firstReason(report));
}

} // namespace

tl::expected<Json::Value, std::string> deserializeJsonValue(const std::filesystem::path& path)
{
    const auto file = MappedFile::open(path);
    if (!file)
        return tl::unexpected(file.error());
    return parse(file->text())
        .map_error([&path](const std::string& reason) { return fileErrorText("read", path, reason); });
}

tl::expected<Json::Value, std::string> deserializeJsonValue(const std::string& text)
{
    return parse(text).map_error([](const std::string& reason) { return "Invalid JSON: " + reason; });
}

tl::expected<Json::Value, std::string> deserializeJsonValue(const char* text)
{
    return deserializeJsonValue(std::string(text));
}

} // namespace VX
