#include "LineBreaks.h"

#include <imgui_internal.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace VX
{

namespace
{

// The classes CL, NS, EX and OP of Unicode's line breaking algorithm (UAX #14), as far as translations have them.
constexpr std::u32string_view neverFirst = U"、。，．・：；？！）］｝〕〉》」』】”’…‥ーゝゞ々〻％"
                                           U"ぁぃぅぇぉっゃゅょゎゕゖァィゥェォッャュョヮヵヶ"
                                           U",.:;?!)]}%";
constexpr std::u32string_view neverLast = U"（［｛〔〈《「『【“‘([{";

struct Sign
{
    char32_t code;
    std::size_t offset; ///< in the text, in bytes
};

std::vector<Sign> signsOf(const std::string& text)
{
    std::vector<Sign> signs;
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    for (const char* at = begin; at < end;)
    {
        unsigned code = 0;
        const int length = std::max(1, ImTextCharFromUtf8(&code, at, end));
        signs.push_back({code, static_cast<std::size_t>(at - begin)});
        at += length;
    }
    return signs;
}

bool isWide(char32_t sign)
{
    return sign >= 0x2E80;
}

bool mayEndBetween(char32_t last, char32_t first)
{
    if (last == U' ' || first == U' ')
        return first != U' ';
    return (isWide(last) || isWide(first)) && neverFirst.find(first) == std::u32string_view::npos &&
           neverLast.find(last) == std::u32string_view::npos;
}

} // namespace

bool hasWideSigns(const std::string& text)
{
    const std::vector<Sign> signs = signsOf(text);
    return std::ranges::any_of(signs, [](const Sign& sign) { return isWide(sign.code); });
}

std::string withLineEnds(const std::string& text, float width, const std::function<float(char32_t)>& advance)
{
    const std::vector<Sign> signs = signsOf(text);
    std::string result;
    std::size_t lineStart = 0; ///< number of the line's first sign
    std::size_t chance = 0;    ///< number of the sign that a new line may begin with; the line's first: none
    float used = 0;            ///< of the line
    float usedToChance = 0;
    std::size_t copied = 0; ///< bytes of the text
    for (std::size_t i = 0; i < signs.size(); ++i)
    {
        if (signs[i].code == U'\n')
        {
            lineStart = chance = i + 1;
            used = usedToChance = 0;
            continue;
        }
        if (i > lineStart && mayEndBetween(signs[i - 1].code, signs[i].code))
        {
            chance = i;
            usedToChance = used;
        }
        used += advance(signs[i].code);
        if (used <= width || i == lineStart || signs[i].code == U' ')
            continue;
        if (chance == lineStart)
        {
            chance = i;
            usedToChance = used - advance(signs[i].code);
        }
        const std::size_t lineEnd = signs[chance].offset;
        result.append(text, copied, lineEnd - copied);
        result.erase(result.find_last_not_of(' ') + 1);
        result.push_back('\n');
        copied = lineEnd;
        lineStart = chance;
        used -= usedToChance;
        usedToChance = 0;
    }
    return result.append(text, copied);
}

} // namespace VX
