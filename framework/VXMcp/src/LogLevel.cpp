#include "LogLevel.h"

#include <algorithm>
#include <array>

namespace VX::Mcp
{

std::optional<LogLevel> logLevelOf(std::string_view name)
{
    constexpr std::array<std::string_view, 8> names{"debug", "info",     "notice", "warning",
                                                    "error", "critical", "alert",  "emergency"};
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<LogLevel>(found - names.begin()));
}

} // namespace VX::Mcp
