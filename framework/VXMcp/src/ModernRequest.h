#pragma once

#include "ClientRequest.h"

#include <VXMcp/Export.h>

#include <net/HttpServer.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX::Mcp
{

/// Why a request cannot be served.
struct Refusal
{
    int status = 400;
    RpcError error;
};

/// The versions that the server speaks, an array of strings.
[[nodiscard]] Json::Value supportedVersions();

/// Whether a message is meant in the terms of the newest revision: it says so in its `_meta`, or else in its header,
/// and does not begin a session.
[[nodiscard]] bool isModernMessage(const HttpRequest& request, const RpcMessage& message);

/// The text of a header that clients may send in base64: "=?base64?…?=".
/// @return empty where that is no base64
[[nodiscard]] VXMCP_API std::optional<std::string> decodeHeader(std::string_view value);

/// Checks what each request of the newest revision must carry, in its `_meta` and, the same again, in its headers, and
/// puts what it says about the client into `out`.
[[nodiscard]] std::optional<Refusal> readModernRequest(const HttpRequest& http, ClientRequest& out);

} // namespace VX::Mcp
