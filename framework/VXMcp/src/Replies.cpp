#include "Replies.h"

#include <utility>

namespace VX::Mcp
{

namespace
{

int statusOf(const ClientRequest& request, RpcCode code)
{
    if (!request.isModern)
        return 200;
    switch (code)
    {
    case RpcCode::MethodNotFound:
        return 404;
    case RpcCode::MissingClientCapability:
    case RpcCode::HeaderMismatch:
    case RpcCode::UnsupportedVersion:
        return 400;
    default:
        return 200;
    }
}

/// The capability that a client needs to answer a method.
const char* capabilityFor(const std::string& method)
{
    if (method == "elicitation/create")
        return "elicitation";
    return method == "roots/list" ? "roots" : "sampling";
}

void complete(const ClientRequest& request, const Registry::Info& server, Json::Value result, const char* type)
{
    if (request.isModern)
    {
        result["resultType"] = type;
        result["_meta"]["io.modelcontextprotocol/serverInfo"] = toWire(server);
    }
    request.exchange->succeed(std::move(result));
}

} // namespace

Json::Value toWire(const Registry::Info& server)
{
    Json::Value out(Json::objectValue);
    out["name"] = server.name;
    out["version"] = server.version;
    return out;
}

void reply(const ClientRequest& request, const Registry::Info& server, Json::Value result)
{
    complete(request, server, std::move(result), "complete");
}

void replyCacheable(const ClientRequest& request, const Registry::Info& server, Json::Value result, Caching caching)
{
    if (request.isModern)
    {
        result["ttlMs"] = caching.ttlMs;
        result["cacheScope"] = caching.isPublic ? "public" : "private";
    }
    reply(request, server, std::move(result));
}

void replyError(const ClientRequest& request, const RpcError& error)
{
    request.exchange->fail(statusOf(request, error.code), error);
}

void replyInvalidParams(const ClientRequest& request, std::string message)
{
    replyError(request, {.code = RpcCode::InvalidParams, .message = std::move(message)});
}

void replyInputRequired(const ClientRequest& request, const Registry::Info& server, const Inquiry& inquiry,
                        const std::string& sealedState)
{
    if (Json::Value missing = missingCapabilities(inquiry, request.capabilities); !missing.empty())
    {
        RpcError error{.code = RpcCode::MissingClientCapability,
                       .message = "This needs a capability that the client has not declared."};
        error.data["requiredCapabilities"] = std::move(missing);
        replyError(request, error);
        return;
    }
    Json::Value result(Json::objectValue);
    if (inquiry.requests.isObject() && !inquiry.requests.empty())
        result["inputRequests"] = inquiry.requests;
    if (!sealedState.empty())
        result["requestState"] = sealedState;
    complete(request, server, std::move(result), "input_required");
}

Json::Value missingCapabilities(const Inquiry& inquiry, const Json::Value& declared)
{
    Json::Value out(Json::objectValue);
    for (const auto& question : inquiry.requests)
    {
        const char* const capability = capabilityFor(question["method"].asString());
        if (!declared.isObject() || !declared.isMember(capability))
            out[capability] = Json::Value(Json::objectValue);
    }
    return out;
}

} // namespace VX::Mcp
