#pragma once

#include <net/HttpServer.h>

#include <string>
#include <string_view>

namespace VX
{

/// The words that go with a status: "Not Found"; "Unknown" for one without any.
/// @threads any
std::string_view httpReasonPhrase(int status);

/// False for the statuses whose answers end with their head (RFC 9110: 204 and 304).
/// @threads any
bool httpStatusHasBody(int status);

/// The status line and the header fields of an answer, up to and with the empty line. Line ends and zero bytes in names
/// and values become blanks, so that no value can start a field of its own.
/// @param framing  the field that tells where the body ends: "Content-Length: 4", "Transfer-Encoding: chunked"; empty
/// for a body that ends with the connection. It is left out for statuses without a body
/// @threads any
std::string httpResponseHead(const HttpResponse& response, std::string_view framing, bool keepAlive);

} // namespace VX
