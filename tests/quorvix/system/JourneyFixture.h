#pragma once

#include "tests/quorvix/system/ServiceFixture.h"
#include "tests/support/ui/UiDriver.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/auth/UserInfo.h>
#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixSetup.h>
#include <quorvix/telemetry/ServerSendSink.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXMesh/Logger.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/Locale.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/UiTree.h>
#include <VXViewer/ViewerLaunch.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSignals.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// The application's menu, which asks its user at the start though nobody sees the window, from when it is told to.
class AskingMenu : public QuorvixRibbonMenu
{
public:
    bool asksAtStart = false;

protected:
    [[nodiscard]] bool mayAskAtStart_() const override { return asksAtStart; }
};

/// The product with that menu. Other than in a window that nobody sees, the user's settings are kept.
class JourneySetup : public QuorvixSetup
{
public:
    void setupBasePlugins(Viewer* viewer) const override
    {
        QuorvixSetup::setupBasePlugins(viewer);
        viewer->setMenuPlugin(std::make_shared<AskingMenu>());
        viewer->signals().shutdown.connect([viewer] { viewer->settingsManager()->saveSettings(*viewer); });
    }
};

/// A user at the program, off-screen, which is started and ended as often as the test wants, with a service of its own.
class JourneyFixture : public ServiceFixture
{
protected:
    static constexpr const char* signInWindow = "Auth window";

    void SetUp() override
    {
        ServiceFixture::SetUp();
        SessionLogs::reset();
    }

    void TearDown() override
    {
        Logger::instance().removeSink(getServerSendSink());
        leaveProcess_();
        Locale::set("en");
        ColorTheme::setupDefaultDark();
        RibbonSchemaHolder::reset();
        ServiceFixture::TearDown();
    }

    /// Starts the program, has `user` at it once it is ready, and ends it.
    template <typename User>
    void run_(User user)
    {
        leaveProcess_();
        Config::instance().reset("Quorvix");
        LaunchParams params;
        params.hidden = true;
        params.serveAgents = false;
        params.whenLoaded = [&](Viewer& viewer)
        {
            // As in a process of its own.
            viewer.setLaunchCount(1);
            std::dynamic_pointer_cast<AskingMenu>(viewer.getMenuPlugin())->asksAtStart = true;
            redraw_();
            user();
            viewer.requestClose();
        };
        EXPECT_EQ(launchViewer({}, params, JourneySetup()), 0);
    }

    /// Waits until the text or widget is there.
    void see_(const std::string& label, const std::string& window = {})
    {
        EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows(label, window); })) << "\"" << label << "\" is missing";
    }

    [[nodiscard]] bool shows_(const std::string& label) const { return driver_.shows(label); }

    /// Presses the widget as soon as it can be pressed.
    void press_(const std::string& label, const std::string& window = {})
    {
        const auto isReady = [&]
        {
            const auto item = driver_.find(label, window);
            return item && item->enabled;
        };
        EXPECT_TRUE(driver_.waitFor(isReady)) << "\"" << label << "\" cannot be pressed";
        // A window may not be in its place yet.
        driver_.settle();
        driver_.press(label, window);
    }

    /// Types `text` in place of what is in the field.
    void fill_(const std::string& field, const std::string& text)
    {
        press_(field, signInWindow);
        driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_.type(text);
    }

    /// Chooses a row of the list number `index` from the top.
    void choose_(std::size_t index, const std::string& row)
    {
        std::vector<UiItem> combos;
        std::ranges::copy_if(UiTree::instance().items(), std::back_inserter(combos),
                             [](const UiItem& item) { return item.kind == UiKind::Combo; });
        ASSERT_LT(index, combos.size());
        driver_.click((combos[index].min + combos[index].max) / 2);
        press_(row);
        redraw_();
    }

    void redraw_()
    {
        session_.viewer().incrementForceRedrawFrames(2);
        driver_.settle();
    }

    /// The user's settings, and a window until the program has its own.
    const ViewerSession session_{nullptr};
    UiDriver driver_{session_};

private:
    /// Nothing is left of what a process keeps to itself.
    static void leaveProcess_()
    {
        WebRequests::reset();
        // First, so that nothing is reported of what follows.
        SessionLogs::reset();
        UserInfo::setEmail({});
        UserInfo::setAccessToken({});
        SessionLogs::reset();
    }
};

} // namespace VX::Test
