#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// What a request line asks for.
struct HttpTarget
{
    std::string path;                         ///< percent-decoded, begins with "/", or is "*"
    std::string rawQuery;                     ///< as sent, without the "?"
    std::map<std::string, std::string> query; ///< percent-decoded; of equal keys the last
};

/// Replaces each %XX by its byte; "+" stays a plus.
/// @return empty where a "%" is not followed by two hexadecimal digits, and for a zero byte, %00 or plain
/// @threads any
std::optional<std::string> percentDecode(std::string_view text);

/// Splits a request target: the origin form ("/path?query"), the absolute form ("http://host/path") or "*".
/// Dots and doubled slashes of the path stay as they were sent.
/// @return empty for any other form, for a fragment, and where the percent-encoding is broken
/// @threads any
std::optional<HttpTarget> parseHttpTarget(std::string_view target);

} // namespace VX
