#pragma once

#include <string>
#include <system_error>

namespace VX
{

/// The error of every operation that found no room on the disk; the service answers it with status 507.
const std::string& diskFullText();

/// Whether `error` says that the disk or the user's share of it is full.
bool isDiskFull(const std::error_code& error);

} // namespace VX
