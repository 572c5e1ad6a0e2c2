#include "framework/VXViewer/src/GlfwWindow.h"

#include <gtest/gtest.h>

namespace VX
{

TEST(ClickCounterTests, CountsClicksThatFollowQuicklyAtOnePlace)
{
    ClickCounter clicks;
    EXPECT_EQ(clicks.press(0, {10, 10}, 1.0, 5), 1);
    EXPECT_EQ(clicks.press(0, {12, 10}, 1.2, 5), 2);
    EXPECT_EQ(clicks.press(0, {12, 11}, 1.4, 5), 3);
    EXPECT_EQ(clicks.current(), 3);
}

TEST(ClickCounterTests, BeginsAgainAfterAPause)
{
    ClickCounter clicks;
    clicks.press(0, {10, 10}, 1.0, 5);
    EXPECT_EQ(clicks.press(0, {10, 10}, 1.5, 5), 1);
}

TEST(ClickCounterTests, BeginsAgainAtAnotherPlace)
{
    ClickCounter clicks;
    clicks.press(0, {10, 10}, 1.0, 5);
    EXPECT_EQ(clicks.press(0, {20, 10}, 1.1, 5), 1);
}

TEST(ClickCounterTests, BeginsAgainWithAnotherButton)
{
    ClickCounter clicks;
    clicks.press(0, {10, 10}, 1.0, 5);
    EXPECT_EQ(clicks.press(1, {10, 10}, 1.1, 5), 1);
}

} // namespace VX
