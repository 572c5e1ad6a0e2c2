#include "UiTestScene.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/SystemInfo.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerLaunch.h>
#include <VXViewer/ViewerSetup.h>
#include <VXViewer/ViewerSignals.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// Writes down the steps in the order in which they are called.
class RecordingSetup : public ViewerSetup
{
public:
    explicit RecordingSetup(std::vector<std::string>& calls)
        : calls_(calls)
    {
        startCallback = [&calls] { calls.emplace_back("start"); };
        shutdownCallback = [&calls] { calls.emplace_back("shutdown"); };
    }

    void setupBasePlugins(Viewer* viewer) const override
    {
        calls_.emplace_back("base plugins");
        ViewerSetup::setupBasePlugins(viewer);
        viewer->signals().shutdown.connect([this] { calls_.emplace_back("shutdown signal"); });
    }

    void setupFrameStatistics(Viewer*) const override { calls_.emplace_back("frame statistics"); }

    void setupMouseControls(Viewer*) const override { calls_.emplace_back("mouse controls"); }

    void setupSettingsManager(Viewer* viewer, const std::string& name, bool reset) const override
    {
        calls_.push_back("settings of " + name);
        ViewerSetup::setupSettingsManager(viewer, name, reset);
    }

    void setupConfiguration(Viewer* viewer) const override
    {
        calls_.emplace_back("configuration");
        ViewerSetup::setupConfiguration(viewer);
    }

    void setupExtendedLibraries() const override { calls_.emplace_back("libraries"); }

    void unloadExtendedLibraries() const override { calls_.emplace_back("unload libraries"); }

    [[nodiscard]] bool setupMcp() const override
    {
        calls_.emplace_back("mcp");
        return false;
    }

    [[nodiscard]] bool shutdownMcp() const override
    {
        calls_.emplace_back("shutdown mcp");
        return true;
    }

private:
    std::vector<std::string>& calls_;
};

} // namespace

class ViewerLaunchTests : public testing::Test
{
protected:
    ViewerLaunchTests()
    {
        params_.applicationName = "QuorvixTest";
        params_.size = {640, 480};
        params_.hidden = true;
        params_.whenLoaded = [](Viewer& viewer) { viewer.requestClose(); };
    }

    ~ViewerLaunchTests() override
    {
        getViewerInstance().reset();
        WebRequests::reset();
    }

    VX::Test::TempConfig config_;
    VX::Test::TempDir folder_;
    LaunchParams params_;
    std::vector<std::string> calls_;
};

TEST_F(ViewerLaunchTests, CallsTheStepsInTheirOrderAndTheCallbacksOnce)
{
    EXPECT_EQ(launchViewer({}, params_, RecordingSetup(calls_)), 0);
    EXPECT_EQ(calls_, (std::vector<std::string>{"base plugins", "frame statistics", "mouse controls",
                                                "settings of QuorvixTest", "configuration", "libraries", "mcp", "start",
                                                "shutdown signal", "shutdown mcp", "unload libraries", "shutdown"}));
}

TEST_F(ViewerLaunchTests, EmitsTheShutdownSignalWhileTheMenuAndTheSceneAreStillThere)
{
    params_.files = {folder_.write("part.stl", VX::Test::triangleStl())};
    bool hadMenu = false;
    std::size_t children = 0;
    params_.whenLoaded = [&](Viewer& viewer)
    {
        viewer.signals().shutdown.connect(
            [&]
            {
                hadMenu = viewer.getMenuPlugin() && viewer.ui();
                children = viewer.scene().children().size();
            });
        viewer.requestClose();
    };
    EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 0);
    EXPECT_TRUE(hadMenu);
    EXPECT_EQ(children, 1U);
}

TEST_F(ViewerLaunchTests, KeepsTheArgumentsWhole)
{
    std::vector<std::string> arguments;
    params_.whenLoaded = [&](Viewer& viewer)
    {
        arguments = viewer.commandLineArguments();
        viewer.requestClose();
    };
    EXPECT_EQ(launchViewer({"-creds", "a file.json"}, params_, ViewerSetup()), 0);
    EXPECT_EQ(arguments, (std::vector<std::string>{"-creds", "a file.json"}));
}

TEST_F(ViewerLaunchTests, CountsTheLaunchesOfTheProcess)
{
    std::vector<int> counts;
    params_.whenLoaded = [&](Viewer& viewer)
    {
        counts.push_back(viewer.launchCount());
        viewer.requestClose();
    };
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 0);
    EXPECT_EQ(counts.at(1), counts.at(0) + 1);
}

TEST_F(ViewerLaunchTests, EndsWithTheExitCodeOfTheViewer)
{
    params_.files = {folder_.path() / "missing.stl"};
    std::string message;
    params_.fileMessage = [&](NotificationType, const std::string& text)
    {
        message = text;
        getViewerInstance().setExitCode(1);
    };
    EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 1);
    EXPECT_NE(message.find("missing.stl"), std::string::npos);
}

TEST_F(ViewerLaunchTests, TakesAPictureOfTheSceneAloneWithoutAnInterface)
{
    params_.files = {folder_.write("part.stl", VX::Test::triangleStl())};
    params_.showInterface = false;
    Image picture;
    bool hadUi = true;
    params_.whenLoaded = [&](Viewer& viewer)
    {
        hadUi = viewer.ui() != nullptr;
        picture = viewer.view().capture(viewer.framebufferSize());
        viewer.requestClose();
    };
    EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 0);
    EXPECT_FALSE(hadUi);
    EXPECT_EQ(picture.size, params_.size);
    const Color background = picture.at(2, 2);
    EXPECT_TRUE(std::any_of(picture.pixels.begin(), picture.pixels.end(),
                            [&](const Color& c) { return c.r > background.r + 60; }));
}

TEST_F(ViewerLaunchTests, RunsCommandsOfEveryStartPositionInTheirOrder)
{
    for (const auto& [name, position] :
         {std::pair("set up", StartPosition::SetupDone), std::pair("menu", StartPosition::MenuReady),
          std::pair("start", StartPosition::LoopStart)})
        CommandLoop::appendCommand([this, text = std::string(name)] { calls_.push_back(text); }, position);
    EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 0);
    EXPECT_EQ(calls_.back(), "set up");
    EXPECT_EQ(calls_.size(), 3U);
}

TEST_F(ViewerLaunchTests, ContributesTheGraphicsToTheSystemFactsWhileThereIsAWindow)
{
    Json::Value facts;
    params_.whenLoaded = [&](Viewer& viewer)
    {
        facts = GetSystemInfoJson();
        viewer.requestClose();
    };
    EXPECT_EQ(launchViewer({}, params_, ViewerSetup()), 0);
    EXPECT_FALSE(facts["Graphics Info"]["OpenGL Renderer"].asString().empty());
    EXPECT_FALSE(facts["Graphics Info"]["OpenGL Version"].asString().empty());
    EXPECT_TRUE(facts["Window Info"]["Number of monitors"].isInt());
    EXPECT_TRUE(facts["Window Info"]["BiggestMonitor"]["ScalingPercent"].isInt());
    EXPECT_FALSE(GetSystemInfoJson().isMember("Graphics Info"));
}

} // namespace VX
