#pragma once

#include <string>
#include <string_view>

namespace VX
{

/// What a string literal of an ISO 10303-21 file says, in UTF-8.
/// Understands '', \\, \S\, \P?\ (taken for ISO 8859-1), \X\hh, \X2\…\X0\ (with surrogate pairs) and \X4\…\X0\.
/// Bytes beyond ASCII are taken for UTF-8 where all of them are, else for ISO 8859-1. Line ends and other control
/// characters say nothing in such a literal and are left out. An escape that is none stays as it is written.
/// @param literal  what is between the quotes
[[nodiscard]] std::string decodeStepString(std::string_view literal);

/// The bytes of `text` that are not valid UTF-8 make this false.
[[nodiscard]] bool isUtf8(std::string_view text);

} // namespace VX
