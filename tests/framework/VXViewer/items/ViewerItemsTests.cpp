#include "ItemsFixture.h"

#include <VXMesh/Json.h>
#include <VXViewer/SceneEdit.h>

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <stdexcept>

namespace VX
{

using testing::IsEmpty;
using testing::Not;

class ViewerItemsTests : public VX::Test::ItemsFixture
{
protected:
    /// The names of all items that the tabs show.
    static std::set<std::string> placed_()
    {
        std::set<std::string> names;
        for (const RibbonTab& tab : RibbonSchemaHolder::schema().tabs)
        {
            for (const RibbonGroup& group : tab.groups)
            {
                for (const RibbonEntry& entry : group.entries)
                {
                    names.insert(entry.dropDown.begin(), entry.dropDown.end());
                    if (entry.dropDown.empty())
                        names.insert(entry.item);
                }
            }
        }
        return names;
    }
};

/// Changes the scene and fails.
template <typename Exception>
class FailingItem : public RibbonMenuItem
{
public:
    FailingItem(Viewer& viewer, const Exception& exception)
        : RibbonMenuItem("Failing")
        , viewer_(viewer)
        , exception_(exception)
    {
    }

    void press() override
    {
        SceneEdit edit(*viewer_.getGlobalHistoryStore(), "Step");
        edit.touch(viewer_.sceneRoot());
        viewer_.scene().setChildren({});
        throw exception_;
    }

private:
    Viewer& viewer_;
    Exception exception_;
};

TEST_F(ViewerItemsTests, AnItemWithoutEnoughMemoryLeavesTheSceneAndSaysSo)
{
    RibbonSchemaHolder::addItem(std::make_shared<FailingItem<std::bad_alloc>>(viewer_, std::bad_alloc()));
    menu_->pressItem("Failing");
    driver_.settle();
    EXPECT_TRUE(driver_.shows("There is not enough memory for \"Failing\". The scene is as it was."));
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(ViewerItemsTests, AnItemThatFailsLeavesTheSceneAndSaysWhatHappened)
{
    RibbonSchemaHolder::addItem(
        std::make_shared<FailingItem<std::runtime_error>>(viewer_, std::runtime_error("the wheel is broken")));
    menu_->pressItem("Failing");
    driver_.settle();
    EXPECT_TRUE(driver_.shows("\"Failing\" has failed: the wheel is broken. The scene is as it was."));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(ViewerItemsTests, EveryItemHasACaptionATooltipAndAnIcon)
{
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
    {
        EXPECT_THAT(info.caption, Not(IsEmpty())) << name;
        EXPECT_THAT(info.tooltip, Not(IsEmpty())) << name;
        const std::filesystem::path icon =
            std::filesystem::path(QX_SOURCE_DIR "/resources/icons/tabler") / (info.icon + ".svg");
        EXPECT_TRUE(std::filesystem::exists(icon)) << name << ": " << info.icon;
    }
}

TEST_F(ViewerItemsTests, EveryItemOfTheLayoutIsThere)
{
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
        EXPECT_TRUE(info.item) << name;
    for (const std::string& name : placed_())
        EXPECT_TRUE(RibbonSchemaHolder::find(name)) << name;
}

TEST_F(ViewerItemsTests, EveryItemHasAPlaceInATab)
{
    const std::set<std::string> placed = placed_();
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
        EXPECT_TRUE(placed.contains(name)) << name;
}

TEST_F(ViewerItemsTests, TheItemsThatShortcutsNameAreThere)
{
    for (const char* name : {"Undo", "Redo", "Expand Selected Faces", "Shrink selection", "Select Primitives",
                             "Clear Selections", "Delete Selection", "Create Simple Objects", "Draw Scale Indicator",
                             "Show_Hide Global Basis", "Toggle Projection Mode", "Viewer settings"})
        EXPECT_TRUE(RibbonSchemaHolder::find(name)) << name;
}

TEST_F(ViewerItemsTests, UndoAndRedoArePressedInTheRibbon)
{
    a_->setSelected(true);
    EXPECT_TRUE(menu_->pressItem("Hide"));
    driver_.settle();
    driver_.press("Undo", "Ribbon");
    EXPECT_TRUE(a_->isVisible());
    driver_.settle();
    driver_.press("Redo", "Ribbon");
    EXPECT_FALSE(a_->isVisible());
}

TEST_F(ViewerItemsTests, OpenAsksForFiles)
{
    EXPECT_TRUE(menu_->pressItem("Open files"));
    driver_.settle();
    EXPECT_TRUE(UiTree::instance().hasWindow("File Dialog"));
}

} // namespace VX
