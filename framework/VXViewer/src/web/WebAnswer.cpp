#include "WebAnswer.h"

#include <VXMesh/Json.h>
#include <VXViewer/WebRequest.h>

#include <fmt/format.h>

namespace VX
{

namespace
{

Json::Value jsonString(std::string_view text)
{
    return {text.data(), text.data() + text.size()};
}

/// The member, where `value` is an object that has one of that name; null otherwise.
const Json::Value& member(const Json::Value& value, const char* name)
{
    return value.isObject() ? value[name] : Json::Value::nullSingleton();
}

int codeOf(const Json::Value& answer)
{
    const Json::Value& code = member(answer, "code");
    return code.isInt() ? code.asInt() : 0;
}

/// What the service itself says about a failure; empty where it says nothing.
const Json::Value& serviceMessage(const Json::Value& body)
{
    const Json::Value& message = member(body, "message");
    if (message.isString())
        return message;
    const Json::Value& error = member(body, "error");
    return error.isString() ? error : member(error, "message");
}

} // namespace

Json::Value makeFailedAnswer(std::string_view error)
{
    Json::Value answer(Json::objectValue);
    answer["code"] = 0;
    answer["error"] = jsonString(error);
    return answer;
}

Json::Value makeAnswer(int status, std::string_view reason, std::string_view text)
{
    Json::Value answer(Json::objectValue);
    answer["code"] = status;
    answer["text"] = jsonString(text);
    if (status >= 400)
        answer["error"] = reason.empty() ? fmt::format("HTTP {}", status) : fmt::format("HTTP {}: {}", status, reason);
    return answer;
}

tl::expected<Json::Value, std::string> parseResponse(const Json::Value& answer)
{
    const int code = codeOf(answer);
    const Json::Value& errorMember = member(answer, "error");
    const std::string error = errorMember.isString() ? errorMember.asString() : std::string();
    if (code == 0)
        return tl::unexpected(error.empty() ? "Connection error" : error);

    const std::string status = fmt::format("HTTP {}", code);
    const Json::Value& text = member(answer, "text");
    if (!text.isString())
        return tl::unexpected(error.empty() ? status : error);
    if (code < 400 && text.asString().empty())
        return Json::Value();

    auto body = deserializeJsonValue(text.asString());
    if (code < 400)
        return body;
    if (!body)
        return tl::unexpected(error.empty() ? status : error);
    const Json::Value& message = serviceMessage(*body);
    return tl::unexpected(message.isString() ? message.asString() : status);
}

} // namespace VX
