#pragma once

#include "LogStore.h"

#include <string>
#include <vector>

namespace VX
{

/// One line of text for each: time, level, user, service, version, platform and message, with a blank between them.
[[nodiscard]] std::string linesText(const std::vector<LoggedLine>& lines);

/// One JSON object on a line for each, with the members of POST /v1/logs and the address of the user as "user".
[[nodiscard]] std::string linesJson(const std::vector<LoggedLine>& lines);

} // namespace VX
