#include "SettingsWindowFixture.h"
#include <quorvix/menu/CheckForUpdatesSetting.h>
#include <quorvix/menu/ShowWelcomeWindowSetting.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

constexpr const char* welcomeLabel = "Show Welcome Window";
constexpr const char* updatesLabel = "Check for Updates";

/// The settings that the menu adds to the window of the settings.
using BehaviorSettingsTest = VX::Test::SettingsWindowFixture;

TEST_F(BehaviorSettingsTest, haveTheSwitchOfTheWelcomeWindow)
{
    open_();
    EXPECT_EQ(value_(welcomeLabel), "on");
    ASSERT_TRUE(driver_->press(welcomeLabel));
    EXPECT_EQ(value_(welcomeLabel), "off");
    EXPECT_EQ(value_("Show on Startup"), "off");
    EXPECT_FALSE(Config::instance().getBool("cShowWelcomeWindow", true));
}

TEST_F(BehaviorSettingsTest, reportNothingOfThatSwitch)
{
    open_();
    ASSERT_TRUE(driver_->press(welcomeLabel));
    EXPECT_TRUE(reported_().empty());
}

TEST_F(BehaviorSettingsTest, sayWhatTheWelcomeWindowIsFor)
{
    open_();
    driver_->hover(welcomeLabel);
    EXPECT_TRUE(driver_->waitFor([&] { return driver_->shows("Show welcome window when application starts."); }));
}

TEST_F(BehaviorSettingsTest, switchTheWelcomeWindowOnWithoutKeepingThatWhenTheyAreReset)
{
    Config::instance().setBool("cShowWelcomeWindow", false);
    bool shown = false;
    ShowWelcomeWindowSetting(shown).reset();
    EXPECT_TRUE(shown);
    EXPECT_FALSE(Config::instance().getBool("cShowWelcomeWindow", true));
}

TEST_F(BehaviorSettingsTest, doWithoutThatSwitchWhereTheRibbonHasNoSettings)
{
    start_(roomy);
    ViewerSettingsPlugin::instance()->setEnabled(true);
    RibbonSchemaHolder::addItem(ViewerSettingsPlugin::instance());
    redraw_();
    EXPECT_FALSE(driver_->shows(welcomeLabel));
    EXPECT_TRUE(driver_->shows(updatesLabel));
    EXPECT_TRUE(showsCards_());
}

TEST_F(BehaviorSettingsTest, haveTheSwitchOfTheQuestionForUpdates)
{
    open_();
    EXPECT_EQ(value_(updatesLabel), "on");
    ASSERT_TRUE(driver_->press(updatesLabel));
    EXPECT_EQ(value_(updatesLabel), "off");
    EXPECT_FALSE(CheckForUpdatesSetting::isOn());
    EXPECT_FALSE(Config::instance().getBool("checkForUpdates", true));
}

TEST_F(BehaviorSettingsTest, switchThatQuestionOnWhenTheyAreReset)
{
    Config::instance().setBool("checkForUpdates", false);
    CheckForUpdatesSetting().reset();
    EXPECT_TRUE(CheckForUpdatesSetting::isOn());
}

TEST_F(BehaviorSettingsTest, goWithTheMenu)
{
    open_();
    openInAnotherMenu_();
    EXPECT_FALSE(driver_->shows(welcomeLabel));
    EXPECT_FALSE(driver_->shows(updatesLabel));
}

} // namespace

} // namespace VX
