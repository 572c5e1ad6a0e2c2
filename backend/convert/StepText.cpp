#include "StepText.h"

#include <charconv>
#include <cstdint>
#include <optional>

namespace VX
{

namespace
{

constexpr char32_t replacementCharacter = 0xFFFD;

void appendUtf8(std::string& out, char32_t c)
{
    if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000))
        c = replacementCharacter;
    const auto byte = [&out](char32_t value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (c < 0x20 || c == 0x7F)
        return;
    if (c < 0x80)
        return byte(c);
    if (c < 0x800)
        byte(0xC0 | (c >> 6));
    else if (c < 0x10000)
    {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
    }
    else
    {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
    }
    byte(0x80 | (c & 0x3F));
}

std::optional<char32_t> hexadecimal(std::string_view digits)
{
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

/// Decodes groups of `width` hexadecimal digits.
std::optional<std::string> decodeGroups(std::string_view digits, std::size_t width)
{
    if (digits.size() % width != 0)
        return std::nullopt;
    std::string out;
    char32_t high = 0;
    for (std::size_t at = 0; at < digits.size(); at += width)
    {
        const std::optional<char32_t> c = hexadecimal(digits.substr(at, width));
        if (!c)
            return std::nullopt;
        const bool isLow = *c >= 0xDC00 && *c < 0xE000;
        if (high != 0)
            appendUtf8(out, isLow ? 0x10000 + ((high - 0xD800) << 10) + (*c - 0xDC00) : replacementCharacter);
        const bool usedUp = high != 0 && isLow;
        high = *c >= 0xD800 && *c < 0xDC00 ? *c : 0;
        if (high == 0 && !usedUp)
            appendUtf8(out, *c);
    }
    if (high != 0)
        appendUtf8(out, replacementCharacter);
    return out;
}

/// Decodes the escape that `text` begins with and appends it.
/// @return the length of the escape, 0 where it is none
std::size_t appendEscape(std::string& out, std::string_view text)
{
    constexpr std::string_view end = "\\X0\\";
    if (text.starts_with("\\\\"))
    {
        out += '\\';
        return 2;
    }
    if (text.starts_with("\\S\\") && text.size() > 3)
    {
        appendUtf8(out, static_cast<unsigned char>(text[3]) + char32_t{0x80});
        return 4;
    }
    if (text.starts_with("\\P") && text.size() > 3 && text[3] == '\\')
        return 4;
    if (text.starts_with("\\X\\") && text.size() >= 5)
        if (const std::optional<char32_t> c = hexadecimal(text.substr(3, 2)))
        {
            appendUtf8(out, *c);
            return 5;
        }
    for (const auto& [begin, width] : {std::pair<std::string_view, std::size_t>{"\\X2\\", 4}, {"\\X4\\", 8}})
        if (text.starts_with(begin))
            if (const std::size_t close = text.find(end, begin.size()); close != std::string_view::npos)
                if (const auto decoded = decodeGroups(text.substr(begin.size(), close - begin.size()), width))
                {
                    out += *decoded;
                    return close + end.size();
                }
    return 0;
}

} // namespace

bool isUtf8(std::string_view text)
{
    std::size_t at = 0;
    while (at < text.size())
    {
        const auto first = static_cast<unsigned char>(text[at]);
        const std::size_t length = first < 0x80   ? 1
                                   : first < 0xC2 ? 0
                                   : first < 0xE0 ? 2
                                   : first < 0xF0 ? 3
                                   : first < 0xF5 ? 4
                                                  : 0;
        if (length == 0 || at + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[at + k]) & 0xC0) != 0x80)
                return false;
        const auto second = static_cast<unsigned char>(length > 1 ? text[at + 1] : 0);
        const bool overlongOrSurrogate = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                                         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
        if (overlongOrSurrogate)
            return false;
        at += length;
    }
    return true;
}

std::string decodeStepString(std::string_view literal)
{
    const bool utf8 = isUtf8(literal);
    std::string out;
    out.reserve(literal.size());
    std::size_t at = 0;
    while (at < literal.size())
    {
        const char c = literal[at];
        if (c == '\\')
            if (const std::size_t length = appendEscape(out, literal.substr(at)))
            {
                at += length;
                continue;
            }
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 && utf8)
            out += c;
        else
            appendUtf8(out, byte);
        at += literal.substr(at, 2) == "''" ? 2 : 1;
    }
    return out;
}

} // namespace VX
