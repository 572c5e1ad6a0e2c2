#include "StartupFixture.h"

#include <VXViewer/NotificationType.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

class TelemetryDisclaimerTest : public VX::Test::StartupFixture
{
protected:
    void TearDown() override
    {
        ViewerSettingsPlugin::instance()->setEnabled(false);
        StartupFixture::TearDown();
    }

    /// Starts the program again, so that the quick setup stays away.
    void startAgain_(const Json::Value& shown = Json::Value(1))
    {
        start_(roomy);
        haveSettings_(2);
        setDisclaimer_(shown);
        askAtStart_();
    }

    [[nodiscard]] bool shows_() const { return driver_->shows(disclaimerTitle); }
};

TEST_F(TelemetryDisclaimerTest, opensWhereItWasNeverDoneWith)
{
    start_(roomy);
    askAtStart_();
    EXPECT_TRUE(shows_());
    EXPECT_TRUE(menu_->isStartupModalShown());
    EXPECT_TRUE(
        driver_->shows("To help us understand how you use Quorvix and make it better, we'll collect data on the "
                       "tools you click on. This will give us insights to improve functionality and "
                       "usability.\n\nNo personal info or file data is collected, and you can opt out anytime in "
                       "the settings."));
}

TEST_F(TelemetryDisclaimerTest, opensForAnythingStoredButZero)
{
    for (const Json::Value& stored :
         {Json::Value(1), Json::Value(-1), Json::Value(0.5), Json::Value(true), Json::Value("0"), Json::Value(),
          Json::Value(Json::objectValue), Json::Value(Json::arrayValue)})
    {
        TelemetryDisclaimerTest::end_();
        const auto menu = std::make_shared<VX::Test::OpenMenu>();
        constexpr int signedIn = 7;
        AuthWindowAccess(*menu->authWindow_()).setState(signedIn);
        session_.emplace(menu, roomy);
        driver_.emplace(*session_);
        setDisclaimer_(stored);
        menu->asksAtStart = true;
        redraw_();
        EXPECT_TRUE(shows_()) << stored.toStyledString();
    }
}

TEST_F(TelemetryDisclaimerTest, staysAwayWhereItIsDone)
{
    startAgain_(0);
    EXPECT_FALSE(shows_());
    EXPECT_FALSE(menu_->isStartupModalShown());
}

TEST_F(TelemetryDisclaimerTest, staysAwayWhereTelemetryIsNotPossible)
{
    SessionLogs::reset();
    getViewerInstance().setCommandLineArguments({"-noTelemetry"});
    ASSERT_FALSE(SessionLogs::isEnabled());
    startAgain_();
    EXPECT_FALSE(shows_());
}

TEST_F(TelemetryDisclaimerTest, comesAfterTheQuickSetup)
{
    start_(roomy);
    haveSettings_();
    askAtStart_();
    EXPECT_TRUE(driver_->shows(quickSetupTitle));
    EXPECT_FALSE(shows_());
    driver_->key(GLFW_KEY_ESCAPE);
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(TelemetryDisclaimerTest, comesAfterTheSignIn)
{
    startSignedOut_(roomy);
    askAtStart_();
    EXPECT_FALSE(shows_());
    signIn_();
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(TelemetryDisclaimerTest, waitsWhileAStoredSignInIsTried)
{
    constexpr int starting = 0;
    AuthWindowAccess(*menu_->authWindow_()).setState(starting);
    startSignedOut_(roomy);
    askAtStart_();
    EXPECT_FALSE(shows_());
    signIn_();
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(TelemetryDisclaimerTest, comesAfterAMessage)
{
    start_(roomy);
    menu_->showModalMessage("It does not work.", NotificationType::Error);
    redraw_();
    askAtStart_();
    EXPECT_FALSE(shows_());
    ASSERT_TRUE(driver_->press("OK"));
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(TelemetryDisclaimerTest, comesBackAfterAMessage)
{
    startAgain_();
    menu_->showModalMessage("It does not work.", NotificationType::Error);
    redraw_();
    EXPECT_FALSE(shows_());
    ASSERT_TRUE(driver_->press("OK"));
    redraw_();
    EXPECT_TRUE(shows_());
}

TEST_F(TelemetryDisclaimerTest, keepsTheWelcomeCardsAway)
{
    startAgain_();
    EXPECT_FALSE(showsCards_());
    ASSERT_TRUE(driver_->press("Ok"));
    redraw_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(TelemetryDisclaimerTest, isDoneWhenItIsAccepted)
{
    SessionLogs::allow(false);
    startAgain_();
    Config::instance().setBool("allowSimpleTelemetry", false);
    ASSERT_TRUE(driver_->press("Ok"));
    EXPECT_EQ(disclaimer_(), Json::Value(0));
    EXPECT_TRUE(SessionLogs::isAllowed());
    EXPECT_TRUE(Config::instance().getBool("allowSimpleTelemetry", false));
    redraw_();
    EXPECT_FALSE(shows_());
}

TEST_F(TelemetryDisclaimerTest, isAcceptedWithEnter)
{
    startAgain_();
    driver_->key(GLFW_KEY_ENTER);
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_EQ(disclaimer_(), Json::Value(0));
}

TEST_F(TelemetryDisclaimerTest, isDoneWhenItLeadsToTheSettings)
{
    RibbonSchemaHolder::addItem(ViewerSettingsPlugin::instance());
    ViewerSettingsPlugin::instance()->setActiveTab(ViewerSettingsPlugin::TabType::View);
    SessionLogs::allow(false);
    startAgain_();
    ASSERT_TRUE(driver_->press("Manage Settings"));
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_TRUE(ViewerSettingsPlugin::instance()->isEnabled());
    EXPECT_TRUE(driver_->shows("Collect Usage Statistics"));
    EXPECT_EQ(disclaimer_(), Json::Value(0));
    EXPECT_FALSE(SessionLogs::isAllowed());
}

TEST_F(TelemetryDisclaimerTest, pressesTheButtonThatTheKeyboardIsOn)
{
    startAgain_();
    driver_->key(GLFW_KEY_TAB);
    while (!driver_->find("Manage Settings")->focused)
        driver_->key(GLFW_KEY_TAB);
    driver_->key(GLFW_KEY_ENTER);
    redraw_();
    EXPECT_TRUE(ViewerSettingsPlugin::instance()->isEnabled());
}

TEST_F(TelemetryDisclaimerTest, closesByItsButtonsOnly)
{
    startAgain_();
    driver_->key(GLFW_KEY_ESCAPE);
    driver_->click({100, 700});
    redraw_();
    EXPECT_TRUE(shows_());
    EXPECT_EQ(disclaimer_(), Json::Value(1));
}

TEST_F(TelemetryDisclaimerTest, isNotForAWindowThatNobodySees)
{
    start_(roomy);
    redraw_();
    EXPECT_FALSE(shows_());
    EXPECT_TRUE(showsCards_());
}

TEST_F(TelemetryDisclaimerTest, isEightHundredWideInTheMiddle)
{
    startAgain_();
    expectModal_("TelemetryDisclaimer##TelemetryDisclaimer", {640, 400}, 800);
}

TEST_F(TelemetryDisclaimerTest, growsWithTheScale)
{
    start_({2560, 1600}, 2);
    haveSettings_(2);
    setDisclaimer_(1);
    askAtStart_();
    expectModal_("TelemetryDisclaimer##TelemetryDisclaimer", {1280, 800}, 1600);
    const auto ok = driver_->find("Ok");
    ASSERT_TRUE(ok);
    EXPECT_NEAR(ok->min.x(), 1280 - 500, 1);
    EXPECT_NEAR(ok->max.x() - ok->min.x(), 500 - 16, 1);
}

TEST_F(TelemetryDisclaimerTest, hasItsButtonsSideBySideInTheMiddle)
{
    startAgain_();
    const auto ok = driver_->find("Ok");
    const auto settings = driver_->find("Manage Settings");
    ASSERT_TRUE(ok && settings);
    EXPECT_NEAR(ok->min.x(), 640 - 250, 1);
    EXPECT_NEAR(settings->max.x(), 640 + 250, 1);
    EXPECT_NEAR(ok->max.x() - ok->min.x(), (500 - 16) / 2.0, 1);
    EXPECT_NEAR(settings->min.x() - ok->max.x(), 16, 1);
    EXPECT_TRUE((ok->visibleMax - ok->max).isZero());
}

} // namespace

} // namespace VX
