#pragma once

#include "LineFilter.h"

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// What "logs" prints: the stored log lines that `filter` leaves, in the order of their times.
/// @param asJson  one object on a line in place of text
/// @return the lines; or one sentence that says what is wrong
[[nodiscard]] tl::expected<std::string, std::string> runLogsCommand(const std::filesystem::path& dataFolder,
                                                                    const LineFilter& filter, bool asJson);

} // namespace VX
