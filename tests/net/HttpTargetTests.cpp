#include <gtest/gtest.h>

#include <net/HttpTarget.h>

namespace VX::Test
{

TEST(PercentDecode, ReplacesEscapesInEitherCase)
{
    EXPECT_EQ(percentDecode("a%20b%2Fc%c3%A4"), "a b/c\xC3\xA4");
}

TEST(PercentDecode, KeepsAPlus)
{
    EXPECT_EQ(percentDecode("1+2"), "1+2");
}

TEST(PercentDecode, RefusesEscapesThatAreCutOffOrNotHexadecimal)
{
    for (const char* text : {"%", "%4", "a%", "%zz", "%4g", "%-1", "% 1", "%0x"})
        EXPECT_FALSE(percentDecode(text)) << text;
}

TEST(PercentDecode, RefusesAZeroByte)
{
    EXPECT_FALSE(percentDecode("/file%00.txt"));
}

TEST(HttpTarget, SplitsPathAndQuery)
{
    const auto target = parseHttpTarget("/a%20b/c?x=1&y=%3D&x=2");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->path, "/a b/c");
    EXPECT_EQ(target->rawQuery, "x=1&y=%3D&x=2");
    EXPECT_EQ(target->query, (std::map<std::string, std::string>{{"x", "2"}, {"y", "="}}));
}

TEST(HttpTarget, TakesKeysWithoutValuesAndEmptyPairs)
{
    const auto target = parseHttpTarget("/?&flag&=v&");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->query, (std::map<std::string, std::string>{{"flag", ""}, {"", "v"}}));
}

TEST(HttpTarget, EscapedSeparatorsBelongToTheValue)
{
    const auto target = parseHttpTarget("/?a=%26b%3Dc");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->query.at("a"), "&b=c");
}

TEST(HttpTarget, TakesTheAbsoluteForm)
{
    const auto target = parseHttpTarget("http://127.0.0.1:80/a?b=c");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->path, "/a");
    EXPECT_EQ(target->query.at("b"), "c");
    EXPECT_EQ(parseHttpTarget("http://127.0.0.1")->path, "/");
    EXPECT_EQ(parseHttpTarget("http://127.0.0.1?b=c")->rawQuery, "b=c");
}

TEST(HttpTarget, TakesTheAsterisk)
{
    EXPECT_EQ(parseHttpTarget("*")->path, "*");
}

TEST(HttpTarget, RefusesOtherForms)
{
    for (const char* text : {"", "a", "127.0.0.1:80", "ftp://host/a", "/a#b", "/a%", "/?a=%", "/?%=a", "**"})
        EXPECT_FALSE(parseHttpTarget(text)) << text;
}

} // namespace VX::Test
