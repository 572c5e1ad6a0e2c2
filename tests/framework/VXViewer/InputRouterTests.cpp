#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// A menu with a text field besides.
class MenuWithTextField : public ImGuiMenu
{
public:
    void drawAdditionalWindows() override
    {
        UI::beginWindow("Field Window", ImGuiWindowFlags_AlwaysAutoResize);
        UI::inputText("Field", text);
        UI::endWindow();
        ImGuiMenu::drawAdditionalWindows();
    }

    std::string text;
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

TEST_F(InputRouterTests, OpensDroppedFiles)
{
    const VX::Test::TempDir folder;
    session_.window().inject(DropEvent{{folder.write("dropped.stl", VX::Test::triangleStl())}, middleOfScene_()});
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.scene().children().size() == 2; }));
}

} // namespace VX
