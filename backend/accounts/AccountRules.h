#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// What an account's password must be: 8 to 99 bytes on one line, with a lower-case letter, a digit and one of
/// ^$*.[]{}()?-"!@#%&/,><':;|_~` (ASCII each).
/// @return the first rule that `password` breaks: `Password not long enough`, `Password too long`,
///         `Password must not have line breaks`, `Password must have lowercase characters`,
///         `Password must have numeric characters` or `Password must have symbol characters`
/// @threads any
[[nodiscard]] std::optional<std::string> brokenPasswordRule(std::string_view password);

/// Whether accounts may have this address: at most 254 bytes without blanks, control characters, "\" and "/", one "@"
/// with something before it, and behind it a dot that only letters, digits and "_" of ASCII follow, one at least.
/// @threads any
[[nodiscard]] bool isAccountAddress(std::string_view address);

/// `address` as it is shown to somebody who may not know it: "a***@e***".
/// @threads any
[[nodiscard]] std::string maskedAddress(std::string_view address);

} // namespace VX
