#include "AuthApi.h"

#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr std::string_view targetPrefix = "AWSCognitoIdentityProviderService.";

std::string headerOf(const HttpRequest& request, std::string_view name)
{
    const auto header = request.headers.find(name);
    return header == request.headers.end() ? std::string() : header->second;
}

/// Empty where the target names no operation.
std::string operationOf(const HttpRequest& request)
{
    std::string target = headerOf(request, "x-amz-target");
    if (!target.starts_with(targetPrefix))
        return {};
    return target.substr(targetPrefix.size());
}

HttpResponse httpAnswer(IdentityAnswer answer)
{
    HttpResponse response;
    response.status = answer.status;
    response.headers["Content-Type"] = "application/x-amz-json-1.1";
    response.headers["Cache-Control"] = "no-store";
    response.body = std::move(answer.body);
    return response;
}

} // namespace

std::string peerOf(const HttpRequest& request, bool trustForwardedFor)
{
    // Only the last entry comes from the proxy; the others are whatever its client sent.
    const std::string entries = trustForwardedFor ? headerOf(request, "X-Forwarded-For") : std::string();
    const auto comma = entries.rfind(',');
    const auto last = entries.find_first_not_of(' ', comma == std::string::npos ? 0 : comma + 1);
    return last == std::string::npos ? request.peerAddress : entries.substr(last);
}

AuthApi::AuthApi(IdentityProvider& provider, bool trustForwardedFor)
    : provider_(provider)
    , trustForwardedFor_(trustForwardedFor)
{
}

void AuthApi::handle(const HttpRequest& request, const HttpHandler::Respond& respond) const
{
    provider_.call(
        {.operation = operationOf(request), .body = request.body, .peer = peerOf(request, trustForwardedFor_)},
        [respond](IdentityAnswer answer) { respond(httpAnswer(std::move(answer))); });
}

} // namespace VX
