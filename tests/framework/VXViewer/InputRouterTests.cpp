#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerPlugin.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// A menu with a text field besides.
class MenuWithTextField : public RibbonMenu
{
public:
    void drawAdditionalWindows() override
    {
        UI::beginWindow("Field Window", ImGuiWindowFlags_AlwaysAutoResize);
        UI::inputText("Field", text);
        UI::endWindow();
        RibbonMenu::drawAdditionalWindows();
    }

    std::string text;
};

/// Takes what it is told to take of the input over the scene.
class TakingPlugin : public ViewerPlugin
{
public:
    bool handleSceneInput(const InputEvent& event) override
    {
        moves += std::holds_alternative<MouseMoveEvent>(event) ? 1 : 0;
        if (const auto* button = std::get_if<MouseButtonEvent>(&event))
            (button->pressed ? presses : releases) += 1;
        keys += std::holds_alternative<KeyEvent>(event) ? 1 : 0;
        focusLosses += std::holds_alternative<FocusEvent>(event) ? 1 : 0;
        return takes;
    }

    bool takes = true;
    int moves = 0;
    int presses = 0;
    int releases = 0;
    int keys = 0;
    int focusLosses = 0;
};

} // namespace

class InputRouterTests : public testing::Test
{
protected:
    InputRouterTests()
    {
        viewer_.scene().addChild(VX::Test::makeBox("Box"));
        viewer_.view().fitAll(false);
        driver_.settle();
    }

    [[nodiscard]] Vector2f middleOfScene_() const
    {
        const PixelRect& area = viewer_.view().area();
        return {static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                static_cast<float>(area.y) + static_cast<float>(area.height) / 2};
    }

    std::shared_ptr<MenuWithTextField> menu_ = std::make_shared<MenuWithTextField>();
    VX::Test::ViewerSession session_{menu_};
    Viewer& viewer_ = session_.viewer();
    VX::Test::UiDriver driver_{session_};
};

TEST_F(InputRouterTests, TurnsTheSceneByADragThatFallsIntoOneFrame)
{
    const Camera before = viewer_.view().camera();
    const Vector2f from = middleOfScene_();
    const Vector2f to = from + Vector2f(120, 0);
    session_.window().inject(MouseMoveEvent{from, 0});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, from, 1});
    session_.window().inject(MouseMoveEvent{to, 0});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, false, 0, to, 1});
    viewer_.loop().turn(false);
    EXPECT_FALSE(viewer_.view().camera() == before);
}

TEST_F(InputRouterTests, KeepsADragInTheSceneWhenItGoesOverAPanel)
{
    const Camera before = viewer_.view().camera();
    driver_.moveTo(middleOfScene_());
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, middleOfScene_(), 1});
    session_.window().inject(MouseMoveEvent{{20, 300}, 0});
    driver_.settle();
    EXPECT_FALSE(viewer_.view().camera() == before);
    EXPECT_TRUE(viewer_.view().controller().isDragging());
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, false, 0, {20, 300}, 1});
    driver_.settle();
    EXPECT_FALSE(viewer_.view().controller().isDragging());
}

TEST_F(InputRouterTests, LeavesTheSceneAloneWhenADragBeginsOnAPanel)
{
    const Camera before = viewer_.view().camera();
    driver_.drag({20, 300}, middleOfScene_());
    EXPECT_TRUE(viewer_.view().camera() == before);
}

TEST_F(InputRouterTests, ZoomsWithTheWheelOverTheSceneOnly)
{
    const Camera before = viewer_.view().camera();
    driver_.scroll({20, 300}, 1);
    EXPECT_TRUE(viewer_.view().camera() == before);
    driver_.scroll(middleOfScene_(), 1);
    EXPECT_LT(viewer_.view().camera().distance(), before.distance());
}

TEST_F(InputRouterTests, EndsADragWhenTheWindowLosesTheKeyboard)
{
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, middleOfScene_(), 1});
    session_.window().inject(FocusEvent{false});
    driver_.settle();
    EXPECT_FALSE(viewer_.view().controller().isDragging());
}

TEST_F(InputRouterTests, KeepsTheModifierOfAChordThatIsReleasedWithinOneFrame)
{
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_CONTROL, 0, KeyEvent::Action::Press, GLFW_MOD_CONTROL});
    session_.window().inject(KeyEvent{GLFW_KEY_A, 0, KeyEvent::Action::Press, GLFW_MOD_CONTROL});
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_CONTROL, 0, KeyEvent::Action::Release, 0});
    session_.window().inject(KeyEvent{GLFW_KEY_A, 0, KeyEvent::Action::Release, 0});
    viewer_.loop().turn(false);
    EXPECT_EQ(selectedObjects(viewer_.scene()).size(), 1U);
}

TEST_F(InputRouterTests, TypesIntoAFieldThatWasPressedInTheSameFrame)
{
    const std::optional<UiItem> field = driver_.find("Field");
    ASSERT_TRUE(field);
    const Vector2f middle = (field->visibleMin + field->visibleMax) / 2;
    session_.window().inject(MouseMoveEvent{middle, 0});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, middle, 1});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, false, 0, middle, 1});
    for (const char c : std::string("abc"))
        session_.window().inject(CharEvent{static_cast<char32_t>(c)});
    driver_.settle();
    EXPECT_EQ(menu_->text, "abc");
}

TEST_F(InputRouterTests, GivesKeysToATextFieldInsteadOfShortcuts)
{
    viewer_.scene().children().front()->setSelected(true);
    driver_.press("Field");
    driver_.type("xy");
    driver_.key(GLFW_KEY_HOME);
    driver_.key(GLFW_KEY_DELETE);
    EXPECT_EQ(menu_->text, "y");
    EXPECT_EQ(viewer_.scene().children().size(), 1U);
}

TEST_F(InputRouterTests, AsksThePlugInAddedLastFirst)
{
    const auto first = std::make_shared<TakingPlugin>();
    const auto last = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(first);
    viewer_.addPlugin(last);
    driver_.click(middleOfScene_());
    EXPECT_EQ(last->presses, 1);
    EXPECT_EQ(first->presses, 0);
    last->takes = false;
    driver_.click(middleOfScene_());
    EXPECT_EQ(last->presses, 2);
    EXPECT_EQ(first->presses, 1);
}

TEST_F(InputRouterTests, LeavesTheCameraAloneInADragThatAPlugInTook)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(plugin);
    const Camera before = viewer_.view().camera();
    driver_.drag(middleOfScene_(), middleOfScene_() + Vector2f(120, 0));
    EXPECT_TRUE(viewer_.view().camera() == before);
    EXPECT_EQ(plugin->releases, 1);
    viewer_.removePlugin(*plugin);
    driver_.drag(middleOfScene_(), middleOfScene_() + Vector2f(120, 0));
    EXPECT_FALSE(viewer_.view().camera() == before);
}

TEST_F(InputRouterTests, GivesAPlugInAllOfADragThatItTook)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(plugin);
    driver_.drag(middleOfScene_(), {20, 300});
    EXPECT_EQ(plugin->releases, 1);
    EXPECT_GE(plugin->moves, 4);
}

TEST_F(InputRouterTests, LeavesTheSceneAloneWhenAPlugInGoesInItsDrag)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(plugin);
    const Camera before = viewer_.view().camera();
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, true, 0, middleOfScene_(), 1});
    driver_.settle();
    viewer_.removePlugin(*plugin);
    session_.window().inject(MouseMoveEvent{middleOfScene_() + Vector2f(120, 0), 0});
    session_.window().inject(MouseButtonEvent{GLFW_MOUSE_BUTTON_LEFT, false, 0, middleOfScene_(), 1});
    driver_.settle();
    EXPECT_TRUE(viewer_.view().camera() == before);
    driver_.drag(middleOfScene_(), middleOfScene_() + Vector2f(120, 0));
    EXPECT_FALSE(viewer_.view().camera() == before);
}

TEST_F(InputRouterTests, KeepsThePlugInsOutOfADragOfTheCamera)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    plugin->takes = false;
    viewer_.addPlugin(plugin);
    driver_.moveTo(middleOfScene_());
    const int moves = plugin->moves;
    driver_.drag(middleOfScene_(), middleOfScene_() + Vector2f(120, 0));
    EXPECT_EQ(plugin->presses, 1);
    EXPECT_EQ(plugin->releases, 0);
    EXPECT_LE(plugin->moves, moves + 1);
}

TEST_F(InputRouterTests, GivesPlugInsTheKeysThatNoShortcutTakes)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(plugin);
    driver_.key(GLFW_KEY_J);
    EXPECT_GE(plugin->keys, 1);
    const int before = plugin->keys;
    session_.window().inject(KeyEvent{GLFW_KEY_A, 0, KeyEvent::Action::Press, GLFW_MOD_CONTROL});
    driver_.settle();
    EXPECT_EQ(plugin->keys, before);
}

TEST_F(InputRouterTests, TellsPlugInsThatTheWindowLostTheKeyboard)
{
    const auto plugin = std::make_shared<TakingPlugin>();
    viewer_.addPlugin(plugin);
    session_.window().inject(FocusEvent{false});
    driver_.settle();
    EXPECT_EQ(plugin->focusLosses, 1);
}

TEST_F(InputRouterTests, OpensDroppedFiles)
{
    const VX::Test::TempDir folder;
    session_.window().inject(DropEvent{{folder.write("dropped.stl", VX::Test::triangleStl())}, middleOfScene_()});
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.scene().children().size() == 2; }));
}

} // namespace VX
