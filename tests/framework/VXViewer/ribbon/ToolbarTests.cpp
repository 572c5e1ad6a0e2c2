#include "RibbonFixture.h"

#include <VXMesh/Config.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/Primitives.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <gmock/gmock.h>

#include <algorithm>

namespace VX
{

using testing::ElementsAre;

namespace
{

void save(const std::vector<std::string>& names, int version)
{
    Json::Value saved;
    saved["items"] = Json::Value(Json::arrayValue);
    for (const std::string& name : names)
        saved["items"].append(name);
    saved["version"] = version;
    Config::instance().setJson("toolbar", saved);
}

} // namespace

class ToolbarTests : public VX::Test::RibbonFixture
{
protected:
    Toolbar& toolbar_ = menu_->toolbar();
};

TEST_F(ToolbarTests, PressesItsItems)
{
    driver_.press("Measure", "Toolbar");
    EXPECT_THAT(menu_->pressed, ElementsAre("Measure"));
}

TEST_F(ToolbarTests, DoesNotLieOverAFittedScene)
{
    const auto cube = std::make_shared<ObjectMesh>();
    cube->setMesh(std::make_shared<const Mesh>(makeCube({})));
    viewer_.scene().addChild(cube);
    viewer_.view().fitAll(false);
    const Box3d box = cube->worldBox();
    const PixelRect& area = viewer_.view().area();
    double top = area.height;
    for (int i = 0; i < 8; ++i)
        top = std::min(top, viewer_.view()
                                .camera()
                                .project(box.corner(static_cast<Box3d::CornerType>(i)), {area.width, area.height})
                                ->y());
    EXPECT_GT(area.y + top, driver_.find("Measure", "Toolbar")->max.y());
}

TEST_F(ToolbarTests, KeepsTheChoiceInTheConfiguration)
{
    toolbar_.setItems({"Close It", "Open It"});
    toolbar_.reload();
    driver_.settle();
    EXPECT_THAT(toolbar_.items(), ElementsAre("Close It", "Open It"));
    EXPECT_TRUE(Config::instance().getJson("toolbar", {})["version"].isInt());
    toolbar_.resetItems();
    EXPECT_THAT(toolbar_.items(), ElementsAre("Measure"));
}

TEST_F(ToolbarTests, MigratesAListOfALowerVersionInAscendingOrder)
{
    save({"a"}, 1);
    toolbar_.setItemsListMigrations({{3, [](std::vector<std::string>& names) { names.emplace_back("third"); }},
                                     {1, [](std::vector<std::string>& names) { names.emplace_back("first"); }},
                                     {2, [](std::vector<std::string>& names) { names.emplace_back("second"); }}});
    EXPECT_THAT(toolbar_.items(), ElementsAre("a", "second", "third"));
}

TEST_F(ToolbarTests, SavesAMigratedListWithTheHighestVersion)
{
    save({"a"}, 1);
    toolbar_.setItemsListMigrations({{3, [](std::vector<std::string>& names) { names.emplace_back("third"); }}});
    toolbar_.setItems(toolbar_.items());
    toolbar_.reload();
    EXPECT_THAT(toolbar_.items(), ElementsAre("a", "third"));
}

TEST_F(ToolbarTests, IgnoresASavedListThatIsDamaged)
{
    for (const Json::Value& saved : {Json::Value(7), Json::Value("x"), Json::Value(Json::arrayValue)})
    {
        Config::instance().setJson("toolbar", saved);
        toolbar_.reload();
        EXPECT_THAT(toolbar_.items(), ElementsAre("Measure"));
    }
    Json::Value odd;
    odd["items"].append(7);
    odd["items"].append("Open It");
    odd["version"] = "new";
    Config::instance().setJson("toolbar", odd);
    toolbar_.reload();
    EXPECT_THAT(toolbar_.items(), ElementsAre("Open It"));
}

TEST_F(ToolbarTests, ReadsTheChoiceAgainWithTheSettings)
{
    save({"Close It"}, 1);
    ViewerSettingsManager().loadSettings(viewer_);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Shut", "Toolbar"));
}

TEST_F(ToolbarTests, LetsTheUserAddMoveAndRemoveItems)
{
    driver_.press("Customize the toolbar", "Toolbar");
    driver_.press("Add Open It", "Customize Toolbar");
    EXPECT_THAT(toolbar_.items(), ElementsAre("Measure", "Open It"));
    driver_.press("Move Open It up", "Customize Toolbar");
    EXPECT_THAT(toolbar_.items(), ElementsAre("Open It", "Measure"));
    driver_.press("Remove Measure", "Customize Toolbar");
    EXPECT_THAT(toolbar_.items(), ElementsAre("Open It"));
    driver_.press("Reset", "Customize Toolbar");
    EXPECT_THAT(toolbar_.items(), ElementsAre("Measure"));
    driver_.press("Close", "Customize Toolbar");
    EXPECT_FALSE(UiTree::instance().hasWindow("Customize Toolbar"));
}

TEST_F(ToolbarTests, FiltersWhatCanBeAdded)
{
    driver_.press("Customize the toolbar", "Toolbar");
    driver_.press("Add an item", "Customize Toolbar");
    driver_.type("shut");
    EXPECT_TRUE(driver_.shows("Add Shut", "Customize Toolbar"));
    EXPECT_FALSE(driver_.shows("Add Open It", "Customize Toolbar"));
}

} // namespace VX
