#include "RibbonFixture.h"

#include <VXMesh/Json.h>
#include <VXViewer/RibbonConfig.h>

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace VX
{

using testing::ElementsAre;

namespace
{

RibbonConfig fromText(const std::string& text)
{
    const auto root = deserializeJsonValue(text);
    EXPECT_TRUE(root) << root.error();
    return createRibbonConfigFromJson(root.value_or(Json::Value()));
}

/// The first code block of the section about the ribbon.
std::string exampleOfTheGuide()
{
    std::ifstream file(QX_SOURCE_DIR "/docs/user/ui-document.md");
    std::stringstream text;
    text << file.rdbuf();
    const std::string all = text.str();
    const std::size_t section = all.find("## RibbonStructure");
    const std::size_t begin = all.find("```json\n", section == std::string::npos ? all.size() : section);
    if (begin == std::string::npos)
        return {};
    return all.substr(begin + 8, all.find("```", begin + 8) - begin - 8);
}

} // namespace

class RibbonConfigTests : public VX::Test::RibbonFixture
{
protected:
    void apply_(const std::string& text)
    {
        applyRibbonConfig(fromText(text));
        driver_.settle();
    }

    [[nodiscard]] static std::vector<std::string> tabs_()
    {
        std::vector<std::string> names;
        for (const UiItem& item : UiTree::instance().items())
        {
            if (item.kind == UiKind::Tab && item.window == "Ribbon Header")
                names.push_back(item.label);
        }
        return names;
    }
};

TEST_F(RibbonConfigTests, ChangesNothingWithoutItsKey)
{
    apply_("{}");
    EXPECT_THAT(tabs_(), ElementsAre("Home", "Second"));
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon"));
}

TEST_F(RibbonConfigTests, HidesTabsAndItems)
{
    apply_(R"({"RibbonStructure": {"hiddenTabs": ["Second"], "hiddenItems": ["Open It", "Measure"]}})");
    EXPECT_THAT(tabs_(), ElementsAre("Home"));
    EXPECT_FALSE(driver_.find("Open It", "Ribbon"));
    EXPECT_FALSE(driver_.find("Measure", "Toolbar"));
    EXPECT_TRUE(driver_.shows("Shut", "Ribbon"));
}

TEST_F(RibbonConfigTests, ReordersTabs)
{
    apply_(R"({"RibbonStructure": {"tabOrder": ["Second"]}})");
    EXPECT_THAT(tabs_(), ElementsAre("Second", "Home"));
}

TEST_F(RibbonConfigTests, RegroupsItemsAndAddsTabs)
{
    apply_(R"({"RibbonStructure": {"tabs": [
        {"name": "Home", "groups": [{"name": "All", "items": ["Other Thing", "Unknown"]}]},
        {"name": "Own", "groups": [{"name": "G", "items": [{"name": "Open It", "size": "small"}]}]}]}})");
    EXPECT_THAT(tabs_(), ElementsAre("Home", "Second", "Own"));
    EXPECT_TRUE(driver_.shows("Other Thing", "Ribbon"));
    EXPECT_FALSE(driver_.shows("Shut", "Ribbon"));
    driver_.press("Own", "Ribbon Header");
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon"));
}

TEST_F(RibbonConfigTests, GivesTheRoomOfWhatIsNotDrawnToTheScene)
{
    apply_(R"({"RibbonStructure": {"drawHeader": false, "drawSceneList": false, "drawToolbar": false}})");
    EXPECT_FLOAT_EQ(menu_->topPanelHeight(), 76);
    EXPECT_FLOAT_EQ(menu_->leftPanelWidth(), 0);
    for (const char* window : {"Ribbon Header", "Scene", "Toolbar"})
        EXPECT_FALSE(UiTree::instance().hasWindow(window)) << window;
    apply_(R"({"RibbonStructure": {"hiddenTabs": ["Home", "Second"]}})");
    EXPECT_FALSE(menu_->isRibbonShown());
}

TEST_F(RibbonConfigTests, ShowsOrHidesTheQuickAccessAndChoosesItsItems)
{
    apply_(R"({"RibbonStructure": {"quickAccess": ["Open It", "Nowhere"]}})");
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon Header"));
    EXPECT_FALSE(driver_.shows("Save It", "Ribbon Header"));
    apply_(R"({"RibbonStructure": {"drawQuickAccess": false}})");
    EXPECT_FALSE(driver_.shows("Open It", "Ribbon Header"));
    apply_(R"({"RibbonStructure": {"drawQuickAccess": true}})");
    EXPECT_TRUE(driver_.shows("Open It", "Ribbon Header"));
}

TEST_F(RibbonConfigTests, ChoosesTheToolbarOfAUserWhoHasChosenNone)
{
    apply_(R"({"RibbonStructure": {"toolbar": ["Close It"]}})");
    EXPECT_TRUE(driver_.shows("Shut", "Toolbar"));
    EXPECT_FALSE(driver_.shows("Measure", "Toolbar"));
}

TEST_F(RibbonConfigTests, IgnoresWrongTypesEverywhere)
{
    for (const char* text :
         {"7", "[]", R"("RibbonStructure")", R"({"RibbonStructure": []})", R"({"RibbonStructure": {"hiddenTabs": 7}})",
          R"({"RibbonStructure": {"hiddenTabs": [7, null, {}, []], "hiddenItems": {"a": 1}, "drawHeader": 0,
              "drawSceneList": "no", "tabOrder": [[]], "quickAccess": "x", "tabs": {}}})",
          R"({"RibbonStructure": {"tabs": [7, {}, {"name": 7}, {"name": "T", "groups": {}},
              {"name": "U", "groups": [7, {"name": "G"}, {"name": "G", "items": [7, {}, {"name": []},
              {"dropDown": "D"}, {"dropDown": 7, "items": []}]}]}]}})"})
    {
        apply_(text);
        EXPECT_TRUE(driver_.shows("Home", "Ribbon Header")) << text;
        EXPECT_TRUE(UiTree::instance().hasWindow("Scene")) << text;
    }
}

TEST_F(RibbonConfigTests, CutsWhatIsLargerThanAnyRibbon)
{
    Json::Value root;
    Json::Value& structure = root["RibbonStructure"];
    const std::string longName(100000, 'x');
    for (int i = 0; i < 100000; ++i)
        structure["hiddenItems"].append("item " + std::to_string(i));
    structure["hiddenTabs"].append(longName);
    for (int i = 0; i < 1000; ++i)
    {
        Json::Value tab;
        tab["name"] = "Tab " + std::to_string(i);
        Json::Value group;
        group["name"] = "Group";
        for (int k = 0; k < 1000; ++k)
            group["items"].append("Open It");
        tab["groups"].append(group);
        structure["tabs"].append(tab);
    }
    const RibbonConfig config = createRibbonConfigFromJson(root);
    EXPECT_EQ(config.hiddenItems->size(), 256U);
    EXPECT_TRUE(config.hiddenTabs->empty());
    ASSERT_EQ(config.tabs->size(), 64U);
    EXPECT_EQ(config.tabs->front().groups.front().entries.size(), 256U);
    applyRibbonConfig(config);
    driver_.settle();
    EXPECT_TRUE(driver_.shows("More tabs", "Ribbon Header"));
}

TEST_F(RibbonConfigTests, AppliesTheExampleOfTheGuide)
{
    const std::string example = exampleOfTheGuide();
    ASSERT_FALSE(example.empty());
    const RibbonConfig config = fromText(example);
    EXPECT_TRUE(config.drawToolbar && config.hiddenTabs && config.hiddenItems && config.tabOrder && config.tabs &&
                config.quickAccess && config.toolbar);
    EXPECT_TRUE(config.drawHeader && config.drawQuickAccess && config.drawSceneList);
    applyRibbonConfig(config);
    driver_.settle();
    EXPECT_EQ(UiTree::instance().hasWindow("Toolbar"), *config.drawToolbar);
}

} // namespace VX
