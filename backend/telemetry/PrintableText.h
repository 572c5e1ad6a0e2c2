#pragma once

#include <string>

namespace VX
{

/// UTF-8 text from outside, for a terminal: control characters, which could move the cursor and more, are shown as "?".
[[nodiscard]] std::string printableText(std::string text);

} // namespace VX
