#include "panels/FuzzyMatch.h"

#include "panels/CommandMatch.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

std::optional<int> score(std::string_view pattern, std::string_view text)
{
    return fuzzyScore(foldedText(pattern), foldedText(text));
}

RibbonSearchCommand command(std::string caption, std::string tooltip = {}, std::vector<std::string> keywords = {})
{
    RibbonSearchCommand result;
    result.caption = std::move(caption);
    result.tooltip = std::move(tooltip);
    result.keywords = std::move(keywords);
    return result;
}

} // namespace

TEST(FuzzyMatch, FindsCharactersInTheirOrderOnly)
{
    EXPECT_TRUE(score("slpr", "Select Primitives"));
    EXPECT_FALSE(score("rpls", "Select Primitives"));
    EXPECT_FALSE(score("Select Primitives 2", "Select Primitives"));
}

TEST(FuzzyMatch, DoesNotMindCaseAndAccents)
{
    EXPECT_EQ(score("offnen", "\u00D6FFNEN"), score("\u00F6ffnen", "\u00F6ffnen"));
    EXPECT_TRUE(score("\u0441\u0446\u0435\u043D\u0430", "\u0421\u0426\u0415\u041D\u0410"));
}

TEST(FuzzyMatch, PrefersTheBeginningsOfWords)
{
    EXPECT_GT(score("sp", "Select Primitives"), score("sp", "Transparency"));
    EXPECT_GT(score("del", "Delete"), score("del", "Model"));
}

TEST(FuzzyMatch, PrefersCharactersThatFollowOneAnother)
{
    EXPECT_GT(score("und", "Undo"), score("und", "Unify Edges"));
}

TEST(FuzzyMatch, PrefersTheTextWithLittleElse)
{
    EXPECT_GT(score("undo", "Undo"), score("undo", "Undo Everything"));
}

TEST(FuzzyMatch, ScoresAnEmptyPatternZero)
{
    EXPECT_EQ(score("", "Anything"), 0);
}

TEST(FuzzyMatch, SurvivesDamagedUtf8)
{
    EXPECT_FALSE(foldedText("ab\xC3").empty());
    EXPECT_FALSE(score("x", "\xFF\xFE"));
}

TEST(CommandMatch, WantsEveryWord)
{
    EXPECT_TRUE(commandScore(searchWords("prim sel"), command("Select Primitives")));
    EXPECT_FALSE(commandScore(searchWords("prim undo"), command("Select Primitives")));
}

TEST(CommandMatch, RanksCaptionsBeforeKeywordsBeforeTooltips)
{
    const auto words = searchWords("flat");
    const auto caption = commandScore(words, command("Flat"));
    const auto keyword = commandScore(words, command("Facets", {}, {"flat"}));
    const auto tooltip = commandScore(words, command("Facets", "Shows flat faces"));
    ASSERT_TRUE(caption && keyword && tooltip);
    EXPECT_GT(*caption, *keyword);
    EXPECT_GT(*keyword, *tooltip);
}

TEST(CommandMatch, FindsNoScatteredLettersInTooltips)
{
    EXPECT_FALSE(commandScore(searchWords("swl"), command("Facets", "Shows what lies below")));
}

} // namespace VX
