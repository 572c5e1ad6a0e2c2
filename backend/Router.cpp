#include "Router.h"

#include "JsonAnswer.h"

#include <spdlog/spdlog.h>

#include <exception>
#include <utility>

namespace VX
{

namespace
{

/// Of the requests that are answered from memory; the longest holds an access token.
constexpr std::uint64_t smallBodyLimit = 64U << 10U;

} // namespace

void Router::add(std::string method, std::string path, Handle handle, Accept accept)
{
    routes_.push_back({std::move(method), std::move(path), std::move(handle), std::move(accept)});
}

tl::expected<const Router::Route*, HttpResponse> Router::find_(const HttpRequest& request) const
{
    std::string allowed;
    for (const Route& route : routes_)
    {
        const bool fits = route.path.ends_with('/') ? request.path.starts_with(route.path) : request.path == route.path;
        if (fits && request.method == route.method)
            return &route;
        if (fits)
            allowed += (allowed.empty() ? "" : ", ") + route.method;
    }
    if (allowed.empty())
        return tl::unexpected(errorAnswer(404, "There is nothing under this address."));
    HttpResponse response = errorAnswer(405, "This address does not know the method " + request.method + ".");
    response.headers["Allow"] = allowed;
    return tl::unexpected(std::move(response));
}

tl::expected<HttpBodySink, HttpResponse> Router::acceptBody(const HttpRequest& head)
{
    const auto route = find_(head);
    if (!route)
        return tl::unexpected(route.error());
    if ((*route)->accept)
        return (*route)->accept(head);
    return HttpBodySink{.limit = smallBodyLimit};
}

void Router::handle(HttpRequest request, Respond respond)
{
    spdlog::debug("{} {}", request.method, request.path);
    const auto route = find_(request);
    if (!route)
        return respond(route.error());
    try
    {
        (*route)->handle(request, respond);
    }
    catch (const std::exception& error)
    {
        // Memory may be short for one request and not for the next.
        spdlog::error("A request failed: {}", error.what());
        respond(errorAnswer(500, "The service failed: try again."));
    }
}

} // namespace VX
