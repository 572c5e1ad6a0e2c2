#include "RpcMessage.h"

#include <VXMesh/Json.h>

#include <utility>

namespace VX::Mcp
{

namespace
{

bool isId(const Json::Value& value)
{
    return value.isString() || value.type() == Json::intValue || value.type() == Json::uintValue;
}

Json::Value envelope(const Json::Value& id)
{
    Json::Value out(Json::objectValue);
    out["jsonrpc"] = "2.0";
    // A message that could not be read has no id to answer to.
    if (!id.isNull())
        out["id"] = id;
    return out;
}

} // namespace

tl::expected<RpcMessage, RpcRefusal> parseRpcMessage(const std::string& text)
{
    auto parsed = deserializeJsonValue(text);
    if (!parsed)
        return tl::unexpected(RpcRefusal{.error = {.code = RpcCode::ParseError, .message = std::move(parsed).error()}});
    Json::Value& value = *parsed;
    const auto refuse = [](std::string message, const Json::Value& id = {})
    {
        return tl::unexpected(
            RpcRefusal{.error = {.code = RpcCode::InvalidRequest, .message = std::move(message)}, .id = id});
    };
    if (value.isArray())
        return refuse("Batches are not supported: send one message at a time.");
    if (!value.isObject())
        return refuse("A message is a JSON object.");
    const bool hasId = value.isMember("id");
    if (hasId && !isId(value["id"]))
        return refuse("The id of a message is a string or an integer.");
    const Json::Value id = hasId ? value["id"] : Json::Value();
    if (value["jsonrpc"] != "2.0")
        return refuse("The member \"jsonrpc\" must be \"2.0\".", id);

    RpcMessage out{.id = id};
    if (value.isMember("method"))
    {
        if (!value["method"].isString())
            return refuse("The member \"method\" must be a string.", id);
        out.kind = hasId ? RpcMessage::Kind::Request : RpcMessage::Kind::Notification;
        out.method = value["method"].asString();
        if (value.isMember("params"))
            out.params = std::move(value["params"]);
        if (!out.params.isObject())
            return tl::unexpected(RpcRefusal{
                .error = {.code = RpcCode::InvalidParams, .message = "The member \"params\" must be an object."},
                .id = id});
        return out;
    }
    if (!hasId || value.isMember("result") == value.isMember("error"))
        return refuse("A message has a method, or else an id with a result or an error.", id);
    out.kind = RpcMessage::Kind::Response;
    out.result = std::move(value["result"]);
    out.error = std::move(value["error"]);
    return out;
}

Json::Value makeRpcResult(const Json::Value& id, Json::Value result)
{
    Json::Value out = envelope(id);
    out["result"] = std::move(result);
    return out;
}

Json::Value makeRpcError(const Json::Value& id, const RpcError& error)
{
    Json::Value out = envelope(id);
    out["error"]["code"] = static_cast<int>(error.code);
    out["error"]["message"] = error.message;
    if (!error.data.isNull())
        out["error"]["data"] = error.data;
    return out;
}

Json::Value makeRpcNotification(const std::string& method, Json::Value params)
{
    Json::Value out = envelope({});
    out["method"] = method;
    out["params"] = std::move(params);
    return out;
}

} // namespace VX::Mcp
