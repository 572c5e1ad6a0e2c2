#include <quorvix/auth/PasswordRules.h>

#include <VXViewer/Locale.h>

#include <algorithm>

namespace VX
{

namespace
{

constexpr std::size_t shortest = 8;
constexpr std::size_t longest = 99;

/// A field of one line types none, but a file of credentials may hold some.
bool isOneLine(std::string_view password)
{
    return password.find_first_of("\r\n") == std::string_view::npos;
}

bool hasLength(std::string_view password)
{
    return password.size() >= shortest && password.size() <= longest;
}

bool hasLowercase(std::string_view password)
{
    return std::ranges::any_of(password, [](char c) { return c >= 'a' && c <= 'z'; });
}

bool hasNumber(std::string_view password)
{
    return std::ranges::any_of(password, [](char c) { return c >= '0' && c <= '9'; });
}

bool hasSpecial(std::string_view password)
{
    return password.find_first_of(R"(^$*.[]{}()?-"!@#%&/,><':;|_~`)") != std::string_view::npos;
}

} // namespace

const std::array<PasswordRule, 4>& passwordRules()
{
    static constexpr std::array<PasswordRule, 4> rules{{{translatable("At least 8 chars"), hasLength},
                                                        {translatable("Lowercase letter"), hasLowercase},
                                                        {translatable("Number"), hasNumber},
                                                        {translatable("Special character"), hasSpecial}}};
    return rules;
}

bool isGoodPassword(std::string_view password)
{
    return isOneLine(password) &&
           std::ranges::all_of(passwordRules(), [&](const PasswordRule& rule) { return rule.isMet(password); });
}

} // namespace VX
