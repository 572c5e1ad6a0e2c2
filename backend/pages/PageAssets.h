#pragma once

#include <string_view>

namespace VX
{

/// The style sheet of the account pages.
/// @threads any
[[nodiscard]] std::string_view pageStyle();

/// The script of the account pages, without which they work too.
/// @threads any
[[nodiscard]] std::string_view pageScript();

} // namespace VX
