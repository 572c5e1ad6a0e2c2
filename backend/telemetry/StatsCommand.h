#pragma once

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// What "stats" prints: how often each action was done, by day and version.
/// @return the table; or one sentence that says what is wrong
[[nodiscard]] tl::expected<std::string, std::string> runStatsCommand(const std::filesystem::path& dataFolder);

} // namespace VX
