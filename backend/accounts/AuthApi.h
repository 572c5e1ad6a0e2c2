#pragma once

#include "IdentityProvider.h"

#include <net/HttpServer.h>

#include <string>

namespace VX
{

/// The network address of who asks.
/// @param trustForwardedFor  whether a proxy in front of the service tells it, as the last entry of X-Forwarded-For
/// @threads any
[[nodiscard]] std::string peerOf(const HttpRequest& request, bool trustForwardedFor);

/// POST /auth: an identity operation, named by the header "x-amz-target". The body is JSON, whatever its Content-Type.
/// @threads any
class AuthApi
{
public:
    /// `provider` must outlive it.
    AuthApi(IdentityProvider& provider, bool trustForwardedFor);

    void handle(const HttpRequest& request, const HttpHandler::Respond& respond) const;

private:
    IdentityProvider& provider_;
    const bool trustForwardedFor_;
};

} // namespace VX
