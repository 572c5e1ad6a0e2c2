#include "MenuSceneFixture.h"

#include <VXMesh/ObjectFile.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/ShortcutManager.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

class ImGuiMenuTests : public VX::Test::MenuSceneFixture
{
protected:
    [[nodiscard]] std::vector<std::string> selectedNames_() const
    {
        std::vector<std::string> names;
        for (const auto& object : selectedObjects(viewer_.scene()))
            names.push_back(object->name());
        return names;
    }
};

TEST_F(ImGuiMenuTests, SaysWhatToDoWhileTheSceneIsEmpty)
{
    EXPECT_TRUE(driver_.shows("Open a file or drop it here"));
    addBoxes_();
    EXPECT_FALSE(driver_.shows("Open a file or drop it here"));
}

TEST_F(ImGuiMenuTests, OpensTheFileThatIsTypedIntoTheDialog)
{
    const VX::Test::TempDir folder;
    const std::filesystem::path file = folder.write("part.stl", VX::Test::triangleStl());
    menu_->chooseFilesToOpen();
    driver_.settle();
    ASSERT_TRUE(driver_.shows("Open Files", "File Dialog"));
    driver_.type(file.string());
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows("part"); }));
    EXPECT_FALSE(UiTree::instance().hasWindow("File Dialog"));
}

TEST_F(ImGuiMenuTests, OpensTheDialogWithCtrlOAndClosesItWithEscape)
{
    driver_.key(GLFW_KEY_O, GLFW_MOD_CONTROL);
    EXPECT_TRUE(UiTree::instance().hasWindow("File Dialog"));
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow("File Dialog"));
}

TEST_F(ImGuiMenuTests, SavesTheSceneWithTheChosenFormat)
{
    const VX::Test::TempDir folder;
    addBoxes_();
    driver_.key(GLFW_KEY_S, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    ASSERT_TRUE(UiTree::instance().hasWindow("File Dialog"));
    driver_.type((folder.path() / "scene.stl").string());
    driver_.press("Save", "File Dialog");
    ASSERT_TRUE(driver_.waitFor([] { return !ProgressBar::isOrdered(); }));
    const auto loaded = loadObjectFromFile(folder.path() / "scene.stl", {});
    EXPECT_TRUE(loaded) << loaded.error();
}

TEST_F(ImGuiMenuTests, SavesWhatTheSceneHeldAtThatMoment)
{
    const VX::Test::TempDir folder;
    addBoxes_();
    driver_.key(GLFW_KEY_S, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    driver_.type((folder.path() / "scene.vxu").string());
    driver_.press("Save", "File Dialog");
    while (!viewer_.scene().children().empty())
        viewer_.scene().removeChild(*viewer_.scene().children().front());
    ASSERT_TRUE(driver_.waitFor([] { return !ProgressBar::isOrdered(); }));
    const auto loaded = loadObjectFromFile(folder.path() / "scene.vxu", {});
    ASSERT_TRUE(loaded) << loaded.error();
    std::size_t meshes = 0;
    for (const auto& object : loaded->objects)
        visitObjects(*object, [&](const Object& each) { meshes += each.typeName() == "ObjectMesh" ? 1 : 0; });
    EXPECT_EQ(meshes, 3U);
}

TEST_F(ImGuiMenuTests, TellsWhenAFileCannotBeSaved)
{
    addBoxes_();
    driver_.key(GLFW_KEY_S, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    driver_.type("/nonexistent/scene.stl");
    driver_.press("Save", "File Dialog");
    EXPECT_TRUE(driver_.waitFor([] { return UiTree::instance().hasWindow("Error Modal"); }));
}

TEST_F(ImGuiMenuTests, SelectsOneObjectWithAPressOfItsRow)
{
    addBoxes_();
    driver_.press("One", "Scene");
    driver_.press("Two", "Scene");
    EXPECT_EQ(selectedNames_(), (std::vector<std::string>{"Two"}));
    EXPECT_EQ(driver_.find("Two", "Scene")->value, "selected");
}

TEST_F(ImGuiMenuTests, AddsToTheSelectionWithControlAndSelectsARangeWithShift)
{
    addBoxes_();
    driver_.press("One", "Scene");
    driver_.press("Three", "Scene", GLFW_MOD_CONTROL);
    EXPECT_EQ(selectedNames_(), (std::vector<std::string>{"One", "Three"}));
    driver_.press("Three", "Scene", GLFW_MOD_CONTROL);
    EXPECT_EQ(selectedNames_(), (std::vector<std::string>{"One"}));
    driver_.press("One", "Scene");
    driver_.press("Three", "Scene", GLFW_MOD_SHIFT);
    EXPECT_EQ(selectedNames_(), (std::vector<std::string>{"One", "Two", "Three"}));
}

TEST_F(ImGuiMenuTests, HidesAnObjectWithTheEyeOfItsRow)
{
    addBoxes_();
    EXPECT_EQ(driver_.find("Show Two")->value, "on");
    driver_.press("Show Two");
    EXPECT_FALSE(viewer_.scene().children()[1]->isVisible());
    EXPECT_EQ(driver_.find("Show Two")->value, "off");
    driver_.press("Show Two");
    EXPECT_TRUE(viewer_.scene().children()[1]->isVisible());
}

TEST_F(ImGuiMenuTests, FoldsAndUnfoldsAGroup)
{
    auto group = std::make_shared<Object>();
    group->setName("Group");
    group->addChild(VX::Test::makeBox("Inner"));
    viewer_.scene().addChild(group);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Inner", "Scene"));
    driver_.press("Fold Group");
    EXPECT_FALSE(driver_.shows("Inner", "Scene"));
    driver_.press("Unfold Group");
    EXPECT_TRUE(driver_.shows("Inner", "Scene"));
}

TEST_F(ImGuiMenuTests, UnfoldsTheGroupOfAnObjectThatIsSelectedElsewhere)
{
    auto group = std::make_shared<Object>();
    group->setName("Group");
    group->addChild(VX::Test::makeBox("Inner"));
    viewer_.scene().addChild(group);
    driver_.settle();
    driver_.press("Fold Group");
    group->children().front()->setSelected(true);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Inner", "Scene"));
}

TEST_F(ImGuiMenuTests, DeletesWhatIsSelected)
{
    addBoxes_();
    driver_.press("Two", "Scene");
    driver_.key(GLFW_KEY_DELETE);
    EXPECT_EQ(viewer_.scene().children().size(), 2U);
    EXPECT_FALSE(driver_.shows("Two", "Scene"));
}

TEST_F(ImGuiMenuTests, SelectsAllWithCtrlAAndNothingWithEscape)
{
    addBoxes_();
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    EXPECT_EQ(selectedNames_().size(), 3U);
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_TRUE(selectedNames_().empty());
}

TEST_F(ImGuiMenuTests, ShowsTheFactsOfWhatIsSelected)
{
    viewer_.scene().addChild(VX::Test::makeBox("Box", {1, 2, 3}, {11, 22, 33}));
    viewer_.scene().addChild(VX::Test::makeBox("Other"));
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Whole scene", "Information"));
    EXPECT_TRUE(driver_.shows("24", "Information"));
    driver_.press("Box", "Scene");
    EXPECT_TRUE(driver_.shows("Box", "Information"));
    EXPECT_TRUE(driver_.shows("Mesh", "Information"));
    EXPECT_TRUE(driver_.shows("12", "Information"));
    EXPECT_TRUE(driver_.shows("10 \u00D7 20 \u00D7 30", "Information"));
    EXPECT_TRUE(driver_.shows("1,  2,  3", "Information"));
    EXPECT_TRUE(driver_.shows("11,  22,  33", "Information"));
}

TEST_F(ImGuiMenuTests, CountsTheSceneInTheStatusLine)
{
    addBoxes_();
    EXPECT_TRUE(driver_.shows("3 objects   \u00B7   36 triangles", "Status Line"));
}

TEST_F(ImGuiMenuTests, GivesTheSceneTheWholeWidthOfASmallWindow)
{
    session_.window().setFramebufferSize({400, 400});
    driver_.settle();
    EXPECT_FLOAT_EQ(menu_->leftPanelWidth(), 0);
    EXPECT_EQ(viewer_.view().area().width, 400);
    EXPECT_FALSE(UiTree::instance().hasWindow("Scene"));
}

TEST_F(ImGuiMenuTests, GrowsWithTheContentScale)
{
    session_.window().setFramebufferSize({2000, 1400});
    addBoxes_();
    const UiItem small = *driver_.find("Show One", "Scene");
    session_.window().setContentScale(2);
    driver_.settle();
    const UiItem large = *driver_.find("Show One", "Scene");
    EXPECT_NEAR((large.max - large.min).y(), 2 * (small.max - small.min).y(), 1);
    EXPECT_NEAR((large.max - large.min).x(), 2 * (small.max - small.min).x(), 4);
}

TEST_F(ImGuiMenuTests, EverythingThatCanBePressedIsLargeEnough)
{
    addBoxes_();
    for (const UiItem& item : UiTree::instance().items())
    {
        const bool pressable = item.kind != UiKind::Window && item.kind != UiKind::Text;
        if (pressable)
        {
            EXPECT_GE((item.max - item.min).minCoeff(), 28) << item.label;
        }
    }
}

TEST_F(ImGuiMenuTests, HasNoShortcutsAfterItsShutdown)
{
    EXPECT_NE(menu_->shortcutManager(), nullptr);
    viewer_.stopUi();
    EXPECT_EQ(menu_->shortcutManager(), nullptr);
    EXPECT_FALSE(menu_->handleKey(KeyEvent{GLFW_KEY_O, 0, KeyEvent::Action::Press, GLFW_MOD_CONTROL}));
}

} // namespace VX
