#include "tests/support/ui/ViewerSession.h"
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>

#include <gtest/gtest.h>

#include <memory>

namespace VX
{

namespace
{

class QuorvixSetupTest : public ::testing::Test
{
protected:
    void SetUp() override { SessionLogs::reset(); }

    void TearDown() override { SessionLogs::reset(); }

    const VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
};

TEST_F(QuorvixSetupTest, givesTheViewerTheTitleWithTheAddress)
{
    const auto before = viewer_.windowTitle();
    QuorvixSetup().setupConfiguration(&viewer_);
    EXPECT_NE(viewer_.windowTitle(), before);
    EXPECT_TRUE(std::dynamic_pointer_cast<QuorvixWindowTitle>(viewer_.windowTitle()));
}

TEST_F(QuorvixSetupTest, letsTelemetryFollowTheSettingOnceTheLoopRuns)
{
    Config::instance().setBool("allowSimpleTelemetry", false);
    QuorvixSetup().setupConfiguration(&viewer_);
    CommandLoop::processCommands(StartPosition::LoopStart);
    EXPECT_FALSE(SessionLogs::isAllowed());
    EXPECT_TRUE(SessionLogs::isEnabled());
}

TEST_F(QuorvixSetupTest, looksForAForbiddanceOfTelemetryOnceTheLoopRuns)
{
    QuorvixSetup().setupConfiguration(&viewer_);
    viewer_.setCommandLineArguments({"-noTelemetry"});
    EXPECT_TRUE(SessionLogs::isAllowed());
    CommandLoop::processCommands(StartPosition::LoopStart);
    EXPECT_FALSE(SessionLogs::isAllowed());
}

} // namespace

} // namespace VX
