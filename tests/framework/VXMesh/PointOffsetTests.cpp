#include "formats/PointOffset.h"

#include <gtest/gtest.h>

#include <limits>

namespace VX
{

TEST(PointOffset, IsZeroNearTheOrigin)
{
    EXPECT_EQ(chooseOffset(Box3d(Vector3d(-1.0, 2.0, 3.0), Vector3d(4.0, 12.0, 5.0))), Vector3d::Zero());
    EXPECT_EQ(chooseOffset(Box3d(Vector3d(0.1, 0.2, 0.3))), Vector3d::Zero());
    EXPECT_EQ(chooseOffset(Box3d()), Vector3d::Zero());
}

TEST(PointOffset, IsARoundNumberInTheMiddleOfWhatIsFarAway)
{
    const Vector3d offset = chooseOffset(Box3d(Vector3d(500123.4, -7.0, 5e6), Vector3d(500234.5, 8.0, 5000010.0)));
    EXPECT_EQ(offset, Vector3d(500200.0, 0.0, 5000000.0));
}

TEST(PointOffset, SubtractingFromSinglePrecisionLosesNothing)
{
    const std::vector<Vector3f> before = {{1e6F, 0.0F, 1.0F}, {1000000.25F, 2.0F, 3.0F}};
    std::vector<Vector3f> points = before;
    const Vector3d offset = subtractOffset(points);
    EXPECT_NE(offset.x(), 0.0);
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ((points[i].cast<double>() + offset).cast<float>(), before[i]);
}

TEST(PointOffset, PointsThatAreNotFiniteDoNotCount)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Vector3d offset;
    const auto points = subtractOffset({{1e6, 0.0, 0.0}, {kNan, 0.0, 0.0}, {1e6 + 1.0, kInfinity, 0.0}}, offset);
    EXPECT_EQ(offset, Vector3d(1e6, 0.0, 0.0));
    EXPECT_FALSE(points[1].allFinite());
    EXPECT_FALSE(points[2].allFinite());
}

} // namespace VX
