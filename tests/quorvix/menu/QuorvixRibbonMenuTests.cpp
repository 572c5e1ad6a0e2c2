#include "MenuFixture.h"

#include <VXMesh/Config.h>
#include <VXMesh/Object.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Toolbar.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace VX
{

namespace
{

using ::testing::ElementsAre;

class QuorvixRibbonMenuTest : public VX::Test::MenuFixture
{
protected:
    /// Stores a toolbar of these items as an earlier version of the program did.
    static void saveToolbar_(int version, const std::vector<std::string>& items)
    {
        Json::Value toolbar(Json::objectValue);
        toolbar["version"] = version;
        for (const std::string& item : items)
            toolbar["items"].append(item);
        Config::instance().setJson("toolbar", toolbar);
    }
};

TEST_F(QuorvixRibbonMenuTest, isFoundThroughTheViewer)
{
    getViewerInstance().setMenuPlugin(menu_);
    EXPECT_EQ(QuorvixRibbonMenu::instance(), menu_);
}

TEST_F(QuorvixRibbonMenuTest, isNotFoundWithoutAMenu)
{
    EXPECT_FALSE(QuorvixRibbonMenu::instance());
}

TEST_F(QuorvixRibbonMenuTest, isNotFoundWhereTheMenuIsAnotherOne)
{
    getViewerInstance().setMenuPlugin(std::make_shared<RibbonMenu>());
    EXPECT_FALSE(QuorvixRibbonMenu::instance());
}

TEST_F(QuorvixRibbonMenuTest, hasAllSwitchesOnAtFirst)
{
    EXPECT_EQ(menu_->quorvixMenuConfig(), (QuorvixMenuUIConfig{true, true, true, true, true}));
}

TEST_F(QuorvixRibbonMenuTest, knowsAccounts)
{
    EXPECT_TRUE(menu_->isAuthEnabled());
}

TEST_F(QuorvixRibbonMenuTest, renamesTheItemsOfAToolbarOfVersionOne)
{
    saveToolbar_(1, {"Face Selector", "Camera", "Apply Transform"});
    EXPECT_THAT(menu_->toolbar().items(), ElementsAre("Select Primitives", "Mesh Healer"));
}

TEST_F(QuorvixRibbonMenuTest, renamesEveryEntryOfAToolbarAndRemovesEveryCamera)
{
    saveToolbar_(1, {"Camera", "Face Selector", "Open", "Camera", "Face Selector"});
    EXPECT_THAT(menu_->toolbar().items(), ElementsAre("Select Primitives", "Open", "Select Primitives"));
}

TEST_F(QuorvixRibbonMenuTest, leavesWhatIsSpeltOtherwiseInAToolbar)
{
    saveToolbar_(1, {"face selector", "Cameras", "Apply Transform "});
    EXPECT_THAT(menu_->toolbar().items(), ElementsAre("face selector", "Cameras", "Apply Transform "));
}

TEST_F(QuorvixRibbonMenuTest, makesOnlyTheLaterChangeToAToolbarOfVersionTwo)
{
    saveToolbar_(2, {"Face Selector", "Camera", "Apply Transform"});
    EXPECT_THAT(menu_->toolbar().items(), ElementsAre("Face Selector", "Camera", "Mesh Healer"));
}

TEST_F(QuorvixRibbonMenuTest, leavesAToolbarOfVersionThreeAlone)
{
    saveToolbar_(3, {"Face Selector", "Camera", "Apply Transform"});
    EXPECT_THAT(menu_->toolbar().items(), ElementsAre("Face Selector", "Camera", "Apply Transform"));
}

TEST_F(QuorvixRibbonMenuTest, letsAFunctionAddToTheFactsOfTheSelection)
{
    std::vector<std::string> names;
    menu_->setDrawCustomSelectionInformationFunc(
        [&](const std::vector<std::shared_ptr<Object>>& objects)
        {
            names.clear();
            for (const auto& object : objects)
                names.push_back(object->name());
        });
    start_();
    const auto object = std::make_shared<Object>();
    object->setName("Part");
    object->setSelected(true);
    viewer_().scene().addChild(object);
    driver_->settle();
    EXPECT_THAT(names, ElementsAre("Part"));
}

TEST_F(QuorvixRibbonMenuTest, drawsOnWithoutSuchAFunction)
{
    int calls = 0;
    menu_->setDrawCustomSelectionInformationFunc([&](const auto&) { ++calls; });
    menu_->setDrawCustomSelectionInformationFunc({});
    start_();
    EXPECT_EQ(calls, 0);
}

} // namespace

} // namespace VX
