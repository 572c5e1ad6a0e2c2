#include "tests/support/LogCapture.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixConfig.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/RibbonFontManager.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A command that has the name of a decoration.
class PlainItem : public RibbonMenuItem
{
public:
    using RibbonMenuItem::RibbonMenuItem;

    void press() override {}
};

class QuorvixConfigApplyTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SessionLogs::reset();
        RibbonSchemaHolder::reset();
        // With a tab there, the menu leaves the installed layout alone.
        RibbonSchemaHolder::schema().tabs = {{"Tools", {}, {}}, {"More", {}, {}}};
        for (const char* name : {"Draw Scale Indicator", "Show_Hide Global Basis", "Toggle Projection Mode"})
            RibbonSchemaHolder::addItem(std::make_shared<ItemEnabledPerViewport>(name));
        session_.emplace(menu_);
    }

    void TearDown() override
    {
        session_.reset();
        RibbonSchemaHolder::reset();
        SessionLogs::reset();
    }

    static ViewportMask viewportsOf_(const char* name)
    {
        const RibbonItemInfo* const info = RibbonSchemaHolder::find(name);
        const auto item = info ? std::dynamic_pointer_cast<ItemEnabledPerViewport>(info->item) : nullptr;
        return item ? item->enabledViewports() : ViewportMask(1234);
    }

    static void applyController_(bool enabled)
    {
        QuorvixConfig config;
        config.viewportController = enabled;
        applyQuorvixConfig(config);
    }

    [[nodiscard]] Viewer& viewer_() const { return session_->viewer(); }

    const std::shared_ptr<QuorvixRibbonMenu> menu_ = std::make_shared<QuorvixRibbonMenu>();
    std::optional<VX::Test::ViewerSession> session_;
};

TEST_F(QuorvixConfigApplyTest, changesNothingWithoutTheMenu)
{
    const VX::Test::LogCapture log;
    session_.reset();
    session_.emplace(nullptr);
    Config::instance().setBool("kept", true);
    QuorvixConfig config;
    config.scaleIndicator = config.viewportController = true;
    config.config = Json::Value(Json::objectValue);
    applyQuorvixConfig(config);
    EXPECT_THAT(log.texts(spdlog::level::warn), ElementsAre("Cannot apply layout config"));
    EXPECT_TRUE(Config::instance().getBool("kept", false));
    EXPECT_EQ(viewportsOf_("Draw Scale Indicator"), ViewportMask());
}

TEST_F(QuorvixConfigApplyTest, changesNothingForAnEmptyDocument)
{
    const auto fonts = menu_->fontManager().getCurrentFontPaths();
    Config::instance().setBool("kept", true);
    menu_->setQuorvixMenuConfig({true, false, true, false, true});
    const VX::Test::LogCapture log;
    applyQuorvixConfig(createQuorvixConfigFromJson(Json::Value(Json::objectValue)));
    EXPECT_EQ(menu_->fontManager().getCurrentFontPaths(), fonts);
    EXPECT_EQ(menu_->quorvixMenuConfig(), (QuorvixMenuUIConfig{true, false, true, false, true}));
    EXPECT_TRUE(Config::instance().getBool("kept", false));
    EXPECT_THAT(log.texts(spdlog::level::warn), IsEmpty());
}

TEST_F(QuorvixConfigApplyTest, handsTheSwitchesToTheMenu)
{
    QuorvixConfig config;
    config.menuUIConfig = QuorvixMenuUIConfig{false, false, false, false, false};
    applyQuorvixConfig(config);
    EXPECT_EQ(menu_->quorvixMenuConfig(), config.menuUIConfig);
    EXPECT_THAT(menu_->shortcutManager()->list(), IsEmpty());
}

TEST_F(QuorvixConfigApplyTest, replacesOnlyTheFontsThatAreNamed)
{
    const VX::Test::TempDir folder;
    auto expected = menu_->fontManager().getCurrentFontPaths();
    QuorvixConfig config;
    config.fontPaths[2] = folder.write("a.ttf", "not a font");
    applyQuorvixConfig(config);
    expected[2] = config.fontPaths[2];
    EXPECT_EQ(menu_->fontManager().getCurrentFontPaths(), expected);
}

TEST_F(QuorvixConfigApplyTest, switchesTheScaleIndicatorInAllViewports)
{
    QuorvixConfig config;
    config.scaleIndicator = true;
    applyQuorvixConfig(config);
    EXPECT_EQ(viewportsOf_("Draw Scale Indicator"), ViewportMask::all());
    config.scaleIndicator = false;
    applyQuorvixConfig(config);
    EXPECT_EQ(viewportsOf_("Draw Scale Indicator"), ViewportMask());
    EXPECT_EQ(viewportsOf_("Show_Hide Global Basis"), ViewportMask());
}

TEST_F(QuorvixConfigApplyTest, switchesEverythingOfTheViewportControllerOff)
{
    applyController_(true);
    applyController_(false);
    EXPECT_EQ(viewportsOf_("Show_Hide Global Basis"), ViewportMask());
    EXPECT_EQ(viewportsOf_("Toggle Projection Mode"), ViewportMask());
    EXPECT_EQ(viewer_().cornerController()->enabledIn(), ViewportMask());
    EXPECT_EQ(viewer_().view().options().globalBasis, ViewportMask());
}

TEST_F(QuorvixConfigApplyTest, switchesEverythingOfTheViewportControllerOn)
{
    applyController_(false);
    applyController_(true);
    EXPECT_EQ(viewportsOf_("Show_Hide Global Basis"), ViewportMask::all());
    EXPECT_EQ(viewportsOf_("Toggle Projection Mode"), ViewportMask::all());
    EXPECT_EQ(viewer_().cornerController()->enabledIn(), ViewportMask::all());
    EXPECT_EQ(viewer_().view().options().globalBasis, ViewportMask::all());
    EXPECT_EQ(viewportsOf_("Draw Scale Indicator"), ViewportMask());
}

TEST_F(QuorvixConfigApplyTest, leavesOutItemsThatAreMissingOrOfAnotherKind)
{
    RibbonSchemaHolder::reset();
    RibbonSchemaHolder::addItem(std::make_shared<PlainItem>("Draw Scale Indicator"));
    QuorvixConfig config;
    config.scaleIndicator = config.viewportController = true;
    applyQuorvixConfig(config);
    EXPECT_EQ(viewer_().cornerController()->enabledIn(), ViewportMask::all());
}

TEST_F(QuorvixConfigApplyTest, handsTheRibbonItsPart)
{
    EXPECT_GT(menu_->leftPanelWidth(), 0);
    Json::Value document;
    document["RibbonStructure"]["drawSceneList"] = false;
    applyQuorvixConfig(createQuorvixConfigFromJson(document));
    EXPECT_EQ(menu_->leftPanelWidth(), 0);
}

TEST_F(QuorvixConfigApplyTest, replacesTheSettingsAsAWhole)
{
    Config::instance().setBool("gone", true);
    QuorvixConfig config;
    config.config = Json::Value(Json::objectValue);
    (*config.config)["come"] = true;
    applyQuorvixConfig(config);
    EXPECT_FALSE(Config::instance().getBool("gone", false));
    EXPECT_TRUE(Config::instance().getBool("come", false));
}

TEST_F(QuorvixConfigApplyTest, replacesTheSettingsByEmptyOnes)
{
    Config::instance().setBool("gone", true);
    QuorvixConfig config;
    config.config = Json::Value(Json::objectValue);
    applyQuorvixConfig(config);
    EXPECT_FALSE(Config::instance().getBool("gone", false));
}

TEST_F(QuorvixConfigApplyTest, loadsTheNewSettingsOnceTheStartIsOver)
{
    viewer_().setSettingsManager(std::make_unique<ViewerSettingsManager>());
    QuorvixConfig config;
    config.config = Json::Value(Json::objectValue);
    (*config.config)["viewer"]["orthographic"] = true;
    applyQuorvixConfig(config);
    CommandLoop::processCommands(StartPosition::FirstFrame);
    EXPECT_EQ(viewer_().view().camera().projection(), Projection::Perspective);
    CommandLoop::processCommands(StartPosition::SetupDone);
    EXPECT_EQ(viewer_().view().camera().projection(), Projection::Orthographic);
}

TEST_F(QuorvixConfigApplyTest, loadsNothingWithoutASettingsManager)
{
    QuorvixConfig config;
    config.config = Json::Value(Json::objectValue);
    applyQuorvixConfig(config);
    EXPECT_TRUE(CommandLoop::processCommands(StartPosition::SetupDone));
}

} // namespace

} // namespace VX
