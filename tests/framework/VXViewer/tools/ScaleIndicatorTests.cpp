#include "ToolFixture.h"

#include <menu/ScaleIndicator.h>

namespace VX::Test
{

TEST(ScaleBar, HasARoundLengthThatFits)
{
    const ScaleBar bar = scaleBar(0.1, 160);
    EXPECT_DOUBLE_EQ(bar.length, 10);
    EXPECT_DOUBLE_EQ(bar.pixels, 100);
    EXPECT_EQ(bar.text, "10 mm");
    EXPECT_DOUBLE_EQ(scaleBar(0.2, 160).length, 20);
    EXPECT_DOUBLE_EQ(scaleBar(0.4, 160).length, 50);
}

TEST(ScaleBar, TakesTheUnitThatSuitsTheLength)
{
    EXPECT_EQ(scaleBar(1e-4, 160).text, "10 \u00B5m");
    EXPECT_EQ(scaleBar(3e-3, 160).text, "0.2 mm");
    EXPECT_EQ(scaleBar(10, 160).text, "1 m");
    EXPECT_EQ(scaleBar(30000, 160).text, "2 km");
}

class ScaleIndicatorTests : public ToolFixture
{
};

TEST_F(ScaleIndicatorTests, IsShownInItsViewportsOnly)
{
    driver_.settle();
    EXPECT_TRUE(UiTree::instance().find("1 mm", "Scale Indicator").empty());
    viewer_.view().options().scaleIndicator = ViewportMask(2);
    driver_.settle();
    EXPECT_TRUE(UiTree::instance().find("1 mm", "Scale Indicator").empty());
    viewer_.view().options().scaleIndicator = ViewportMask::all();
    driver_.settle();
    ASSERT_TRUE(driver_.find("0.5 mm", "Scale Indicator"));
}

TEST_F(ScaleIndicatorTests, IsAsLongAsItSays)
{
    viewer_.view().options().scaleIndicator = ViewportMask::all();
    driver_.settle();
    const auto bar = driver_.find("0.5 mm", "Scale Indicator");
    ASSERT_TRUE(bar);
    // The camera's target is at (0.5, 0.5, 0.5); upwards is upwards in the picture but for the tilt.
    const Vector3d along = viewer_.view().camera().right() * 0.5;
    const Vector2f length = windowAt_(Vector3d(0.5, 0.5, 0.5) + along) - windowAt_({0.5, 0.5, 0.5});
    EXPECT_NEAR(bar->max.x() - bar->min.x(), length.x(), 1.5);
}

} // namespace VX::Test
