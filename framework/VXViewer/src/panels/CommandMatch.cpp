#include "CommandMatch.h"

#include "FuzzyMatch.h"

#include <utility>

namespace VX
{

namespace
{

constexpr int keywordPenalty = 12;
constexpr int pathPenalty = 24;
constexpr int tooltipScore = 1;

void keepBetter(std::optional<int>& best, std::optional<int> score, int penalty)
{
    if (score && (!best || *best < *score - penalty))
        best = *score - penalty;
}

std::optional<int> wordScore(const std::u32string& word, const RibbonSearchCommand& command)
{
    std::optional<int> best = fuzzyScore(word, foldedText(command.caption));
    for (const std::string& keyword : command.keywords)
        keepBetter(best, fuzzyScore(word, foldedText(keyword)), keywordPenalty);
    // Scattered letters are found in any long text.
    const std::u32string path = foldedText(command.path);
    if (hasWordPrefix(word, path))
        keepBetter(best, fuzzyScore(word, path), pathPenalty);
    if (!best && hasWordPrefix(word, foldedText(command.tooltip)))
        best = tooltipScore;
    return best;
}

} // namespace

std::vector<std::u32string> searchWords(std::string_view text)
{
    std::vector<std::u32string> words;
    std::u32string word;
    for (const char32_t c : foldedText(text))
    {
        if (c != U' ')
            word.push_back(c);
        else if (!word.empty())
            words.push_back(std::exchange(word, {}));
    }
    if (!word.empty())
        words.push_back(std::move(word));
    return words;
}

std::optional<int> commandScore(const std::vector<std::u32string>& words, const RibbonSearchCommand& command)
{
    int total = 0;
    for (const std::u32string& word : words)
    {
        const std::optional<int> score = wordScore(word, command);
        if (!score)
            return std::nullopt;
        total += *score;
    }
    return total;
}

} // namespace VX
