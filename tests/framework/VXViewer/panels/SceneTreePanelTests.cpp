#include "tests/framework/VXViewer/MenuSceneFixture.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Selection.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace VX
{

class SceneTreePanelTests : public VX::Test::MenuSceneFixture
{
protected:
    SceneTreePanelTests() { addBoxes_(); }

    [[nodiscard]] Object& object_(std::size_t index) const { return *viewer_.scene().children()[index]; }

    [[nodiscard]] bool isRenaming_() const { return driver_.shows("Name", "Scene"); }

    void search_(const char* text)
    {
        const auto& items = UiTree::instance().items();
        const auto field = std::find_if(items.begin(), items.end(), [](const UiItem& item)
                                        { return item.kind == UiKind::TextInput && item.window == "Scene"; });
        ASSERT_NE(field, items.end());
        driver_.click((field->min + field->max) / 2);
        driver_.type(text);
    }
};

TEST_F(SceneTreePanelTests, ShowsOnlyWhatTheSearchFinds)
{
    search_("TW");
    EXPECT_FALSE(driver_.shows("One", "Scene"));
    EXPECT_TRUE(driver_.shows("Two", "Scene"));
}

TEST_F(SceneTreePanelTests, KeepsTheGroupsOfWhatTheSearchFinds)
{
    auto group = std::make_shared<Object>();
    group->setName("Group");
    group->addChild(VX::Test::makeBox("Inner"));
    viewer_.scene().addChild(group);
    driver_.settle();
    driver_.press("Fold Group");
    search_("inner");
    EXPECT_TRUE(driver_.shows("Group", "Scene"));
    EXPECT_TRUE(driver_.shows("Inner", "Scene"));
    driver_.press("Clear the search", "Scene");
    EXPECT_TRUE(driver_.shows("One", "Scene"));
    EXPECT_FALSE(driver_.shows("Inner", "Scene"));
}

TEST_F(SceneTreePanelTests, RenamesInPlaceAfterADoubleClick)
{
    driver_.doublePress("Two", "Scene");
    ASSERT_TRUE(isRenaming_());
    driver_.type("Second");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_FALSE(isRenaming_());
    EXPECT_EQ(object_(1).name(), "Second");
}

TEST_F(SceneTreePanelTests, RenamesTheSelectedObjectWithF2)
{
    driver_.press("One", "Scene");
    driver_.key(GLFW_KEY_F2);
    driver_.type("First");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(object_(0).name(), "First");
}

TEST_F(SceneTreePanelTests, RenamesWithF2WhatWasSelectedElsewhere)
{
    object_(1).setSelected(true);
    driver_.settle();
    driver_.key(GLFW_KEY_F2);
    driver_.type("Second");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(object_(1).name(), "Second");
}

TEST_F(SceneTreePanelTests, KeepsTheOldNameAfterEscape)
{
    driver_.doublePress("Two", "Scene");
    driver_.type("Second");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(isRenaming_());
    EXPECT_EQ(object_(1).name(), "Two");
}

TEST_F(SceneTreePanelTests, KeepsTheNewNameWhenThePressIsElsewhere)
{
    driver_.doublePress("Two", "Scene");
    driver_.type("Second");
    driver_.press("One", "Scene");
    EXPECT_EQ(object_(1).name(), "Second");
}

TEST_F(SceneTreePanelTests, KeepsTheOldNameInPlaceOfBlanks)
{
    driver_.doublePress("Two", "Scene");
    driver_.type("   ");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(object_(1).name(), "Two");
}

TEST_F(SceneTreePanelTests, UndoesARenameInOneStep)
{
    driver_.doublePress("Two", "Scene");
    driver_.type("Second");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(viewer_.getGlobalHistoryStore()->lastActionName(), "Rename");
    viewer_.getGlobalHistoryStore()->undo();
    EXPECT_EQ(object_(1).name(), "Two");
}

TEST_F(SceneTreePanelTests, DoesNotDeleteWhatIsRenamedWithTheDeleteKey)
{
    driver_.doublePress("Two", "Scene");
    driver_.key(GLFW_KEY_DELETE);
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(SceneTreePanelTests, UndoesTheEye)
{
    driver_.press("Show Two");
    EXPECT_FALSE(object_(1).isVisible());
    EXPECT_EQ(viewer_.getGlobalHistoryStore()->lastActionName(), "Hide");
    viewer_.getGlobalHistoryStore()->undo();
    EXPECT_TRUE(object_(1).isVisible());
}

TEST_F(SceneTreePanelTests, AddsARangeToTheSelectionWithControlAndShift)
{
    driver_.press("One", "Scene");
    driver_.press("Two", "Scene");
    driver_.press("One", "Scene", GLFW_MOD_CONTROL);
    driver_.press("Three", "Scene", GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    EXPECT_EQ(selectedObjects(viewer_.scene()).size(), 3U);
}

TEST_F(SceneTreePanelTests, SelectsWhatARightClickIsFor)
{
    driver_.press("One", "Scene");
    const UiItem row = *driver_.find("Two", "Scene");
    driver_.click((row.min + row.max) / 2, GLFW_MOUSE_BUTTON_RIGHT);
    EXPECT_FALSE(object_(0).isSelected());
    EXPECT_TRUE(object_(1).isSelected());
}

TEST_F(SceneTreePanelTests, KeepsASelectionThatTheRightClickIsWithin)
{
    driver_.press("One", "Scene");
    driver_.press("Two", "Scene", GLFW_MOD_CONTROL);
    const UiItem row = *driver_.find("Two", "Scene");
    driver_.click((row.min + row.max) / 2, GLFW_MOUSE_BUTTON_RIGHT);
    EXPECT_TRUE(object_(0).isSelected());
}

TEST_F(SceneTreePanelTests, DrawsOnlyTheRowsThatAreSeen)
{
    for (int i = 0; i < 100'000; ++i)
    {
        auto object = std::make_shared<Object>();
        object->setName("Object " + std::to_string(i));
        viewer_.scene().addChild(std::move(object));
    }
    driver_.settle();
    EXPECT_LT(UiTree::instance().items().size(), 500U);
    search_("object 99999");
    EXPECT_TRUE(driver_.shows("Object 99999", "Scene"));
}

TEST_F(SceneTreePanelTests, MeasuresTheSelectedMesh)
{
    driver_.press("One", "Scene");
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows("Area", "Information"); }));
    EXPECT_TRUE(driver_.shows("6", "Information"));
    EXPECT_TRUE(driver_.shows("Volume", "Information"));
}

} // namespace VX
