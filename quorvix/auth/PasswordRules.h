#pragma once

#include <quorvix/Export.h>

#include <array>
#include <string_view>

namespace VX
{

/// What a new password has to have.
struct PasswordRule
{
    const char* label; ///< "Number", to be translated
    bool (*isMet)(std::string_view password);
};

/// At least 8 characters (and at most 99, in bytes), a lower case letter, a digit and a special character.
[[nodiscard]] QUORVIX_API const std::array<PasswordRule, 4>& passwordRules();

/// Whether `password` meets them all.
/// @threads any
[[nodiscard]] QUORVIX_API bool isGoodPassword(std::string_view password);

} // namespace VX
