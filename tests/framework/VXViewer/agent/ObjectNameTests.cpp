#include "agent/ObjectName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::EndsWith;
using testing::HasSubstr;

TEST(ObjectName, IsWithoutTheBlanksAroundIt)
{
    EXPECT_EQ(objectNameOf("  Left wheel\n").value(), "Left wheel");
}

TEST(ObjectName, HasSomethingToRead)
{
    EXPECT_THAT(objectNameOf(" \t").error(), HasSubstr("needs a letter"));
}

TEST(ObjectName, HasAtMost255Characters)
{
    std::string name;
    for (int i = 0; i < 255; ++i)
        name += "\u00E4";
    EXPECT_TRUE(objectNameOf(name));
    EXPECT_THAT(objectNameOf(name + "x").error(), HasSubstr("at most 255 characters"));
}

TEST(ObjectName, HasNoControlCharacters)
{
    for (const char* name : {"a\nb", "a\x7f", "a\u0085b"})
        EXPECT_THAT(objectNameOf(name).error(), HasSubstr("control characters")) << name;
    EXPECT_TRUE(objectNameOf("\u00A0 \u00C5 \u2192"));
}

TEST(ObjectName, OfACopyKeepsItsNumber)
{
    const std::string name = shortenedName(std::string(255, 'x') + " 12");
    EXPECT_EQ(name.size(), 255U);
    EXPECT_THAT(name, EndsWith("x 12"));
    EXPECT_EQ(shortenedName("Wheel 2"), "Wheel 2");
}

} // namespace VX
