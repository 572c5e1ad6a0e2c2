#include "AccountRules.h"

#include <algorithm>

namespace VX
{

namespace
{

constexpr std::size_t shortestPassword = 8;
constexpr std::size_t longestPassword = 99;
constexpr std::size_t longestAddress = 254; // RFC 5321 with its brackets taken off
constexpr std::string_view symbols = "^$*.[]{}()?-\"!@#%&/,><':;|_~`";

bool isLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isWordCharacter(char c)
{
    return isLower(c) || isDigit(c) || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isForbiddenInAddress(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte <= ' ' || byte == 0x7F || c == '\\' || c == '/';
}

/// The first character of a text in UTF-8.
std::string_view firstCharacter(std::string_view text)
{
    std::size_t size = text.empty() ? 0 : 1;
    while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80)
        ++size;
    return text.substr(0, size);
}

} // namespace

std::optional<std::string> brokenPasswordRule(std::string_view password)
{
    if (password.size() < shortestPassword)
        return "Password not long enough";
    if (password.size() > longestPassword)
        return "Password too long";
    if (password.find_first_of("\r\n") != std::string_view::npos)
        return "Password must not have line breaks";
    if (std::ranges::none_of(password, isLower))
        return "Password must have lowercase characters";
    if (std::ranges::none_of(password, isDigit))
        return "Password must have numeric characters";
    if (password.find_first_of(symbols) == std::string_view::npos)
        return "Password must have symbol characters";
    return std::nullopt;
}

bool isAccountAddress(std::string_view address)
{
    const auto at = address.find('@');
    const auto dot = address.rfind('.');
    if (at == std::string_view::npos || at == 0 || address.find('@', at + 1) != std::string_view::npos)
        return false;
    if (dot == std::string_view::npos || dot < at + 2 || dot + 1 == address.size())
        return false;
    return address.size() <= longestAddress && std::ranges::none_of(address, isForbiddenInAddress) &&
           std::ranges::all_of(address.substr(dot + 1), isWordCharacter);
}

std::string maskedAddress(std::string_view address)
{
    const auto at = address.find('@');
    const std::string_view host = at == std::string_view::npos ? std::string_view() : address.substr(at + 1);
    std::string masked(firstCharacter(address.substr(0, at)));
    masked += "***@";
    masked += firstCharacter(host);
    return masked + "***";
}

} // namespace VX
