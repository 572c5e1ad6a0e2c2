#include "WelcomeFixture.h"

#include <VXViewer/SceneView.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <gmock/gmock.h>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Draws a welcome window that tests can look into.
class OwnWindowMenu : public VX::Test::OpenMenu
{
public:
    WelcomeWindow window;

protected:
    void drawWelcomeWindow_() override { window.draw(); }
};

class WelcomeWindowTest : public VX::Test::WelcomeFixture
{
};

TEST_F(WelcomeWindowTest, isShownOverAnEmptyScene)
{
    start_(roomy);
    EXPECT_TRUE(showsCards_());
    EXPECT_TRUE(driver_->shows("Quickstart"));
    EXPECT_TRUE(driver_->shows("Create Simple Object"));
    EXPECT_TRUE(driver_->shows("Show on Startup"));
}

TEST_F(WelcomeWindowTest, isShownOverASceneOfGroupsOnly)
{
    start_(roomy);
    viewer_().scene().addChild(std::make_shared<Object>());
    redraw_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(WelcomeWindowTest, goesWhenSomethingIsInTheScene)
{
    start_(roomy);
    addMesh_();
    EXPECT_FALSE(showsCards_());
}

TEST_F(WelcomeWindowTest, goesWhenSomethingIsInAGroup)
{
    start_(roomy);
    const auto group = std::make_shared<Object>();
    group->addChild(std::make_shared<ObjectMesh>());
    viewer_().scene().addChild(group);
    redraw_();
    EXPECT_FALSE(showsCards_());
}

TEST_F(WelcomeWindowTest, makesRoomForWhatAToolIsAboutToPutIntoTheScene)
{
    start_(roomy);
    viewer_().view().setPreview(std::make_shared<ObjectMesh>());
    redraw_();
    EXPECT_FALSE(showsCards_());
    viewer_().view().setPreview(nullptr);
    redraw_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(WelcomeWindowTest, comesBackWhenTheSceneIsEmptyAgain)
{
    start_(roomy);
    addMesh_();
    removeAll_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(WelcomeWindowTest, staysWhenItIsUntickedUntilSomethingIsInTheScene)
{
    start_(roomy);
    ASSERT_TRUE(driver_->press("Show on Startup"));
    EXPECT_TRUE(showsCards_());
    addMesh_();
    removeAll_();
    EXPECT_FALSE(showsCards_());
}

TEST_F(WelcomeWindowTest, reportsOnceThatItWasUnticked)
{
    start_(roomy);
    ASSERT_TRUE(driver_->press("Show on Startup"));
    EXPECT_THAT(reported_(), ElementsAre("Welcome Screen Disabled"));
    ASSERT_TRUE(driver_->press("Show on Startup"));
    EXPECT_THAT(reported_(), ElementsAre("Welcome Screen Disabled"));
}

TEST_F(WelcomeWindowTest, keepsTheChoice)
{
    start_(roomy);
    ASSERT_TRUE(driver_->press("Show on Startup"));
    EXPECT_FALSE(Config::instance().getBool("cShowWelcomeWindow", true));
    ASSERT_TRUE(driver_->press("Show on Startup"));
    EXPECT_TRUE(Config::instance().getBool("cShowWelcomeWindow", false));
}

TEST_F(WelcomeWindowTest, isNotShownWhileTheConfigurationHasItOff)
{
    WelcomeWindow window;
    Config::instance().setBool("cShowWelcomeWindow", false);
    window.init(menu_.get(), {});
    EXPECT_FALSE(window.isShowOnStartup());
    EXPECT_FALSE(window.isOpen());
}

TEST_F(WelcomeWindowTest, isOpenFromTheStartWhereTheConfigurationSaysNothing)
{
    WelcomeWindow window;
    EXPECT_FALSE(window.isOpen());
    window.init(menu_.get(), {});
    EXPECT_TRUE(window.isShowOnStartup());
    EXPECT_TRUE(window.isOpen());
}

TEST_F(WelcomeWindowTest, followsTheSwitchAtOnceOnlyWhenAskedTo)
{
    WelcomeWindow window;
    window.init(menu_.get(), {});
    window.setShowOnStartup(false, false);
    EXPECT_TRUE(window.isOpen());
    window.setShowOnStartup(true, false);
    window.setShowOnStartup(false, true);
    EXPECT_FALSE(window.isOpen());
    window.setShowOnStartup(false, true);
    EXPECT_FALSE(window.isShowOnStartup());
}

TEST_F(WelcomeWindowTest, needsRoomBesideTheSceneList)
{
    start_({280 + 898, 800});
    EXPECT_TRUE(showsCards_());
}

TEST_F(WelcomeWindowTest, isNotDrawnWhereTheWindowIsAPixelTooNarrow)
{
    start_({280 + 897, 800});
    EXPECT_FALSE(showsCards_());
    // The hint on how files are opened takes the place.
    EXPECT_TRUE(driver_->shows("Open a file or drop it here"));
}

TEST_F(WelcomeWindowTest, countsAsOpenWhereTheWindowIsAPixelTooNarrow)
{
    const auto menu = std::make_shared<OwnWindowMenu>();
    menu->window.init(menu.get(), {});
    menu->window.setShowOnStartup(false, true);
    menu->window.setShowOnStartup(true, false);
    ASSERT_FALSE(menu->window.isOpen());
    constexpr int signedIn = 7;
    AuthWindowAccess(*menu->authWindow_()).setState(signedIn);
    session_.emplace(menu, PixelSize{280 + 897, 800});
    driver_.emplace(*session_);
    driver_->settle();
    EXPECT_FALSE(showsCards_());
    EXPECT_TRUE(menu->window.isOpen());
    menu->window.shutdown();
}

TEST_F(WelcomeWindowTest, needsRoomBelowTheRibbon)
{
    start_(roomy);
    const int ribbon = static_cast<int>(menu_->topPanelHeight());
    session_->window().setFramebufferSize({1280, ribbon + 539});
    redraw_();
    EXPECT_FALSE(showsCards_());
    session_->window().setFramebufferSize({1280, ribbon + 540});
    redraw_();
    EXPECT_TRUE(showsCards_());
}

TEST_F(WelcomeWindowTest, takesThePlaceOfTheHintOnHowFilesAreOpened)
{
    start_(roomy);
    EXPECT_FALSE(driver_->shows("Open a file or drop it here"));
}

TEST_F(WelcomeWindowTest, leavesThePlaceToThatHintWhenItIsSwitchedOff)
{
    QuorvixMenuUIConfig config;
    config.drawWelcomeWindow = false;
    menu_->setQuorvixMenuConfig(config);
    start_(roomy);
    EXPECT_FALSE(showsCards_());
    EXPECT_TRUE(driver_->shows("Open a file or drop it here"));
}

TEST_F(WelcomeWindowTest, isNotShownWhileNobodyIsSignedIn)
{
    startSignedOut_(roomy);
    EXPECT_FALSE(showsCards_());
}

TEST_F(WelcomeWindowTest, opensTheVideoAndReportsThat)
{
    std::string opened;
    setLinkOpener([&](const std::string& url) { opened = url; });
    start_(roomy);
    ASSERT_TRUE(driver_->press("Watch Video"));
    EXPECT_EQ(opened, "https://www.example.com/inappvideo/onboarding_first_session");
    EXPECT_THAT(reported_(), ElementsAre("Welcome Screen: \"Watch Video\" Clicked"));
}

TEST_F(WelcomeWindowTest, startsTheToolThatCreatesObjects)
{
    const auto tool = addItem_("Create Simple Objects");
    tool->reason = "It is asked for, so it is not refused.";
    start_(roomy);
    ASSERT_TRUE(driver_->press("Create Object"));
    EXPECT_EQ(tool->presses, 1);
    EXPECT_THAT(reported_(),
                ElementsAre("Welcome Screen: \"Create Object\" Clicked", "Tool Activated: Create Simple Objects"));
}

TEST_F(WelcomeWindowTest, onlyReportsThatWhereThereIsNoSuchTool)
{
    start_(roomy);
    ASSERT_TRUE(driver_->press("Create Object"));
    EXPECT_THAT(reported_(), ElementsAre("Welcome Screen: \"Create Object\" Clicked"));
}

TEST_F(WelcomeWindowTest, doesNothingWhenAShapeIsPressed)
{
    addItem_("Create Simple Objects");
    start_(roomy);
    for (const char* shape : {"Cube", "Cylinder", "Sphere", "Prism", "Torus", "Arrow"})
        EXPECT_TRUE(driver_->press(shape)) << shape;
    EXPECT_THAT(reported_(), IsEmpty());
    EXPECT_TRUE(showsCards_());
}

} // namespace

} // namespace VX
