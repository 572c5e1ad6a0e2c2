#include "Endpoint.h"

#include "Access.h"
#include "EventStream.h"
#include "JsonText.h"
#include "Methods.h"
#include "ModernRequest.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace VX::Mcp
{

namespace
{

constexpr const char* path = "/mcp";
constexpr const char* sessionHeader = "Mcp-Session-Id";
/// Of a message. Arguments are small; what is large goes through files.
constexpr std::uint64_t bodyLimit = 4U << 20U;

std::string headerOf(const HttpRequest& request, const char* name)
{
    const auto found = request.headers.find(name);
    return found == request.headers.end() ? std::string() : found->second;
}

bool has(const std::string& text, std::string_view part)
{
    const HeaderNameLess less;
    const auto same = [&](char a, char b) { return !less({&a, 1}, {&b, 1}) && !less({&b, 1}, {&a, 1}); };
    return !std::ranges::search(text, part, same).empty();
}

/// What the header names, without its parameters.
std::string mediaTypeOf(const std::string& contentType)
{
    std::string type = contentType.substr(0, contentType.find(';'));
    type.erase(type.find_last_not_of(" \t") + 1);
    type.erase(0, type.find_first_not_of(" \t"));
    return type;
}

bool isJson(const std::string& contentType)
{
    constexpr std::string_view json = "application/json";
    const std::string type = mediaTypeOf(contentType);
    return type.size() == json.size() && has(type, json);
}

Exchange::Accepts acceptedBy(const HttpRequest& request)
{
    const std::string accept = headerOf(request, "Accept");
    const bool isAnything = has(accept, "*/*");
    const bool stream = isAnything || has(accept, "text/event-stream");
    return {.json = isAnything || !stream || has(accept, "application/json"), .stream = stream};
}

HttpResponse errorResponse(int status, const Json::Value& id, const RpcError& error)
{
    return {.status = status,
            .headers = {{"Content-Type", "application/json"}},
            .body = toJsonText(makeRpcError(id, error))};
}

HttpResponse notAllowed(const char* allowed)
{
    return {.status = 405, .headers = {{"Allow", allowed}}};
}

HttpResponse unknownSession(const Json::Value& id)
{
    return errorResponse(
        404, id,
        {.code = RpcCode::SessionNotFound, .message = "This session has ended: begin a new one with \"initialize\"."});
}

bool isLegacyVersion(const std::string& version)
{
    return version == legacyVersion || version == olderLegacyVersion;
}

} // namespace

Endpoint::Endpoint(std::shared_ptr<Shared> shared, std::string bearerToken)
    : shared_(std::move(shared))
    , bearerToken_(std::move(bearerToken))
{
}

tl::expected<HttpBodySink, HttpResponse> Endpoint::acceptBody(const HttpRequest& head)
{
    if (auto refusal = refuseAccess(head, bearerToken_))
        return tl::unexpected(std::move(*refusal));
    if (head.path != path)
        return tl::unexpected(HttpResponse{.status = 404});
    if (head.method == "POST" && !isJson(headerOf(head, "Content-Type")))
        return tl::unexpected(HttpResponse{.status = 415});
    return HttpBodySink{.limit = bodyLimit};
}

void Endpoint::handle(HttpRequest request, Respond respond)
{
    if (request.method == "GET")
        return listen_(request, respond);
    if (request.method == "DELETE")
        return leave_(request, respond);
    if (request.method != "POST")
        return respond(notAllowed("GET, POST, DELETE"));
    auto message = parseRpcMessage(request.body);
    if (!message)
        return respond(errorResponse(400, message.error().id, message.error().error));
    take_(request, std::move(*message), respond);
}

void Endpoint::take_(const HttpRequest& request, RpcMessage message, const Respond& respond)
{
    if (!isModernMessage(request, message))
        return takeLegacy_(request, std::move(message), respond);
    if (message.kind != RpcMessage::Kind::Request)
        return respond({.status = 202}); // to cancel, a client of this revision closes its stream
    ClientRequest known{.message = std::move(message)};
    if (const auto refusal = readModernRequest(request, known))
        return respond(errorResponse(refusal->status, known.message.id, refusal->error));
    serve_(request, std::move(known), respond);
}

void Endpoint::takeLegacy_(const HttpRequest& request, RpcMessage message, const Respond& respond)
{
    const bool isBeginning = message.method == "initialize";
    const std::string sessionId = headerOf(request, sessionHeader);
    const auto session = isBeginning ? nullptr : shared_->sessions.find(sessionId);
    if (!isBeginning && !sessionId.empty() && !session)
        return respond(unknownSession(message.id));
    const std::string version = headerOf(request, "MCP-Protocol-Version");
    // Clients may carry over the version that they have found out before.
    if (!version.empty() && !isLegacyVersion(version) && version != modernVersion)
        return respond(errorResponse(400, message.id,
                                     {.code = RpcCode::InvalidRequest,
                                      .message = "The header MCP-Protocol-Version names a version that this server "
                                                 "does not speak."}));
    switch (message.kind)
    {
    case RpcMessage::Kind::Notification:
        serveNotification(*shared_, message, session);
        return respond({.status = 202});
    case RpcMessage::Kind::Response:
        shared_->questions.answer(sessionId, message);
        return respond({.status = 202});
    case RpcMessage::Kind::Request:
        break;
    }
    ClientRequest known{.message = std::move(message), .session = session};
    if (session)
    {
        known.clientName = session->clientName;
        known.capabilities = session->capabilities;
    }
    serve_(request, std::move(known), respond);
}

void Endpoint::serve_(const HttpRequest& request, ClientRequest known, const Respond& respond)
{
    known.exchange = std::make_shared<Exchange>(known.message.id, respond, request.client, acceptedBy(request));
    serveRequest(shared_, std::make_shared<const ClientRequest>(std::move(known)));
}

/// The older way to hear of changes: a stream of a session.
void Endpoint::listen_(const HttpRequest& request, const Respond& respond)
{
    const std::string sessionId = headerOf(request, sessionHeader);
    if (sessionId.empty() || !acceptedBy(request).stream)
        return respond(notAllowed("POST"));
    const auto session = shared_->sessions.find(sessionId);
    if (!session)
        return respond(unknownSession({}));
    const auto stream = makeEventStream();
    const auto number =
        shared_->listeners.add({.stream = stream,
                                .wants = [session](const Change& change)
                                { return change.kind != Change::Kind::Resource || session->isSubscribed(change.uri); },
                                .sessionId = sessionId});
    request.client->onGone(
        [weak = std::weak_ptr(shared_), number]
        {
            if (const auto alive = weak.lock())
                alive->listeners.remove(number);
        });
    respond(makeEventResponse(stream));
}

void Endpoint::leave_(const HttpRequest& request, const Respond& respond)
{
    const std::string sessionId = headerOf(request, sessionHeader);
    if (sessionId.empty())
        return respond(notAllowed("POST"));
    if (!shared_->sessions.close(sessionId))
        return respond(unknownSession({}));
    shared_->listeners.endSession(sessionId);
    respond({.status = 204});
}

} // namespace VX::Mcp
