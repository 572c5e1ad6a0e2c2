#include "Offers.h"
#include "Page.h"
#include "Replies.h"
#include "UriTemplate.h"

#include <utility>

namespace VX::Mcp
{

namespace
{

using RequestPtr = std::shared_ptr<const ClientRequest>;
using SharedPtr = std::shared_ptr<Shared>;

constexpr Caching keptForAMinute{.ttlMs = 60'000, .isPublic = true};
/// Contents show the moment.
constexpr Caching notKept{};

template <typename T>
void list(const SharedPtr& shared, const RequestPtr& request, const Registry::Table<T>& table, const char* key)
{
    auto page = makePage(table, key, request->message.params["cursor"]);
    if (!page)
        return replyInvalidParams(*request, "The cursor is none that this server has given.");
    replyCacheable(*request, shared->registry.info(), std::move(*page), keptForAMinute);
}

/// @return empty where the request names none, which has been answered then
std::optional<std::string> uriOf(const RequestPtr& request)
{
    const Json::Value& uri = request->message.params["uri"];
    if (uri.isString())
        return uri.asString();
    replyInvalidParams(*request, "The member \"uri\" must be the URI of a resource.");
    return std::nullopt;
}

Resource::Answer answerTo(const SharedPtr& shared, const RequestPtr& request, std::string uri, std::string mimeType)
{
    return [shared, request, uri = std::move(uri),
            mimeType = std::move(mimeType)](tl::expected<std::string, std::string> content)
    {
        if (!content)
            return replyError(*request, {.code = RpcCode::InternalError, .message = std::move(content).error()});
        Json::Value result(Json::objectValue);
        result["contents"].append(resourceContents(uri, mimeType, *content));
        replyCacheable(*request, shared->registry.info(), std::move(result), notKept);
    };
}

void replyNotFound(const ClientRequest& request, const std::string& uri)
{
    RpcError error{.code = request.isModern ? RpcCode::InvalidParams : RpcCode::ResourceNotFound,
                   .message = "There is no such resource; \"resources/list\" names those that there are."};
    error.data["uri"] = uri;
    replyError(request, error);
}

/// Reads the resource, or that of a template.
/// @return false where there is none
bool read(const SharedPtr& shared, const RequestPtr& request, const std::string& uri)
{
    if (const auto resource = shared->registry.findResource(uri))
    {
        const auto answer = answerTo(shared, request, uri, resource->mimeType);
        auto allowed =
            resource->tool.empty() ? tl::expected<void, std::string>() : shared->registry.validate(resource->tool);
        if (allowed)
            resource->read(answer);
        else
            answer(tl::unexpected(std::move(allowed).error()));
        return true;
    }
    for (const auto& [pattern, entry] : shared->registry.resourceTemplates())
        if (const auto variables = matchUriTemplate(pattern, uri))
        {
            entry->read(uri, *variables, answerTo(shared, request, uri, entry->mimeType));
            return true;
        }
    return false;
}

bool exists(const Registry& registry, const std::string& uri)
{
    if (registry.findResource(uri))
        return true;
    for (const auto& [pattern, entry] : registry.resourceTemplates())
        if (matchUriTemplate(pattern, uri))
            return true;
    return false;
}

} // namespace

void listResources(const SharedPtr& shared, const RequestPtr& request)
{
    list(shared, request, shared->registry.resources(), "resources");
}

void listResourceTemplates(const SharedPtr& shared, const RequestPtr& request)
{
    list(shared, request, shared->registry.resourceTemplates(), "resourceTemplates");
}

void readResource(const SharedPtr& shared, const RequestPtr& request)
{
    const auto uri = uriOf(request);
    if (uri && !read(shared, request, *uri))
        replyNotFound(*request, *uri);
}

void subscribeResource(const SharedPtr& shared, const RequestPtr& request)
{
    const auto uri = uriOf(request);
    if (!uri)
        return;
    if (!exists(shared->registry, *uri))
        return replyNotFound(*request, *uri);
    if (request->session && !request->session->subscribe(*uri))
        return replyInvalidParams(*request, "This session has too many subscriptions.");
    reply(*request, shared->registry.info(), Json::Value(Json::objectValue));
}

void unsubscribeResource(const SharedPtr& shared, const RequestPtr& request)
{
    const auto uri = uriOf(request);
    if (!uri)
        return;
    if (request->session)
        request->session->unsubscribe(*uri);
    reply(*request, shared->registry.info(), Json::Value(Json::objectValue));
}

} // namespace VX::Mcp
