#pragma once

#include <string>

namespace VX
{

/// The name that the user's folders carry; "Quorvix" until set. `Config::reset` sets it.
/// @threads any
[[nodiscard]] std::string applicationName();
void setApplicationName(std::string name);

} // namespace VX
