#pragma once

#include <optional>
#include <string_view>

namespace VX::Mcp
{

/// The protocol's levels of log messages, the least first.
enum class LogLevel
{
    Debug,
    Info,
    Notice,
    Warning,
    Error,
    Critical,
    Alert,
    Emergency,
};

/// @param name  "info"
/// @return empty for a name that is none of the protocol's
[[nodiscard]] std::optional<LogLevel> logLevelOf(std::string_view name);

} // namespace VX::Mcp
