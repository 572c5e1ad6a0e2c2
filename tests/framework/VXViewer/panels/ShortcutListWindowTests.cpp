#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ShortcutListWindow.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace VX
{

namespace
{

class ListingMenu : public ImGuiMenu
{
public:
    void drawAdditionalWindows() override
    {
        window.draw(*shortcutManager());
        ImGuiMenu::drawAdditionalWindows();
    }

    ShortcutListWindow window;

protected:
    void setupShortcuts_() override
    {
        ImGuiMenu::setupShortcuts_();
        ShortcutManager& shortcuts = *shortcutManager();
        shortcuts.clear();
        shortcuts.set({{GLFW_KEY_O, GLFW_MOD_CONTROL}, "Open files", ShortcutCategory::Scene, [this] { ++opened; }});
        shortcuts.set({{GLFW_KEY_X, GLFW_MOD_CONTROL}, "Clear Selections", ShortcutCategory::Selection, [] {}});
        shortcuts.set({{GLFW_KEY_DELETE, 0}, "Delete Selection", ShortcutCategory::Edit, [] {}});
    }

public:
    int opened = 0;
};

constexpr const char* name = "Shortcuts";

} // namespace

class ShortcutListWindowTests : public testing::Test
{
protected:
    void open_()
    {
        menu_->window.open();
        session_.viewer().incrementForceRedrawFrames(3);
        driver_.settle();
    }

    std::shared_ptr<ListingMenu> menu_ = std::make_shared<ListingMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(ShortcutListWindowTests, ListsNamesAndKeysUnderTheirCategories)
{
    open_();
    float above = 0;
    for (const char* label : {"Edit", "Delete Selection", "Scene", "Open files", "Selection ", "Clear Selections"})
    {
        const std::optional<UiItem> item = driver_.find(label, name);
        ASSERT_TRUE(item) << label;
        EXPECT_GT(item->min.y(), above) << label;
        above = item->min.y();
    }
    EXPECT_TRUE(driver_.shows("Ctrl+O", name));
}

TEST_F(ShortcutListWindowTests, NamesTheSelectionCategoryWithItsTrailingBlank)
{
    open_();
    EXPECT_EQ(UiTree::instance().find("Selection ", name).size(), 1U);
}

TEST_F(ShortcutListWindowTests, LeavesOutCategoriesWithoutShortcuts)
{
    menu_->shortcutManager()->clear();
    menu_->shortcutManager()->set({{GLFW_KEY_Z, GLFW_MOD_CONTROL}, "Undo", ShortcutCategory::Edit, [] {}});
    open_();
    EXPECT_TRUE(driver_.shows("Edit", name));
    EXPECT_FALSE(driver_.shows("Scene", name));
}

TEST_F(ShortcutListWindowTests, FiltersByNameAndByKey)
{
    open_();
    driver_.type("open");
    EXPECT_TRUE(driver_.shows("Open files", name));
    EXPECT_FALSE(driver_.shows("Clear Selections", name));
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    driver_.type("ctrl+x");
    EXPECT_TRUE(driver_.shows("Clear Selections", name));
    EXPECT_FALSE(driver_.shows("Open files", name));
    driver_.type("qqq");
    EXPECT_TRUE(driver_.shows("Nothing found", name));
}

TEST_F(ShortcutListWindowTests, FiresNoShortcutWhileItIsOpen)
{
    driver_.key(GLFW_KEY_O, GLFW_MOD_CONTROL);
    ASSERT_EQ(menu_->opened, 1);
    open_();
    driver_.key(GLFW_KEY_O, GLFW_MOD_CONTROL);
    EXPECT_EQ(menu_->opened, 1);
}

TEST_F(ShortcutListWindowTests, ClosesWithItsButtonAndWithEscape)
{
    open_();
    driver_.press("Close", name);
    EXPECT_FALSE(UiTree::instance().hasWindow(name));
    open_();
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(menu_->window.isOpen());
}

TEST_F(ShortcutListWindowTests, StandsAsideForAMessage)
{
    open_();
    menu_->showModalMessage("Bad", NotificationType::Error);
    driver_.settle();
    EXPECT_FALSE(UiTree::instance().hasWindow(name));
    driver_.press("OK", "Error Modal");
    EXPECT_TRUE(UiTree::instance().hasWindow(name));
}

TEST_F(ShortcutListWindowTests, StaysInsideASmallWindow)
{
    session_.window().setFramebufferSize({300, 260});
    open_();
    const auto& items = UiTree::instance().items();
    const auto window = std::find_if(items.begin(), items.end(), [](const UiItem& item)
                                     { return item.kind == UiKind::Window && item.label == name; });
    ASSERT_NE(window, items.end());
    EXPECT_GE(window->min.minCoeff(), 0);
    EXPECT_LE(window->max.x(), 300);
    EXPECT_LE(window->max.y(), 260);
}

} // namespace VX
