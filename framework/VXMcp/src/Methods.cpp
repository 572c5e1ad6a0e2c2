#include "Methods.h"

#include "ClientInfo.h"
#include "EventStream.h"
#include "ModernRequest.h"
#include "Offers.h"
#include "Replies.h"
#include "ToolRun.h"

#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace VX::Mcp
{

namespace
{

using RequestPtr = std::shared_ptr<const ClientRequest>;
using SharedPtr = std::shared_ptr<Shared>;
using Method = void (*)(const SharedPtr&, const RequestPtr&);

/// How long clients may keep what only changes while the program starts or registers something new, of which they hear.
constexpr Caching keptForAMinute{.ttlMs = 60'000, .isPublic = true};

Json::Value capabilities()
{
    Json::Value out(Json::objectValue);
    out["tools"]["listChanged"] = true;
    out["prompts"]["listChanged"] = true;
    out["resources"]["listChanged"] = true;
    out["resources"]["subscribe"] = true;
    out["completions"] = Json::Value(Json::objectValue);
    out["logging"] = Json::Value(Json::objectValue);
    return out;
}

void addInstructions(Json::Value& out, const Registry::Info& info)
{
    if (!info.instructions.empty())
        out["instructions"] = info.instructions;
}

void discover(const SharedPtr& shared, const RequestPtr& request)
{
    const auto info = shared->registry.info();
    Json::Value result(Json::objectValue);
    result["supportedVersions"] = supportedVersions();
    result["capabilities"] = capabilities();
    addInstructions(result, info);
    replyCacheable(*request, info, std::move(result), keptForAMinute);
}

void initialize(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& params = request->message.params;
    if (!params["protocolVersion"].isString())
        return replyInvalidParams(*request, "The member \"protocolVersion\" is missing.");
    const auto session =
        shared->sessions.open(clientNameOf(params["clientInfo"]), capabilityFlags(params["capabilities"]));

    const auto info = shared->registry.info();
    Json::Value result(Json::objectValue);
    const bool isOlder = params["protocolVersion"] == olderLegacyVersion;
    result["protocolVersion"] = isOlder ? olderLegacyVersion : legacyVersion;
    result["capabilities"] = capabilities();
    result["serverInfo"] = toWire(info);
    addInstructions(result, info);
    request->exchange->succeed(std::move(result), {{"Mcp-Session-Id", session->id}});
}

void ping(const SharedPtr& shared, const RequestPtr& request)
{
    reply(*request, shared->registry.info(), Json::Value(Json::objectValue));
}

void setLogLevel(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& level = request->message.params["level"];
    const auto known = level.isString() ? logLevelOf(level.asString()) : std::nullopt;
    if (!known)
        return replyInvalidParams(*request, "The member \"level\" must be a level of log messages.");
    if (request->session)
        request->session->setLogLevel(*known);
    reply(*request, shared->registry.info(), Json::Value(Json::objectValue));
}

/// The modern way to hear of changes: a stream that says first what it will tell.
void listen(const SharedPtr& shared, const RequestPtr& request)
{
    const Json::Value& wanted = request->message.params["notifications"];
    if (!wanted.isObject())
        return replyInvalidParams(*request, "The member \"notifications\" must be an object.");
    if (!request->exchange->canStream())
        return replyInvalidParams(*request, "Changes are told on a stream: accept \"text/event-stream\".");
    Json::Value agreed(Json::objectValue);
    std::map<std::string, Change::Kind> flags{{"toolsListChanged", Change::Kind::ToolList},
                                              {"promptsListChanged", Change::Kind::PromptList},
                                              {"resourcesListChanged", Change::Kind::ResourceList}};
    std::set<Change::Kind> kinds;
    for (const auto& [flag, kind] : flags)
        if (wanted[flag].isBool() && wanted[flag].asBool())
        {
            agreed[flag] = true;
            kinds.insert(kind);
        }
    std::set<std::string> uris;
    for (const auto& uri : wanted["resourceSubscriptions"])
        if (uri.isString() && uris.insert(uri.asString()).second)
            agreed["resourceSubscriptions"].append(uri);

    const Json::Value& id = request->message.id;
    Json::Value acknowledged(Json::objectValue);
    acknowledged["notifications"] = std::move(agreed);
    acknowledged["_meta"]["io.modelcontextprotocol/subscriptionId"] = id;
    const auto stream = request->exchange->stream();
    stream->write(toEvent(makeRpcNotification("notifications/subscriptions/acknowledged", std::move(acknowledged))));
    const auto number = shared->listeners.add(
        {.stream = stream,
         .wants = [kinds = std::move(kinds), uris = std::move(uris)](const Change& change)
         { return change.kind == Change::Kind::Resource ? uris.contains(change.uri) : kinds.contains(change.kind); },
         .subscriptionId = id});
    request->exchange->onGone(
        [weak = std::weak_ptr(shared), number]
        {
            if (const auto alive = weak.lock())
                alive->listeners.remove(number);
        });
}

const std::map<std::string_view, Method>& methods(bool isModern)
{
    static const std::map<std::string_view, Method> common{
        {"tools/list", listTools},         {"tools/call", callTool},
        {"resources/list", listResources}, {"resources/templates/list", listResourceTemplates},
        {"resources/read", readResource},  {"prompts/list", listPrompts},
        {"prompts/get", getPrompt},        {"completion/complete", completeArgument},
    };
    static const auto with = [](std::map<std::string_view, Method> others)
    {
        others.insert(common.begin(), common.end());
        return others;
    };
    static const auto modern = with({{"server/discover", discover}, {"subscriptions/listen", listen}});
    static const auto legacy = with({{"initialize", initialize},
                                     {"ping", ping},
                                     {"logging/setLevel", setLogLevel},
                                     {"resources/subscribe", subscribeResource},
                                     {"resources/unsubscribe", unsubscribeResource}});
    return isModern ? modern : legacy;
}

} // namespace

void serveRequest(const SharedPtr& shared, const RequestPtr& request)
{
    const auto& known = methods(request->isModern);
    const auto found = known.find(request->message.method);
    if (found == known.end())
        return replyError(*request, {.code = RpcCode::MethodNotFound,
                                     .message = "There is no method \"" + request->message.method + "\"."});
    found->second(shared, request);
}

void serveNotification(Shared& shared, const RpcMessage& message, const std::shared_ptr<Session>& session)
{
    if (message.method == "notifications/cancelled")
        shared.calls.cancel(session ? session->id : std::string(), message.params["requestId"]);
}

} // namespace VX::Mcp
