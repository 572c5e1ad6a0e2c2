#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// A time in UTC as the log lines have it, so that they compare as texts: "2025-01-31T09:15:02.1234567Z".
/// @param text  ISO 8601 without an offset: "2025-01-31", "2025-01-31T09:15", "2025-01-31T09:15:02" or
///              "2025-01-31T09:15:02.1" with up to nine decimals; behind a time there may be a "Z"
/// @return nothing where the text is none of these, or no such time exists
[[nodiscard]] std::optional<std::string> fullLogTime(std::string_view text);

} // namespace VX
