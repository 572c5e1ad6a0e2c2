#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/CameraController.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

class CountingItem : public RibbonMenuItem
{
public:
    using RibbonMenuItem::RibbonMenuItem;

    void press() override { ++presses; }

    [[nodiscard]] std::string unavailableReason() const override { return reason; }

    int presses = 0;
    std::string reason;
};

constexpr const char* menuName = "Scene Menu";

} // namespace

class SceneContextMenuTests : public testing::Test
{
protected:
    SceneContextMenuTests()
    {
        viewer_.scene().addChild(VX::Test::makeBox("Box"));
        viewer_.view().fitAll(false);
        driver_.settle();
    }

    ~SceneContextMenuTests() override { RibbonSchemaHolder::reset(); }

    /// The items of a ribbon of this test's own, which keeps the viewer's away.
    static std::shared_ptr<RibbonMenu> makeMenu_(const std::vector<std::shared_ptr<RibbonMenuItem>>& items)
    {
        RibbonSchemaHolder::reset();
        RibbonSchemaHolder::schema().tabs.push_back({"Home", "", {}});
        for (const std::shared_ptr<RibbonMenuItem>& item : items)
            RibbonSchemaHolder::addItem(item);
        return std::make_shared<RibbonMenu>();
    }

    void openInList_()
    {
        const UiItem row = *driver_.find("Box", "Scene");
        driver_.click((row.min + row.max) / 2, GLFW_MOUSE_BUTTON_RIGHT);
    }

    [[nodiscard]] Vector2f middleOfTheScene_() const
    {
        const PixelRect& area = viewer_.view().area();
        return {static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                static_cast<float>(area.y) + static_cast<float>(area.height) / 2};
    }

    static bool isOpen_() { return UiTree::instance().hasWindow(menuName); }

    std::shared_ptr<CountingItem> hide_ = std::make_shared<CountingItem>("Hide");
    std::shared_ptr<CountingItem> isolate_ = std::make_shared<CountingItem>("Isolate");
    std::shared_ptr<RibbonMenu> menu_ = makeMenu_({hide_, isolate_, std::make_shared<CountingItem>("Undo")});
    VX::Test::ViewerSession session_{menu_};
    Viewer& viewer_ = session_.viewer();
    VX::Test::UiDriver driver_{session_};
};

TEST_F(SceneContextMenuTests, OffersTheItemsForObjectsThatAreThere)
{
    openInList_();
    EXPECT_TRUE(driver_.shows("Hide", menuName));
    EXPECT_TRUE(driver_.shows("Isolate", menuName));
    EXPECT_FALSE(driver_.shows("Undo", menuName));
    EXPECT_FALSE(driver_.shows("Rename", menuName));
}

TEST_F(SceneContextMenuTests, OffersNothingThatADeploymentHides)
{
    RibbonConfig config;
    config.hiddenItems = {"Hide"};
    menu_->applyConfig(config);
    driver_.settle();
    openInList_();
    EXPECT_FALSE(driver_.shows("Hide", menuName));
    EXPECT_TRUE(driver_.shows("Isolate", menuName));
}

TEST_F(SceneContextMenuTests, PressesTheItemAndCloses)
{
    openInList_();
    driver_.press("Hide", menuName);
    EXPECT_EQ(hide_->presses, 1);
    EXPECT_FALSE(isOpen_());
}

TEST_F(SceneContextMenuTests, DoesNotPressAnItemThatIsNotAvailable)
{
    hide_->reason = "It is hidden already.";
    openInList_();
    EXPECT_EQ(driver_.obstacle("Hide", menuName), "\"Hide\" in \"Scene Menu\" is disabled");
    driver_.hover("Hide", menuName);
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows("It is hidden already."); }));
}

TEST_F(SceneContextMenuTests, ShowsTheShortcutsOfItsItems)
{
    menu_->setShortcut({GLFW_KEY_H, 0}, "Hide", ShortcutCategory::Objects);
    openInList_();
    EXPECT_EQ(UiTree::instance().find("H", menuName).size(), 1U);
}

TEST_F(SceneContextMenuTests, TellsItsFirstFrameInTheListOnce)
{
    int told = 0;
    menu_->setSceneContextCallback([&] { ++told; });
    openInList_();
    driver_.moveTo({300, 300});
    EXPECT_EQ(told, 1);
}

TEST_F(SceneContextMenuTests, OpensOverTheSceneForTheObjectThatIsClicked)
{
    int told = 0;
    menu_->setSceneContextCallback([&] { ++told; });
    driver_.click(middleOfTheScene_(), GLFW_MOUSE_BUTTON_RIGHT);
    EXPECT_TRUE(driver_.waitFor(isOpen_));
    EXPECT_TRUE(viewer_.scene().children().front()->isSelected());
    EXPECT_EQ(told, 0);
}

TEST_F(SceneContextMenuTests, DoesNotOpenAfterADragThatZooms)
{
    const Vector2f from = middleOfTheScene_();
    driver_.drag(from, from + Vector2f(0, 60), GLFW_MOUSE_BUTTON_RIGHT);
    EXPECT_FALSE(isOpen_());
    EXPECT_FALSE(viewer_.scene().children().front()->isSelected());
}

TEST_F(SceneContextMenuTests, ClosesWithEscapeAndWithAPressElsewhere)
{
    openInList_();
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(isOpen_());
    openInList_();
    driver_.click(middleOfTheScene_());
    EXPECT_FALSE(isOpen_());
}

TEST_F(SceneContextMenuTests, StaysInsideTheWindow)
{
    driver_.click({995, 660}, GLFW_MOUSE_BUTTON_RIGHT);
    ASSERT_TRUE(driver_.waitFor(isOpen_));
    driver_.settle();
    const UiItem window = *driver_.find(menuName);
    EXPECT_LE(window.max.x(), 1000);
    EXPECT_LE(window.max.y(), 700);
}

} // namespace VX
