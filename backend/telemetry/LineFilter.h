#pragma once

#include <array>
#include <string>
#include <string_view>

namespace VX
{

/// What log lines call their levels, from the least on.
constexpr std::array<std::string_view, 6> logLevels{"trace", "debug", "info", "warning", "error", "critical"};

/// Which of the stored log lines are wanted; what is empty leaves nothing out.
struct LineFilter
{
    std::string account{}; ///< the address of the user who sent them, in any letter case
    std::string level{};   ///< the least one, of `logLevels`
    std::string since{};   ///< `fullLogTime` of the earliest
    std::string until{};   ///< `fullLogTime` of what none is at or behind
    std::string text{};    ///< part of the message, in any letter case (ASCII)
    int limit = 1000;      ///< of those that are left, so many of the newest
};

} // namespace VX
