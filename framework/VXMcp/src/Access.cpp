#include "Access.h"

#include "Secrets.h"

#include <algorithm>
#include <array>

namespace VX::Mcp
{

namespace
{

bool isSameWord(std::string_view a, std::string_view b)
{
    const HeaderNameLess less;
    return !less(a, b) && !less(b, a);
}

bool isNumber(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view headerOf(const HttpRequest& request, std::string_view name)
{
    const auto found = request.headers.find(name);
    return found == request.headers.end() ? std::string_view{} : found->second;
}

HttpResponse refusal(int status, std::string text)
{
    return {.status = status, .headers = {{"Content-Type", "text/plain"}}, .body = std::move(text)};
}

bool hasToken(std::string_view authorization, std::string_view token)
{
    constexpr std::string_view scheme = "Bearer ";
    return authorization.size() > scheme.size() && isSameWord(authorization.substr(0, scheme.size()), scheme) &&
           isSameSecret(authorization.substr(scheme.size()), token);
}

} // namespace

bool isLoopbackHost(std::string_view host)
{
    constexpr std::array<std::string_view, 3> names{"localhost", "127.0.0.1", "[::1]"};
    return std::ranges::any_of(names,
                               [&](std::string_view name)
                               {
                                   if (!isSameWord(host.substr(0, name.size()), name))
                                       return false;
                                   const auto rest = host.substr(name.size());
                                   return rest.empty() || (rest.front() == ':' && isNumber(rest.substr(1)));
                               });
}

bool isLoopbackOrigin(std::string_view origin)
{
    for (std::string_view scheme : {"http://", "https://"})
        if (isSameWord(origin.substr(0, scheme.size()), scheme))
            return isLoopbackHost(origin.substr(scheme.size()));
    return false;
}

std::optional<HttpResponse> refuseAccess(const HttpRequest& head, const std::string& bearerToken)
{
    if (!isLoopbackHost(headerOf(head, "Host")))
        return refusal(403, "This server is for programs of this machine: address it as 127.0.0.1 or localhost.");
    if (head.headers.contains("Origin") && !isLoopbackOrigin(headerOf(head, "Origin")))
        return refusal(403, "This server is not for web pages of other machines.");
    if (bearerToken.empty() || hasToken(headerOf(head, "Authorization"), bearerToken))
        return std::nullopt;
    auto out = refusal(401, "This server wants its token: send the header \"Authorization: Bearer TOKEN\".");
    out.headers["WWW-Authenticate"] = "Bearer";
    return out;
}

} // namespace VX::Mcp
