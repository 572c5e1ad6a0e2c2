#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/pages/HtmlText.h>

namespace VX::Test
{

namespace
{

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

TEST(HtmlText, escapesWhatHtmlGivesAMeaning)
{
    EXPECT_EQ(htmlEscaped("<a href=\"x\" b='&'>"), "&lt;a href=&quot;x&quot; b=&#39;&amp;&#39;&gt;");
    EXPECT_EQ(htmlEscaped("\xC3\xA4 plain"), "\xC3\xA4 plain");
}

TEST(HtmlText, escapesForUrls)
{
    EXPECT_EQ(urlEscaped("ann+x@ex.co/ä"), "ann%2Bx%40ex.co%2F%C3%A4");
    EXPECT_EQ(urlEscaped("aZ09-._~"), "aZ09-._~");
}

TEST(HtmlText, readsForms)
{
    EXPECT_THAT(parseForm("a=1&b=x+y%26%3D&c=&a=2"),
                UnorderedElementsAre(Pair("a", "2"), Pair("b", "x y&="), Pair("c", "")));
}

TEST(HtmlText, leavesOutWhatIsNotEncodedWell)
{
    EXPECT_THAT(parseForm("a&=&b=%zz&c=%&%=1&d=1"), UnorderedElementsAre(Pair("", ""), Pair("d", "1")));
    EXPECT_TRUE(parseForm("").empty());
    EXPECT_TRUE(parseForm("&&&").empty());
}

} // namespace

} // namespace VX::Test
