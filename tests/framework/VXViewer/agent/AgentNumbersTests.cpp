#include "agent/AgentNumbers.h"

#include <VXMesh/Json.h>

#include <gtest/gtest.h>

#include <limits>

namespace VX
{

TEST(AgentNumbers, AreRoundedToNineDigits)
{
    EXPECT_EQ(rounded(0.1 + 0.2).asDouble(), 0.3);
    EXPECT_EQ(rounded(-123456.7890123).asDouble(), -123456.789);
    EXPECT_EQ(rounded(deserializeJsonValue(R"({"min": [1.00000000001, 2]})").value()),
              deserializeJsonValue(R"({"min": [1.0, 2]})").value());
}

TEST(AgentNumbers, LeaveWholeNumbersAndTextsAlone)
{
    const Json::Value value = deserializeJsonValue(R"([12345678901234, "1.00000000001", null])").value();
    EXPECT_EQ(rounded(value), value);
}

TEST(AgentNumbers, KnowHowFarAwayIsTooFar)
{
    EXPECT_TRUE(isWithinBound(Vector3d(-9e11, 9e11, 0)));
    EXPECT_FALSE(isWithinBound(Vector3d(0, -1e12, 0)));
    EXPECT_FALSE(isWithinBound(Vector3d(0, 0, std::numeric_limits<double>::quiet_NaN())));
    EXPECT_TRUE(isWithinBound(Box3d()));
}

} // namespace VX
