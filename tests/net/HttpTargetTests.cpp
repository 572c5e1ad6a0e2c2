#include <gtest/gtest.h>

#include <net/HttpTarget.h>

#include <string_view>
#include <utility>

namespace VX::Test
{

namespace
{

/// The target that `text` is; an empty one where it is none.
HttpTarget parsed(std::string_view text)
{
    auto target = parseHttpTarget(text);
    EXPECT_TRUE(target) << text;
    return std::move(target).value_or(HttpTarget{});
}

} // namespace

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
    EXPECT_FALSE(percentDecode(std::string_view("/file\0.txt", 10)));
}

TEST(HttpTarget, SplitsPathAndQuery)
{
    const auto target = parsed("/a%20b/c?x=1&y=%3D&x=2");
    EXPECT_EQ(target.path, "/a b/c");
    EXPECT_EQ(target.rawQuery, "x=1&y=%3D&x=2");
    EXPECT_EQ(target.query, (std::map<std::string, std::string>{{"x", "2"}, {"y", "="}}));
}

TEST(HttpTarget, TakesKeysWithoutValuesAndEmptyPairs)
{
    const auto target = parsed("/?&flag&=v&");
    EXPECT_EQ(target.query, (std::map<std::string, std::string>{{"flag", ""}, {"", "v"}}));
}

TEST(HttpTarget, EscapedSeparatorsBelongToTheValue)
{
    const auto target = parsed("/?a=%26b%3Dc");
    EXPECT_EQ(target.query.at("a"), "&b=c");
}

TEST(HttpTarget, TakesTheAbsoluteForm)
{
    const auto target = parsed("http://127.0.0.1:80/a?b=c");
    EXPECT_EQ(target.path, "/a");
    EXPECT_EQ(target.query.at("b"), "c");
    EXPECT_EQ(parsed("http://127.0.0.1").path, "/");
    EXPECT_EQ(parsed("http://127.0.0.1?b=c").rawQuery, "b=c");
}

TEST(HttpTarget, TakesTheAsterisk)
{
    EXPECT_EQ(parsed("*").path, "*");
}

TEST(HttpTarget, RefusesOtherForms)
{
    for (const char* text : {"", "a", "127.0.0.1:80", "ftp://host/a", "/a#b", "/a%", "/?a=%", "/?%=a", "**"})
        EXPECT_FALSE(parseHttpTarget(text)) << text;
}

} // namespace VX::Test
