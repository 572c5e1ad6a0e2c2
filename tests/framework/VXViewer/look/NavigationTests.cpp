#include "GalleryMenu.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/UI.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <string>

namespace VX
{

/// The gallery and a window beside it.
class TwoWindowMenu : public VX::Test::GalleryMenu
{
public:
    void draw() override
    {
        GalleryMenu::draw();
        ImGui::SetNextWindowPos({750, 100});
        UI::beginWindow("Other", ImGuiWindowFlags_AlwaysAutoResize);
        if (UI::button("Elsewhere"))
            pressed.emplace_back("Elsewhere");
        UI::endWindow();
    }
};

class NavigationTests : public testing::Test
{
protected:
    /// The label of what has the focus ring; empty: nothing has.
    static std::string focused_()
    {
        const std::vector<UiItem>& items = UiTree::instance().items();
        const auto found = std::find_if(items.begin(), items.end(), [](const UiItem& item) { return item.focused; });
        return found != items.end() ? found->label : "";
    }

    /// The window with the focus is then the gallery.
    void focusGallery_()
    {
        driver_.press("Undo");
        menu_->pressed.clear();
    }

    std::shared_ptr<TwoWindowMenu> menu_ = std::make_shared<TwoWindowMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(NavigationTests, ShowsNoRingBeforeAKeyAsksForIt)
{
    EXPECT_EQ(focused_(), "");
    driver_.press("Save As");
    EXPECT_EQ(focused_(), "");
}

TEST_F(NavigationTests, TabGoesThroughTheWidgetsInTheirOrder)
{
    focusGallery_();
    std::vector<std::string> seen;
    for (int i = 0; i < 7; ++i)
    {
        driver_.key(GLFW_KEY_TAB);
        seen.push_back(focused_());
    }
    EXPECT_THAT(seen, testing::ElementsAre("Open", "Save As", "Front", "Perspective", "Undo", "Visible", "Cube"));
    driver_.key(GLFW_KEY_TAB, GLFW_MOD_SHIFT);
    EXPECT_EQ(focused_(), "Visible");
}

TEST_F(NavigationTests, SpaceAndEnterPressWhatHasTheFocus)
{
    focusGallery_();
    driver_.key(GLFW_KEY_TAB);
    driver_.key(GLFW_KEY_SPACE);
    driver_.key(GLFW_KEY_TAB);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_THAT(menu_->pressed, testing::ElementsAre("Open", "Save As"));
}

TEST_F(NavigationTests, ArrowsMoveInTheirDirection)
{
    focusGallery_();
    driver_.key(GLFW_KEY_TAB);
    driver_.key(GLFW_KEY_RIGHT);
    EXPECT_EQ(focused_(), "Save As");
    driver_.key(GLFW_KEY_LEFT);
    driver_.key(GLFW_KEY_DOWN);
    EXPECT_EQ(focused_(), "Undo");
}

TEST_F(NavigationTests, EscapeTakesTheRingAway)
{
    focusGallery_();
    driver_.key(GLFW_KEY_TAB);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_EQ(focused_(), "");
}

TEST_F(NavigationTests, F6GoesToTheNextWindow)
{
    focusGallery_();
    driver_.key(GLFW_KEY_F6);
    EXPECT_EQ(focused_(), "Elsewhere");
    driver_.key(GLFW_KEY_SPACE);
    EXPECT_THAT(menu_->pressed, testing::ElementsAre("Elsewhere"));
    driver_.key(GLFW_KEY_F6);
    EXPECT_EQ(focused_(), "Open");
}

TEST_F(NavigationTests, TabOpensATextFieldAndLeavesIt)
{
    driver_.press("Angle", "Gallery");
    driver_.press("Name");
    driver_.key(GLFW_KEY_TAB);
    driver_.type("new");
    EXPECT_EQ(menu_->password, "new");
    driver_.key(GLFW_KEY_TAB);
    driver_.type("123");
    EXPECT_EQ(menu_->code, "123");
}

TEST_F(NavigationTests, KeysBelongToOthersWhileTheRingIsNotToBeSeen)
{
    focusGallery_();
    driver_.key(GLFW_KEY_RIGHT);
    driver_.key(GLFW_KEY_SPACE);
    EXPECT_EQ(focused_(), "");
    EXPECT_THAT(menu_->pressed, testing::IsEmpty());
}

TEST_F(NavigationTests, AChoiceOfAComboIsTakenWithTheKeyboard)
{
    driver_.press("Shape");
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_NE(menu_->shape, 0);
    EXPECT_FALSE(driver_.shows("Cylinder", "##Combo_00"));
}

} // namespace VX
