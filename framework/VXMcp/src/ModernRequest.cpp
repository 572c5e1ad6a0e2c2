#include "ModernRequest.h"

#include "ClientInfo.h"
#include "Secrets.h"

namespace VX::Mcp
{

namespace
{

constexpr const char* versionKey = "io.modelcontextprotocol/protocolVersion";
constexpr const char* capabilitiesKey = "io.modelcontextprotocol/clientCapabilities";
constexpr const char* clientKey = "io.modelcontextprotocol/clientInfo";
constexpr const char* logLevelKey = "io.modelcontextprotocol/logLevel";

const Json::Value& metaOf(const RpcMessage& message)
{
    static const Json::Value none(Json::objectValue);
    const Json::Value& params = message.params;
    return params["_meta"].isObject() ? params["_meta"] : none;
}

Refusal invalid(std::string text)
{
    return {.error = {.code = RpcCode::InvalidParams, .message = std::move(text)}};
}

Refusal mismatch(std::string text)
{
    return {.error = {.code = RpcCode::HeaderMismatch, .message = std::move(text)}};
}

std::optional<std::string> headerOf(const HttpRequest& request, const char* name)
{
    const auto found = request.headers.find(name);
    return found == request.headers.end() ? std::nullopt : decodeHeader(found->second);
}

std::optional<Refusal> checkHeader(const HttpRequest& http, const char* name, const std::string& expected)
{
    const auto value = headerOf(http, name);
    if (!value)
        return mismatch(std::string("The header ") + name + " is missing or cannot be read.");
    if (*value != expected)
        return mismatch(std::string("The header ") + name + " differs from the body of the request.");
    return std::nullopt;
}

/// The member of the params that the header Mcp-Name repeats; null for methods without.
const char* nameMember(const std::string& method)
{
    if (method == "tools/call" || method == "prompts/get")
        return "name";
    return method == "resources/read" ? "uri" : nullptr;
}

std::optional<Refusal> checkHeaders(const HttpRequest& http, const RpcMessage& message)
{
    if (auto refusal = checkHeader(http, "Mcp-Method", message.method))
        return refusal;
    const char* const member = nameMember(message.method);
    const Json::Value& params = message.params;
    return member && params[member].isString() ? checkHeader(http, "Mcp-Name", params[member].asString())
                                               : std::nullopt;
}

RpcError unsupported(const std::string& version)
{
    RpcError out{.code = RpcCode::UnsupportedVersion, .message = "The protocol version is not supported."};
    out.data["supported"] = supportedVersions();
    out.data["requested"] = version;
    return out;
}

} // namespace

Json::Value supportedVersions()
{
    Json::Value out(Json::arrayValue);
    for (const char* version : {modernVersion, legacyVersion, olderLegacyVersion})
        out.append(version);
    return out;
}

bool isModernMessage(const HttpRequest& request, const RpcMessage& message)
{
    if (metaOf(message).isMember(versionKey) || message.method == "server/discover")
        return true;
    return message.kind != RpcMessage::Kind::Response && message.method != "initialize" &&
           !request.headers.contains("Mcp-Session-Id") &&
           headerOf(request, "MCP-Protocol-Version").value_or("") == modernVersion;
}

std::optional<std::string> decodeHeader(std::string_view value)
{
    constexpr std::string_view begin = "=?base64?";
    constexpr std::string_view end = "?=";
    if (value.size() < begin.size() + end.size() || !value.starts_with(begin) || !value.ends_with(end))
        return std::string(value);
    return fromBase64(value.substr(begin.size(), value.size() - begin.size() - end.size()));
}

std::optional<Refusal> readModernRequest(const HttpRequest& http, ClientRequest& out)
{
    const Json::Value& meta = metaOf(out.message);
    if (!meta[versionKey].isString())
        return invalid(std::string("The member \"") + versionKey + "\" of \"_meta\" is missing.");
    const std::string version = meta[versionKey].asString();
    if (auto refusal = checkHeader(http, "MCP-Protocol-Version", version))
        return refusal;
    if (version != modernVersion)
        return Refusal{.error = unsupported(version)};
    if (!meta[capabilitiesKey].isObject())
        return invalid(std::string("The member \"") + capabilitiesKey + "\" of \"_meta\" is missing.");
    if (auto refusal = checkHeaders(http, out.message))
        return refusal;

    out.isModern = true;
    out.capabilities = capabilityFlags(meta[capabilitiesKey]);
    out.clientName = clientNameOf(meta[clientKey]);
    if (meta[logLevelKey].isString())
        out.logLevel = logLevelOf(meta[logLevelKey].asString());
    return std::nullopt;
}

} // namespace VX::Mcp
