#include "ObjectName.h"

#include <algorithm>
#include <cstddef>

namespace VX
{

namespace
{

constexpr std::size_t mostCharacters = 255;
constexpr std::string_view blanks = " \t\r\n";

bool beginsCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::size_t charactersOf(std::string_view text)
{
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

/// U+0000 to U+001F, U+007F to U+009F, as UTF-8.
bool hasControlCharacter(std::string_view text)
{
    unsigned char before = 0;
    for (const char each : text)
    {
        const auto byte = static_cast<unsigned char>(each);
        if (byte < 0x20 || byte == 0x7F || (before == 0xC2 && byte < 0xA0))
            return true;
        before = byte;
    }
    return false;
}

/// The first `count` characters.
std::string_view firstCharacters(std::string_view text, std::size_t count)
{
    std::size_t end = 0;
    while (end < text.size() && (count > 0 || !beginsCharacter(text[end])))
        count -= beginsCharacter(text[end++]) ? 1U : 0U;
    return text.substr(0, end);
}

} // namespace

tl::expected<std::string, std::string> objectNameOf(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return tl::unexpected(std::string("A name needs a letter or another sign. Call again with one."));
    const std::string_view name = text.substr(first, text.find_last_not_of(blanks) - first + 1);
    if (charactersOf(name) > mostCharacters)
        return tl::unexpected(std::string("A name has at most 255 characters. Call again with a shorter one."));
    if (hasControlCharacter(name))
        return tl::unexpected(
            std::string("A name must not have line ends or other control characters in it. Call again without them."));
    return std::string(name);
}

std::string shortenedName(const std::string& name)
{
    if (charactersOf(name) <= mostCharacters)
        return name;
    const std::string_view number = std::string_view(name).substr(name.find_last_not_of("0123456789") + 1);
    const std::size_t kept = mostCharacters - std::min(number.size() + 1, mostCharacters);
    return std::string(firstCharacters(name, kept)) + ' ' + std::string(number);
}

} // namespace VX
