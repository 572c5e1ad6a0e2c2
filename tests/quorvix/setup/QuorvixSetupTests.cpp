#include "tests/support/LogCapture.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/setup/QuorvixWindowTitle.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Locale.h>
#include <VXViewer/Viewer.h>

#include <curl/curl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace
{

CURLsslset sslsetResult = CURLSSLSET_OK;
std::optional<curl_sslbackend> sslBackend;

} // namespace

// Takes the place of libcurl's own in this program.
extern "C" __attribute__((visibility("default"))) CURLsslset curl_global_sslset(curl_sslbackend id, const char*,
                                                                                const curl_ssl_backend***)
{
    sslBackend = id;
    return sslsetResult;
}

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class QuorvixSetupTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SessionLogs::reset();
        sslsetResult = CURLSSLSET_OK;
        sslBackend.reset();
    }

    void TearDown() override { SessionLogs::reset(); }

    const VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
};

TEST_F(QuorvixSetupTest, givesTheViewerTheApplicationsMenu)
{
    QuorvixSetup().setupBasePlugins(&viewer_);
    EXPECT_TRUE(QuorvixRibbonMenu::instance());
    EXPECT_EQ(viewer_.getMenuPlugin().use_count(), 1);
}

TEST_F(QuorvixSetupTest, choosesOpenSslForRequests)
{
    const VX::Test::LogCapture log;
    QuorvixSetup().setupBasePlugins(&viewer_);
    EXPECT_EQ(sslBackend, CURLSSLBACKEND_OPENSSL);
    EXPECT_THAT(log.texts(spdlog::level::warn), IsEmpty());
}

TEST_F(QuorvixSetupTest, goesOnWhereOpenSslCannotBeChosen)
{
    const VX::Test::LogCapture log;
    sslsetResult = CURLSSLSET_UNKNOWN_BACKEND;
    QuorvixSetup().setupBasePlugins(&viewer_);
    EXPECT_THAT(log.texts(spdlog::level::warn), ElementsAre("Failed to set SSL backend for cURL: error code 0x1"));
    EXPECT_TRUE(QuorvixRibbonMenu::instance());
    EXPECT_NE(Locale::findDomain("Quorvix"), 0);
}

TEST_F(QuorvixSetupTest, addsTheDomainOfItsTexts)
{
    QuorvixSetup().setupBasePlugins(&viewer_);
    EXPECT_NE(Locale::findDomain("Quorvix"), 0);
}

TEST_F(QuorvixSetupTest, hasNoneOfTheFrameworksOverlays)
{
    QuorvixSetup().setupFrameStatistics(&viewer_);
    QuorvixSetup().setupMouseControls(&viewer_);
    EXPECT_THAT(viewer_.plugins(), IsEmpty());
}

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
