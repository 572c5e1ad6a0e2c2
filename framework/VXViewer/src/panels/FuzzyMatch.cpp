#include "FuzzyMatch.h"

#include <imgui_internal.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace VX
{

namespace
{

constexpr int matchScore = 10;
constexpr int wordStartBonus = 8;
constexpr int textStartBonus = 4;
constexpr int neighbourBonus = 6;
constexpr int gapPenalty = 3;
constexpr int maxLengthPenalty = 20;
constexpr int noMatch = std::numeric_limits<int>::min() / 2;

/// Nobody types more; the time to match grows with it.
constexpr std::size_t maxPattern = 64;

/// The plain small letters for U+00C0 to U+017F; a blank where the character stays as it is.
constexpr std::string_view plainLatin = "aaaaaaaceeeeiiiidnooooo ouuuuyts"
                                        "aaaaaaaceeeeiiiidnooooo ouuuuyty"
                                        "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkkllllllllll"
                                        "nnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(plainLatin.size() == 0x180 - 0xC0);

char32_t folded(char32_t c)
{
    if (c >= U'A' && c <= U'Z')
        return c + 0x20;
    if (c >= 0xC0 && c < 0x180)
    {
        const char plain = plainLatin[c - 0xC0];
        return plain == ' ' ? c : static_cast<char32_t>(plain);
    }
    // Greek and Cyrillic.
    if ((c >= 0x391 && c <= 0x3A9) || (c >= 0x410 && c <= 0x42F))
        return c + 0x20;
    return c >= 0x400 && c <= 0x40F ? c + 0x50 : c;
}

bool isSeparator(char32_t c)
{
    return c == U' ' || c == U'-' || c == U'_' || c == U'/' || c == U'(' || c == U'.' || c == U'>';
}

bool beginsWord(std::u32string_view text, std::size_t i)
{
    return i == 0 || (isSeparator(text[i - 1]) && !isSeparator(text[i]));
}

} // namespace

std::u32string foldedText(std::string_view text)
{
    std::u32string result;
    result.reserve(text.size());
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at < end;)
    {
        unsigned codepoint = 0;
        at += std::max(1, ImTextCharFromUtf8(&codepoint, at, end));
        result.push_back(folded(codepoint));
    }
    return result;
}

std::optional<int> fuzzyScore(std::u32string_view pattern, std::u32string_view text)
{
    if (pattern.empty())
        return 0;
    if (pattern.size() > std::min(text.size(), maxPattern))
        return std::nullopt;
    // Of matches whose last character so far is the one at the index.
    std::vector<int> scores(text.size(), noMatch);
    for (std::size_t i = 0; i < pattern.size(); ++i)
    {
        std::vector<int> next(text.size(), noMatch);
        int bestBefore = noMatch; // with at least one character between
        for (std::size_t j = i; j < text.size(); ++j)
        {
            if (i > 0 && j >= 2)
                bestBefore = std::max(bestBefore, scores[j - 2] - gapPenalty);
            if (text[j] != pattern[i])
                continue;
            int before = 0;
            if (i > 0)
                before = std::max(bestBefore, scores[j - 1] + neighbourBonus);
            const int start = beginsWord(text, j) ? wordStartBonus : 0;
            next[j] = std::max(noMatch, before + matchScore + start + (j == 0 ? textStartBonus : 0));
        }
        scores.swap(next);
    }
    const int best = *std::max_element(scores.begin(), scores.end());
    if (best < 0)
        return std::nullopt;
    return best - std::min(maxLengthPenalty, static_cast<int>(text.size() - pattern.size()));
}

bool hasWordPrefix(std::u32string_view pattern, std::u32string_view text)
{
    for (std::size_t at = text.find(pattern); at != std::u32string_view::npos; at = text.find(pattern, at + 1))
    {
        if (beginsWord(text, at))
            return true;
    }
    return false;
}

} // namespace VX
