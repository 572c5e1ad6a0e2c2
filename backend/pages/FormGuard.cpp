#include "FormGuard.h"

#include <fmt/format.h>

#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr std::string_view cookieName = "quorvix-form";

std::string headerOf(const HttpRequest& request, std::string_view name)
{
    const auto header = request.headers.find(name);
    return header == request.headers.end() ? std::string() : header->second;
}

/// The value of our cookie; empty where the browser sent none.
std::string sentCookie(const HttpRequest& request)
{
    std::string_view rest;
    const std::string header = headerOf(request, "Cookie");
    for (rest = header; !rest.empty();)
    {
        std::string_view pair = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(rest.size(), pair.size() + 1));
        pair.remove_prefix(std::min(pair.size(), pair.find_first_not_of(' ')));
        const auto equals = pair.find('=');
        if (equals != std::string_view::npos && pair.substr(0, equals) == cookieName)
            return std::string(pair.substr(equals + 1));
    }
    return {};
}

/// Whether what the browser itself says of the request's origin, if anything, speaks for us.
bool isFromHere(const HttpRequest& request)
{
    const std::string site = headerOf(request, "Sec-Fetch-Site");
    if (!site.empty() && site != "same-origin")
        return false;
    const std::string origin = headerOf(request, "Origin");
    const auto host = origin.find("://");
    return origin.empty() || (host != std::string::npos && origin.substr(host + 3) == headerOf(request, "Host"));
}

} // namespace

FormGuard::FormGuard(AccountSecrets secrets, bool isSecure)
    : secrets_(secrets)
    , isSecure_(isSecure)
{
}

std::string FormGuard::cookieOf(const HttpRequest& request) const
{
    const std::string sent = sentCookie(request);
    // Only what we could have made is sent back.
    const std::string fresh = AccountSecrets::randomToken();
    const bool isOne =
        sent.size() == fresh.size() &&
        sent.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_") == std::string::npos;
    return isOne ? sent : fresh;
}

std::string FormGuard::tokenFor(const std::string& cookie) const
{
    return secrets_.hash("form", cookie);
}

std::string FormGuard::cookieHeader(const std::string& cookie) const
{
    return fmt::format("{}={}; Path=/; HttpOnly; SameSite=Strict{}", cookieName, cookie, isSecure_ ? "; Secure" : "");
}

bool FormGuard::isOurs(const HttpRequest& request, const std::string& token) const
{
    const std::string cookie = sentCookie(request);
    return !cookie.empty() && isFromHere(request) && AccountSecrets::equal(token, tokenFor(cookie));
}

} // namespace VX
