#include "SettingsWindowFixture.h"
#include <quorvix/menu/AllowTelemetrySetting.h>

#include <VXMesh/Config.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::ElementsAre;

constexpr const char* label = "Collect Usage Statistics";

using AllowTelemetrySettingTest = VX::Test::SettingsWindowFixture;

TEST_F(AllowTelemetrySettingTest, standsInTheSectionBehavior)
{
    EXPECT_STREQ(AllowTelemetrySetting().getName(), "Behavior");
    open_();
    EXPECT_TRUE(driver_->shows("Behavior"));
    EXPECT_TRUE(driver_->shows(label));
}

TEST_F(AllowTelemetrySettingTest, showsWhetherTelemetryIsAllowed)
{
    open_();
    EXPECT_EQ(value_(label), "on");
    SessionLogs::allow(false);
    redraw_();
    EXPECT_EQ(value_(label), "off");
}

TEST_F(AllowTelemetrySettingTest, forbidsTelemetryAndKeepsTheChoice)
{
    open_();
    ASSERT_TRUE(driver_->press(label));
    EXPECT_FALSE(SessionLogs::isAllowed());
    EXPECT_FALSE(Config::instance().getBool("allowSimpleTelemetry", true));
    EXPECT_THAT(reported_(), ElementsAre("Forbid Telemetry"));
}

TEST_F(AllowTelemetrySettingTest, allowsTelemetryAgain)
{
    open_();
    ASSERT_TRUE(driver_->press(label));
    ASSERT_TRUE(driver_->press(label));
    EXPECT_TRUE(SessionLogs::isAllowed());
    EXPECT_TRUE(Config::instance().getBool("allowSimpleTelemetry", false));
}

TEST_F(AllowTelemetrySettingTest, saysWhatItIsFor)
{
    open_();
    driver_->hover(label);
    EXPECT_TRUE(driver_->waitFor(
        [&]
        {
            return driver_->shows("Allow application to collect (non-personal) data about tools that are used to "
                                  "improve performance.");
        }));
}

TEST_F(AllowTelemetrySettingTest, allowsTelemetryWhenItIsReset)
{
    SessionLogs::allow(false);
    AllowTelemetrySetting().reset();
    EXPECT_TRUE(SessionLogs::isAllowed());
}

TEST_F(AllowTelemetrySettingTest, canDoNothingWhereTheCommandLineForbidsTelemetry)
{
    SessionLogs::reset();
    getViewerInstance().setCommandLineArguments({"-noTelemetry"});
    EXPECT_FALSE(SessionLogs::isEnabled());
    open_();
    const auto item = driver_->find(label);
    ASSERT_TRUE(item);
    EXPECT_FALSE(item->enabled);
    EXPECT_EQ(item->value, "off");
    AllowTelemetrySetting().reset();
    EXPECT_FALSE(SessionLogs::isAllowed());
}

TEST_F(AllowTelemetrySettingTest, goesWithTheMenu)
{
    open_();
    openInAnotherMenu_();
    EXPECT_FALSE(driver_->shows(label));
}

} // namespace

} // namespace VX
