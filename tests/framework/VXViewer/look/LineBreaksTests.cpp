#include "framework/VXViewer/src/ui/LineBreaks.h"

#include <gtest/gtest.h>

#include <string>

namespace VX
{

namespace
{

/// With signs of one unit, wide ones of two.
std::string broken(const std::string& text, float width)
{
    return withLineEnds(text, width, [](char32_t sign) { return sign >= 0x2E80 ? 2.0F : 1.0F; });
}

} // namespace

TEST(LineBreaksTests, KeepWordsWhole)
{
    EXPECT_EQ(broken("one two three", 8), "one two\nthree");
    EXPECT_EQ(broken("one two three", 7), "one two\nthree");
    EXPECT_EQ(broken("one two", 7), "one two");
}

TEST(LineBreaksTests, DivideAWordThatFitsIntoNoLine)
{
    EXPECT_EQ(broken("indivisible", 4), "indi\nvisi\nble");
    EXPECT_EQ(broken("a indivisible b", 4), "a\nindi\nvisi\nble\nb");
    EXPECT_EQ(broken("见面", 1), "见\n面");
}

TEST(LineBreaksTests, AreBetweenAnyChineseSigns)
{
    EXPECT_EQ(broken("选择矩形内的可见面", 8), "选择矩形\n内的可见\n面");
    EXPECT_EQ(broken("打开 STEP 文件", 10), "打开 STEP\n文件");
}

TEST(LineBreaksTests, AreNotBeforeCommasSmallKanaAndClosingBrackets)
{
    EXPECT_EQ(broken("場合は、削除", 6), "場合\nは、削\n除");
    EXPECT_EQ(broken("あシャフト", 4), "あ\nシャ\nフト");
    EXPECT_EQ(broken("名「甲」乙", 6), "名\n「甲」\n乙");
}

TEST(LineBreaksTests, AreNotBehindOpeningBrackets)
{
    EXPECT_EQ(broken("甲乙「丙」", 6), "甲乙\n「丙」");
}

TEST(LineBreaksTests, BeginAnewAfterALineEndOfTheText)
{
    EXPECT_EQ(broken("可见\n可见面", 6), "可见\n可见面");
    EXPECT_EQ(broken("", 6), "");
}

} // namespace VX
