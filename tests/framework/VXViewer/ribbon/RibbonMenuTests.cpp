#include "RibbonFixture.h"

#include <VXMesh/Config.h>
#include <VXMesh/ObjectMesh.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <gmock/gmock.h>

namespace VX
{

using testing::ElementsAre;

/// The ribbon of a user whose settings cannot be written.
class UnwritableSettingsTests : public VX::Test::RibbonFixture
{
};

TEST_F(UnwritableSettingsTests, AreToldOnce)
{
    const VX::Test::EnvironmentVariable base("XDG_CONFIG_HOME", folder_.write("file", ""));
    Config::instance().reset("QuorvixTest");
    for (const bool value : {true, false})
    {
        Config::instance().setBool("key", value);
        viewer_.incrementForceRedrawFrames();
        driver_.settle();
    }
    EXPECT_THAT(menu_->notifications, ElementsAre("The settings cannot be saved. They last until the program ends."));
}

class RibbonMenuTests : public VX::Test::RibbonFixture
{
};

TEST_F(RibbonMenuTests, ShowsTheItemsOfTheOpenTab)
{
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon"));
    EXPECT_TRUE(driver_.shows("Shut", "Ribbon"));
    EXPECT_FALSE(driver_.shows("Other Thing", "Ribbon"));
    driver_.press("Second", "Ribbon Header");
    EXPECT_TRUE(driver_.shows("Other Thing", "Ribbon"));
    EXPECT_FALSE(driver_.shows("Open It", "Ribbon"));
}

TEST_F(RibbonMenuTests, ShowsNothingThatIsNotThere)
{
    EXPECT_FALSE(driver_.find("Not There"));
    EXPECT_FALSE(driver_.find("Unplaced"));
}

TEST_F(RibbonMenuTests, PressesItemsOfTheBodyTheQuickAccessAndADropDown)
{
    driver_.press("Open It", "Ribbon");
    driver_.press("Save It", "Ribbon Header");
    driver_.press("Sides", "Ribbon");
    driver_.press("From Top", "Ribbon Drop-Down");
    EXPECT_THAT(menu_->pressed, ElementsAre("Open It", "Save It", "From Top"));
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon Drop-Down"));
}

TEST_F(RibbonMenuTests, SaysWhyAnItemIsNotAvailable)
{
    item_("Open It").reason = "There is nothing to open.";
    viewer_.incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_EQ(driver_.obstacle("Open It", "Ribbon"), "\"Open It\" in \"Ribbon\" is disabled");
    driver_.hover("Open It", "Ribbon");
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows("There is nothing to open."); }));
    EXPECT_TRUE(driver_.shows("Opens something"));
}

TEST_F(RibbonMenuTests, TellsTheReasonWhenAnUnavailableItemIsPressedByItsKey)
{
    item_("Open It").reason = "There is nothing to open.";
    menu_->setShortcut({GLFW_KEY_B, GLFW_MOD_CONTROL}, "Open It", ShortcutCategory::Scene);
    driver_.key(GLFW_KEY_B, GLFW_MOD_CONTROL);
    EXPECT_EQ(item_("Open It").presses, 0);
    EXPECT_THAT(menu_->notifications, ElementsAre("There is nothing to open."));
}

TEST_F(RibbonMenuTests, IgnoresAKeyOfAnItemThatIsNotThere)
{
    menu_->setShortcut({GLFW_KEY_B, GLFW_MOD_CONTROL}, "Nowhere", ShortcutCategory::Scene);
    driver_.key(GLFW_KEY_B, GLFW_MOD_CONTROL);
    EXPECT_THAT(menu_->pressed, ElementsAre());
    EXPECT_FALSE(menu_->pressItem("Nowhere"));
}

TEST_F(RibbonMenuTests, ShowsTheTabOfTheSelectedKindOfObject)
{
    auto box = VX::Test::makeBox("Box");
    viewer_.scene().addChild(box);
    driver_.settle();
    EXPECT_FALSE(driver_.shows("Mesh", "Ribbon Header"));
    box->setSelected(true);
    driver_.settle();
    driver_.press("Second", "Ribbon Header");
    driver_.press("Mesh", "Ribbon Header");
    EXPECT_TRUE(driver_.shows("Repair It", "Ribbon"));
    box->setSelected(false);
    driver_.settle();
    EXPECT_FALSE(driver_.shows("Mesh", "Ribbon Header"));
    EXPECT_TRUE(driver_.shows("Other Thing", "Ribbon"));
}

TEST_F(RibbonMenuTests, GivesTheSceneTheRoomOfACollapsedBody)
{
    const int before = viewer_.view().area().height;
    driver_.doublePress("Home", "Ribbon Header");
    EXPECT_TRUE(menu_->isCollapsed());
    EXPECT_FLOAT_EQ(menu_->topPanelHeight(), 32);
    EXPECT_EQ(viewer_.view().area().height, before + 76);
    driver_.press("Keep the ribbon open", "Ribbon Header");
    EXPECT_FALSE(menu_->isCollapsed());
    EXPECT_EQ(viewer_.view().area().height, before);
}

TEST_F(RibbonMenuTests, KeepsInTheSettingsThatItIsCollapsed)
{
    viewer_.setSettingsManager(std::make_unique<ViewerSettingsManager>());
    menu_->setCollapsed(true);
    EXPECT_EQ(viewer_.settingsManager()->loadInt("ribbonCollapsed", 0), 1);
    menu_->setCollapsed(false);
    viewer_.settingsManager()->saveInt("ribbonCollapsed", 1);
    menu_->settingsLoaded();
    EXPECT_TRUE(menu_->isCollapsed());
}

TEST_F(RibbonMenuTests, OpensTheCollapsedBodyOverTheSceneUntilSomethingElseIsPressed)
{
    driver_.press("Collapse the ribbon", "Ribbon Header");
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon"));
    const int height = viewer_.view().area().height;
    driver_.press("Second", "Ribbon Header");
    EXPECT_EQ(viewer_.view().area().height, height);
    driver_.press("Other Thing", "Ribbon");
    EXPECT_THAT(menu_->pressed, ElementsAre("Other Thing"));
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon"));
    driver_.press("Home", "Ribbon Header");
    EXPECT_TRUE(UiTree::instance().hasWindow("Ribbon"));
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow("Ribbon"));
}

TEST_F(RibbonMenuTests, ListsActiveToolsAndEndsThem)
{
    driver_.press("Measure", "Ribbon");
    EXPECT_EQ(driver_.find("Measure", "Ribbon")->value, "on");
    EXPECT_TRUE(driver_.shows("Measure", "Active Tools"));
    EXPECT_GT(item_("Measure").panels, 0);
    driver_.press("End Measure", "Active Tools");
    EXPECT_FALSE(item_("Measure").active);
    EXPECT_FALSE(UiTree::instance().hasWindow("Active Tools"));
}

TEST_F(RibbonMenuTests, EndsTheToolBegunLastWithEscape)
{
    item_("Unplaced").tool = true;
    menu_->pressItem("Unplaced");
    driver_.settle();
    driver_.press("Measure", "Ribbon");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(item_("Measure").active);
    EXPECT_TRUE(item_("Unplaced").active);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(item_("Unplaced").active);
}

TEST_F(RibbonMenuTests, DrawsNoPanelOfAnItemThatThePanelBeforeEnded)
{
    item_("Measure").active = item_("Unplaced").active = true;
    item_("Measure").panelDrawn = [&] { item_("Unplaced").deactivate(); };
    viewer_.incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_EQ(item_("Unplaced").panels, 0);
}

TEST_F(RibbonMenuTests, EndsItsToolsBeforeItIsShutDown)
{
    driver_.press("Measure", "Ribbon");
    viewer_.stopUi();
    EXPECT_FALSE(item_("Measure").active);
}

TEST_F(RibbonMenuTests, DrawsItsWindowsInOrder)
{
    menu_->steps.clear();
    viewer_.incrementForceRedrawFrames();
    driver_.settle();
    EXPECT_THAT(menu_->steps, ElementsAre("welcome", "helpers", "version"));
}

TEST_F(RibbonMenuTests, AnnouncesTheFirstFrameAfterASignInOnce)
{
    menu_->steps.clear();
    menu_->raiseFirstSignInFrame();
    viewer_.incrementForceRedrawFrames(2);
    driver_.settle();
    EXPECT_EQ(std::count(menu_->steps.begin(), menu_->steps.end(), "signed in"), 1);
    EXPECT_EQ(menu_->steps.front(), "signed in");
}

TEST_F(RibbonMenuTests, TellsOfTheCommandSearch)
{
    int focused = 0;
    int activated = 0;
    menu_->setSearchFocusedCallback([&] { ++focused; });
    menu_->setSearchActivatedCallback([&] { ++activated; });
    driver_.key(GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    EXPECT_EQ(focused, 1);
    driver_.type("other");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(activated, 1);
    EXPECT_THAT(menu_->pressed, ElementsAre("Other Thing"));
}

TEST_F(RibbonMenuTests, TheCommandSearchLeavesOutAnItemThatIsGone)
{
    RibbonSchemaHolder::schema().items.erase("Other Thing");
    driver_.key(GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    driver_.type("other");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, ElementsAre());
}

} // namespace VX
