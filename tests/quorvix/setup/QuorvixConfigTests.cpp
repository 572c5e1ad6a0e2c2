#include "tests/support/TempDir.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixConfig.h>

#include <VXMesh/Json.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace VX
{

namespace
{

using ::testing::Each;
using ::testing::Optional;

class QuorvixConfigTest : public ::testing::Test
{
protected:
    /// What a document of this text says.
    static QuorvixConfig read_(const std::string& text)
    {
        const auto document = deserializeJsonValue(text);
        EXPECT_TRUE(document) << document.error();
        return createQuorvixConfigFromJson(document.value_or(Json::Value()));
    }

    static void expectNothing_(const QuorvixConfig& config)
    {
        EXPECT_FALSE(config.scaleIndicator);
        EXPECT_FALSE(config.viewportController);
        EXPECT_FALSE(config.menuUIConfig);
        EXPECT_FALSE(config.config);
        EXPECT_THAT(config.fontPaths, Each(std::filesystem::path()));
    }

    const VX::Test::ViewerSession session_{nullptr};
};

TEST_F(QuorvixConfigTest, isEmptyForAnEmptyDocument)
{
    expectNothing_(read_("{}"));
}

TEST_F(QuorvixConfigTest, isEmptyForADocumentThatIsNoObject)
{
    for (const char* document : {"null", "true", "1", "-1.5", "\"MenuLayout\"", "[]", R"([{"MenuLayout": {}}])"})
        expectNothing_(read_(document));
}

TEST_F(QuorvixConfigTest, isEmptyWhereEveryValueHasAnotherType)
{
    for (const char* value : {"null", "true", "1", "1e300", "\"text\"", "[]", "[{}]"})
    {
        std::string document = "{";
        for (const char* key : {"MenuLayout", "ViewportDecoration", "Config", "Fonts"})
            document += '"' + std::string(key) + "\": " + value + ',';
        document.back() = '}';
        expectNothing_(read_(document));
    }
}

TEST_F(QuorvixConfigTest, takesNoSwitchFromAValueThatIsNoBoolean)
{
    for (const char* value : {"null", "0", "1", "\"false\"", "[]", "{}"})
    {
        std::string layout = "{";
        for (const char* key :
             {"drawWelcomeWindow", "allowBaseShortcuts", "allowHistoryShortcuts", "drawLogo", "drawGetDesktop"})
            layout += '"' + std::string(key) + "\": " + value + ',';
        layout.back() = '}';
        EXPECT_THAT(read_("{\"MenuLayout\": " + layout + "}").menuUIConfig, Optional(QuorvixMenuUIConfig{}));
    }
}

TEST_F(QuorvixConfigTest, hasAllSwitchesOnForAnEmptyLayoutWithoutAMenu)
{
    EXPECT_THAT(read_(R"({"MenuLayout": {}})").menuUIConfig, Optional(QuorvixMenuUIConfig{}));
}

TEST_F(QuorvixConfigTest, readsEverySwitch)
{
    EXPECT_THAT(read_(R"({"MenuLayout": {"drawWelcomeWindow": false}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{false, true, true, true, true}));
    EXPECT_THAT(read_(R"({"MenuLayout": {"allowBaseShortcuts": false}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{true, false, true, true, true}));
    EXPECT_THAT(read_(R"({"MenuLayout": {"allowHistoryShortcuts": false}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{true, true, false, true, true}));
    EXPECT_THAT(read_(R"({"MenuLayout": {"drawLogo": false}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{true, true, true, false, true}));
    EXPECT_THAT(read_(R"({"MenuLayout": {"drawGetDesktop": false}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{true, true, true, true, false}));
}

TEST_F(QuorvixConfigTest, keepsTheSwitchesOfTheRunningMenuWhereTheDocumentIsSilent)
{
    const auto menu = std::make_shared<QuorvixRibbonMenu>();
    menu->setQuorvixMenuConfig({false, false, true, false, false});
    getViewerInstance().setMenuPlugin(menu);
    EXPECT_THAT(read_(R"({"MenuLayout": {"drawLogo": true, "drawWelcomeWindow": "yes"}})").menuUIConfig,
                Optional(QuorvixMenuUIConfig{false, false, true, true, false}));
}

TEST_F(QuorvixConfigTest, takesKeysOnlyAsTheyAreSpelt)
{
    expectNothing_(read_(R"({"menuLayout": {}, "Menulayout": {}, "viewportDecoration": {"scaleIndicator": true},
                             "ViewportDecoration": {"ScaleIndicator": true, "viewportcontroller": true},
                             "config": {}, "fonts": {"Regular": "a.ttf"}})"));
}

TEST_F(QuorvixConfigTest, readsTheDecorationOfTheViewports)
{
    const auto both = read_(R"({"ViewportDecoration": {"scaleIndicator": false, "viewportController": true}})");
    EXPECT_THAT(both.scaleIndicator, Optional(false));
    EXPECT_THAT(both.viewportController, Optional(true));
    const auto one = read_(R"({"ViewportDecoration": {"scaleIndicator": true}})");
    EXPECT_THAT(one.scaleIndicator, Optional(true));
    EXPECT_FALSE(one.viewportController);
}

TEST_F(QuorvixConfigTest, takesNoDecorationFromANumber)
{
    expectNothing_(read_(R"({"ViewportDecoration": {"scaleIndicator": 1, "viewportController": 0}})"));
}

TEST_F(QuorvixConfigTest, copiesTheSettings)
{
    const auto config = read_(R"({"Config": {"viewer": {"orthographic": true}, "list": [1, null]}})");
    ASSERT_TRUE(config.config);
    EXPECT_EQ(*config.config, *deserializeJsonValue(R"({"viewer": {"orthographic": true}, "list": [1, null]})"));
}

TEST_F(QuorvixConfigTest, takesEmptySettingsForSettings)
{
    EXPECT_THAT(read_(R"({"Config": {}})").config, Optional(Json::Value(Json::objectValue)));
}

TEST_F(QuorvixConfigTest, takesNoSettingsFromAList)
{
    EXPECT_FALSE(read_(R"({"Config": []})").config);
}

TEST_F(QuorvixConfigTest, isWhatTheExampleOfTheManualSays)
{
    const std::string manual = VX::Test::readFile(QX_SOURCE_DIR "/docs/user/ui-document.md");
    const std::string fence = "```json\n";
    const std::size_t begin = manual.find(fence) + fence.size();
    const auto config = read_(manual.substr(begin, manual.find("```", begin) - begin));
    EXPECT_THAT(config.menuUIConfig, Optional(QuorvixMenuUIConfig{true, true, true, false, true}));
    EXPECT_THAT(config.scaleIndicator, Optional(true));
    EXPECT_THAT(config.viewportController, Optional(false));
    EXPECT_EQ(config.fontPaths[0], "/usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf");
    EXPECT_THAT(config.config, Optional(*deserializeJsonValue(R"({"allowSimpleTelemetry": false})")));
}

TEST_F(QuorvixConfigTest, isReadFromADocumentOfTenMegabytesOfUnknownNames)
{
    Json::Value document(Json::objectValue);
    for (int i = 0; i < 50'000; ++i)
        document["unknown " + std::to_string(i)] = std::string(200, 'x');
    document["RibbonStructure"] = document;
    document["ViewportDecoration"]["scaleIndicator"] = true;
    EXPECT_THAT(createQuorvixConfigFromJson(document).scaleIndicator, Optional(true));
}

TEST_F(QuorvixConfigTest, isReadFromADocumentNestedAsDeepAsOneCanBe)
{
    Json::Value deep(true);
    for (int i = 0; i < 900; ++i)
    {
        Json::Value outer(i % 2 == 0 ? Json::objectValue : Json::arrayValue);
        (i % 2 == 0 ? outer["RibbonStructure"] : outer.append({})) = std::move(deep);
        deep = std::move(outer);
    }
    Json::Value document(Json::objectValue);
    for (const char* key : {"RibbonStructure", "MenuLayout", "ViewportDecoration", "Fonts"})
        document[key] = deep;
    EXPECT_FALSE(createQuorvixConfigFromJson(document).scaleIndicator);
}

} // namespace

} // namespace VX
