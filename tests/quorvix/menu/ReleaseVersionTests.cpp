#include <quorvix/menu/ReleaseVersion.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace VX
{

namespace
{

using ::testing::Optional;

TEST(ReleaseVersionTest, hasFourNumbers)
{
    EXPECT_THAT(parseReleaseVersion("1.2.3.4"), Optional(ReleaseVersion{1, 2, 3, 4}));
    EXPECT_THAT(parseReleaseVersion("0.0.0.0"), Optional(ReleaseVersion{0, 0, 0, 0}));
}

TEST(ReleaseVersionTest, isNoneWithFewer)
{
    for (const char* text : {"", "1", "1.2", "1.2.3", "1.5.0", "1 2 3 4"})
        EXPECT_EQ(parseReleaseVersion(text), std::nullopt) << text;
}

TEST(ReleaseVersionTest, takesNoHeedOfAFifth)
{
    EXPECT_THAT(parseReleaseVersion("1.2.3.4.5"), Optional(ReleaseVersion{1, 2, 3, 4}));
}

TEST(ReleaseVersionTest, isNoneForADevelopmentBuild)
{
    EXPECT_EQ(parseReleaseVersion("D1.2.3.4"), std::nullopt);
    EXPECT_THAT(parseReleaseVersion("d1.2.3.4"), Optional(ReleaseVersion{0, 2, 3, 4}));
}

TEST(ReleaseVersionTest, readsTheDigitsInFront)
{
    EXPECT_THAT(parseReleaseVersion("x1.2.3.4"), Optional(ReleaseVersion{0, 2, 3, 4}));
    EXPECT_THAT(parseReleaseVersion("01.5.0.0x"), Optional(ReleaseVersion{1, 5, 0, 0}));
    EXPECT_THAT(parseReleaseVersion("..."), Optional(ReleaseVersion{0, 0, 0, 0}));
}

TEST(ReleaseVersionTest, takesANumberThatIsTooLargeForTheLargest)
{
    constexpr auto largest = std::numeric_limits<std::int32_t>::max();
    EXPECT_THAT(parseReleaseVersion("99999999999999999999.4294967296.1.1"),
                Optional(ReleaseVersion{largest, largest, 1, 1}));
}

TEST(ReleaseVersionTest, isComparedByItsNumbersFromTheFirstOn)
{
    EXPECT_LT(parseReleaseVersion("1.4.0.0"), parseReleaseVersion("1.10.0.0"));
    EXPECT_LT(parseReleaseVersion("1.9.9.9"), parseReleaseVersion("2.0.0.0"));
    EXPECT_LT(parseReleaseVersion("1.0.0.9"), parseReleaseVersion("1.0.0.10"));
    EXPECT_EQ(parseReleaseVersion("01.0.0.0"), parseReleaseVersion("1.0.0.0"));
}

TEST(ReleaseVersionTest, isWrittenWithPoints)
{
    EXPECT_EQ(releaseVersionText({1, 10, 0, 0}), "1.10.0.0");
}

} // namespace

} // namespace VX
