#include <quorvix/auth/UserInfo.h>
#include <quorvix/converter/ConverterServiceV2.h>
#include <quorvix/converter/WebAnswer.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/Json.h>

#include <json/writer.h>

#include <unordered_map>
#include <utility>

namespace VX::ConverterService::V2
{

namespace
{

WebRequest makeRequest(const char* operation, WebRequest::Method method)
{
    WebRequest request(deployment().converter + "/converter/v2" + operation);
    request.setMethod(method);
    request.setLogName("ConverterService");
    return request;
}

WebRequest makePost(const char* operation, Json::Value body)
{
    body["compress_input"] = "zip";
    if (const std::string accessToken = UserInfo::getAccessToken(); !accessToken.empty())
        body["access_token"] = accessToken;
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    WebRequest request = makeRequest(operation, WebRequest::Method::Post);
    request.setBody(Json::writeString(writer, body));
    return request;
}

tl::unexpected<std::string> invalidFormat()
{
    return tl::unexpected<std::string>("Invalid response format");
}

tl::unexpected<std::string> missingField(const char* name)
{
    return tl::unexpected('"' + std::string(name) + "\" field is missing");
}

/// The payload of an answer of the service, which is not null; its HTTP status says nothing.
tl::expected<Json::Value, std::string> parsePayload(const Json::Value& answer)
{
    if (WebAnswer::code(answer) == 0)
        return tl::unexpected<std::string>("Connection error");
    const auto text = WebAnswer::text(answer, "text");
    if (!text)
        return tl::unexpected(WebAnswer::text(answer, "error").value_or(""));
    const auto body = deserializeJsonValue(*text);
    if (!body)
        return tl::unexpected(body.error());
    if (!body->isObject())
        return invalidFormat();
    if (const Json::Value& result = WebAnswer::member(*body, "result"); !result.isNull())
        return result;
    if (auto message = WebAnswer::text(WebAnswer::member(*body, "error"), "message"))
        return tl::unexpected(std::move(*message));
    return invalidFormat();
}

} // namespace

WebRequest requestConvertContext(const std::string& inputFormat)
{
    Json::Value body(Json::objectValue);
    body["input_format"] = inputFormat;
    return makePost("/request", std::move(body));
}

WebRequest startConvert(const std::string& requestId, const std::string& inputFormat, const std::string& outputFormat)
{
    Json::Value body(Json::objectValue);
    body["request_id"] = requestId;
    body["input_format"] = inputFormat;
    body["output_format"] = outputFormat;
    return makePost("/convert", std::move(body));
}

WebRequest checkConvertStatus(const std::string& requestId)
{
    WebRequest request = makeRequest("/status", WebRequest::Method::Get);
    request.setParameters({{"request_id", requestId}});
    return request;
}

tl::expected<RequestConvertContextResult, std::string>
RequestConvertContextResult::parseResponse(const Json::Value& answer)
{
    const auto payload = parsePayload(answer);
    if (!payload)
        return tl::unexpected(payload.error());
    if (!payload->isObject())
        return invalidFormat();
    auto requestId = WebAnswer::text(*payload, "request_id");
    if (!requestId)
        return missingField("request_id");
    auto url = WebAnswer::text(*payload, "url");
    if (!url)
        return missingField("url");
    return RequestConvertContextResult{std::move(*requestId), std::move(*url)};
}

tl::expected<StartConvertResult, std::string> StartConvertResult::parseResponse(const Json::Value& answer)
{
    return parsePayload(answer).map([](const Json::Value&) { return StartConvertResult{}; });
}

tl::expected<CheckConvertStatusResult, std::string> CheckConvertStatusResult::parseResponse(const Json::Value& answer)
{
    static const std::unordered_map<std::string, State> states{
        {"not_started", State::NotStarted}, {"in_progress", State::InProgress}, {"finished", State::Finished}};

    const auto payload = parsePayload(answer);
    if (!payload)
        return tl::unexpected(payload.error());
    const auto text = WebAnswer::text(*payload, "state");
    if (!text)
        return missingField("state");
    const auto state = states.find(*text);
    if (state == states.end())
        return tl::unexpected("Unknown state: " + *text);
    auto url = WebAnswer::text(*payload, "url");
    if (!url && state->second == State::Finished)
        return missingField("url");
    return CheckConvertStatusResult{state->second, std::move(url)};
}

} // namespace VX::ConverterService::V2
