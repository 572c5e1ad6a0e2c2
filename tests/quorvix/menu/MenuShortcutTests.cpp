#include "MenuFixture.h"

#include <VXViewer/ShortcutManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <tuple>

namespace VX
{

namespace
{

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;

/// Name, key, modifiers and category of a shortcut.
using Entry = std::tuple<std::string, int, int, ShortcutCategory>;

constexpr int ctrl = GLFW_MOD_CONTROL;
constexpr int ctrlShift = GLFW_MOD_CONTROL | GLFW_MOD_SHIFT;

const Entry undo{"Undo", 90, ctrl, ShortcutCategory::Edit};
const Entry redo{"Redo", 90, ctrlShift, ShortcutCategory::Edit};
const Entry expandFaces{"Expand Selected Faces", 61, ctrl, ShortcutCategory::Selection};
const Entry shrinkFaces{"Shrink selection", 45, ctrl, ShortcutCategory::Selection};
const Entry selectPrimitives{"Select Primitives", 87, ctrl, ShortcutCategory::Selection};
const Entry clearSelections{"Clear Selections", 88, ctrl, ShortcutCategory::Selection};
const Entry deleteSelection{"Delete Selection", 261, 0, ShortcutCategory::Edit};

class MenuShortcutTest : public VX::Test::MenuFixture
{
protected:
    [[nodiscard]] std::vector<Entry> shortcuts_() const
    {
        std::vector<Entry> all;
        for (const Shortcut& shortcut : menu_->shortcutManager()->list())
            all.emplace_back(shortcut.name, shortcut.key.key, shortcut.key.mods, shortcut.category);
        return all;
    }

    void allow_(bool base, bool history)
    {
        QuorvixMenuUIConfig config;
        config.allowBaseShortcuts = base;
        config.allowHistoryShortcuts = history;
        menu_->setQuorvixMenuConfig(config);
    }
};

TEST_F(MenuShortcutTest, areAllThereAtFirst)
{
    start_();
    EXPECT_THAT(shortcuts_(), IsSupersetOf({undo, redo, expandFaces, shrinkFaces, selectPrimitives, clearSelections,
                                            deleteSelection}));
}

TEST_F(MenuShortcutTest, comeAfterTheFrameworksInTheirOrder)
{
    start_();
    allow_(true, false);
    auto own = shortcuts_();
    std::erase_if(own, [](const Entry& entry) { return std::get<3>(entry) != ShortcutCategory::Selection; });
    ASSERT_GE(own.size(), 4U);
    own.erase(own.begin(), own.end() - 4);
    EXPECT_THAT(own, ElementsAre(expandFaces, shrinkFaces, selectPrimitives, clearSelections));
}

TEST_F(MenuShortcutTest, areThoseOfTheHistoryAloneWithoutTheBaseOnes)
{
    start_();
    allow_(false, true);
    EXPECT_THAT(shortcuts_(), ElementsAre(undo, redo));
}

TEST_F(MenuShortcutTest, areNoneWhenBothKindsAreSwitchedOff)
{
    start_();
    allow_(false, false);
    ASSERT_TRUE(menu_->shortcutManager());
    EXPECT_THAT(shortcuts_(), IsEmpty());
}

TEST_F(MenuShortcutTest, comeBackWhenTheyAreSwitchedOnAgain)
{
    start_();
    const auto before = shortcuts_();
    allow_(false, false);
    allow_(true, true);
    EXPECT_EQ(shortcuts_(), before);
}

TEST_F(MenuShortcutTest, areStoredSwitchesBeforeThereIsAManager)
{
    allow_(false, false);
    EXPECT_FALSE(menu_->shortcutManager());
    start_();
    ASSERT_TRUE(menu_->shortcutManager());
    EXPECT_THAT(shortcuts_(), IsEmpty());
}

TEST_F(MenuShortcutTest, pressTheItemOfTheirName)
{
    const auto item = addItem_("Undo");
    start_();
    driver_->key(GLFW_KEY_Z, ctrl);
    EXPECT_EQ(item->presses, 1);
    EXPECT_THAT(reported_(), Contains("Tool Activated: Undo"));
}

TEST_F(MenuShortcutTest, doNothingWhileThereIsNoSuchItem)
{
    start_();
    driver_->key(GLFW_KEY_W, ctrl);
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuShortcutTest, doNothingWhileTheItemIsNotAvailable)
{
    const auto item = addItem_("Select Primitives");
    item->reason = "There is nothing to select.";
    start_();
    driver_->key(GLFW_KEY_W, ctrl);
    EXPECT_EQ(item->presses, 0);
    EXPECT_THAT(reported_(), Not(Contains("Tool Activated: Select Primitives")));
}

} // namespace

} // namespace VX
