#pragma once

#include <VXMcp/Export.h>

#include <net/HttpServer.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX::Mcp
{

/// Whether `host`, a Host header, names this machine by a loopback name: "localhost", "127.0.0.1" or "[::1]", with or
/// without a port.
[[nodiscard]] VXMCP_API bool isLoopbackHost(std::string_view host);

/// Whether a page of `origin`, an Origin header, is served by this machine itself. "null" is not.
[[nodiscard]] VXMCP_API bool isLoopbackOrigin(std::string_view origin);

/// Decides from the head of a request whether the client may speak at all: web pages of other machines, which a browser
/// on this machine would let in, and those without the token may not.
/// @param bearerToken  empty: none is needed
/// @return the refusal, or nothing
/// @threads any
[[nodiscard]] std::optional<HttpResponse> refuseAccess(const HttpRequest& head, const std::string& bearerToken);

} // namespace VX::Mcp
