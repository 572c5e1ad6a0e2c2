#include "TelemetryRequests.h"

#include "LogTime.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <json/value.h>

#include <utility>

namespace VX
{

namespace
{

using Result = tl::expected<void, std::string>;

constexpr const char* noObject = "The request must be a JSON object.";

/// Of names of actions, addresses, platforms and versions, in bytes.
constexpr std::size_t longestText = 500;
constexpr std::size_t longestMessage = 64U << 10U;
/// Of a line as JSON, which is read as a whole.
constexpr std::size_t longestItem = 8U << 20U;

tl::expected<Json::Value, std::string> parseObject(const std::string& body)
{
    auto document = deserializeJsonValue(body);
    if (!document || !document->isObject())
        return tl::unexpected(std::string(noObject));
    return document;
}

Result readText(const Json::Value& document, const std::string& name, std::string& text)
{
    const Json::Value& value = document[name];
    if (!value.isString())
        return tl::unexpected(fmt::format("\"{}\" must be a string.", name));
    text = value.asString();
    if (text.size() > longestText)
        return tl::unexpected(fmt::format("\"{}\" is too long.", name));
    return {};
}

/// A message that is too long is cut, between two characters: a client would send it again and again.
Result readMessage(const Json::Value& item, std::string& text)
{
    const Json::Value& value = item["message"];
    if (!value.isString())
        return tl::unexpected(std::string("\"message\" must be a string."));
    text = value.asString();
    if (text.size() <= longestMessage)
        return {};
    std::size_t end = longestMessage;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end;
    text.resize(end);
    return {};
}

Result readNumber(const Json::Value& document, const std::string& name, std::int64_t& number)
{
    const Json::Value& value = document[name];
    if (!value.isInt64())
        return tl::unexpected(fmt::format("\"{}\" must be a whole number.", name));
    number = value.asInt64();
    return {};
}

Result readActions(const Json::Value& document, std::vector<LoggedAction>& actions)
{
    const Json::Value& list = document["actionNames"];
    if (!list.isArray())
        return tl::unexpected(std::string("\"actionNames\" must be a list."));
    for (const Json::Value& item : list)
    {
        if (!item.isObject())
            return tl::unexpected(std::string("\"actionNames\" must hold objects."));
        LoggedAction& action = actions.emplace_back();
        if (auto read = readText(item, "name", action.name); !read)
            return read;
        if (auto read = readNumber(item, "ts", action.time); !read)
            return read;
    }
    return {};
}

Result readMembers(const Json::Value& document, StatsRequest& request)
{
    std::string type;
    if (auto read = readText(document, "type", type); !read)
        return read;
    if (type == "createSession")
        return readText(document, "email", request.email);
    if (type == "logAction")
    {
        request.type = StatsRequest::Type::LogAction;
        return readNumber(document, "sessionId", request.session)
            .and_then([&] { return readActions(document, request.actions); });
    }
    if (type == "setPlatform")
    {
        request.type = StatsRequest::Type::SetPlatform;
        return readNumber(document, "sessionId", request.session)
            .and_then([&] { return readText(document, "platform", request.platform); })
            .and_then([&] { return readText(document, "version", request.version); });
    }
    return tl::unexpected(std::string("\"type\" must be \"createSession\", \"logAction\" or \"setPlatform\"."));
}

Result readLine(const Json::Value& item, LoggedLine& line)
{
    if (!item.isObject())
        return tl::unexpected(std::string("\"items\" must hold objects."));
    const std::pair<const char*, std::string*> members[] = {
        {"timestamp", &line.time},         {"logLevel", &line.level},    {"serviceName", &line.service},
        {"serviceVersion", &line.version}, {"platform", &line.platform}, {"environment", &line.environment}};
    for (const auto& [name, field] : members)
        if (auto read = readText(item, name, *field); !read)
            return read;
    auto time = fullLogTime(line.time);
    if (!time)
        return tl::unexpected(std::string("\"timestamp\" must be a time in UTC: \"2025-01-31T09:15:02.1234567Z\"."));
    line.time = std::move(*time);
    return readMessage(item, line.message);
}

} // namespace

tl::expected<StatsRequest, std::string> StatsRequest::parse(const std::string& body)
{
    // Looked up in constants: a member that is not there must not be added.
    const auto document = parseObject(body);
    if (!document)
        return tl::unexpected(document.error());
    StatsRequest request;
    if (auto read = readMembers(*document, request); !read)
        return tl::unexpected(std::move(read.error()));
    return request;
}

tl::expected<std::vector<LoggedLine>, std::string> readLogLines(LogItemsReader& items, std::size_t most)
{
    std::vector<LoggedLine> lines;
    while (lines.size() < most)
    {
        const auto text = items.next();
        if (!items.error().empty())
            return tl::unexpected(items.error());
        if (!text)
            break;
        if (text->size() > longestItem)
            return tl::unexpected(std::string("\"items\" must hold lines of at most 8 MiB."));
        const auto item = deserializeJsonValue(std::string(*text));
        if (!item)
            return tl::unexpected(std::string(noObject));
        if (auto read = readLine(*item, lines.emplace_back()); !read)
            return tl::unexpected(std::move(read.error()));
    }
    return lines;
}

} // namespace VX
