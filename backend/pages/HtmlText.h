#pragma once

#include <map>
#include <string>
#include <string_view>

namespace VX
{

/// `text` for use between tags and in quoted attributes.
/// @threads any
[[nodiscard]] std::string htmlEscaped(std::string_view text);

/// `text` for use as a value in the query of a URL: all but letters, digits and -._~ as %XX.
/// @threads any
[[nodiscard]] std::string urlEscaped(std::string_view text);

/// The fields of a form that was sent as application/x-www-form-urlencoded; of equal names the last. What is not
/// properly encoded is left out.
/// @threads any
[[nodiscard]] std::map<std::string, std::string> parseForm(std::string_view body);

} // namespace VX
