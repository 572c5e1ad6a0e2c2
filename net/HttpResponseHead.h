#pragma once

#include <net/HttpServer.h>

#include <cstdint>
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
/// @param contentLength  bytes of the body that follows, or that a HEAD request leaves out
/// @threads any
std::string httpResponseHead(const HttpResponse& response, std::uint64_t contentLength, bool keepAlive);

} // namespace VX
