#pragma once

#include "WelcomeFixture.h"

#include <VXViewer/ViewerSettingsManager.h>

#include <gtest/gtest.h>
#include <imgui_internal.h>

namespace VX::Test
{

/// The application's menu in a window that asks its user at the start, from `askAtStart_` on.
class StartupFixture : public WelcomeFixture
{
protected:
    static constexpr const char* quickSetupTitle = "Getting started with Quorvix";
    static constexpr const char* disclaimerTitle = "We'd Like to Improve Your Experience";

    /// Gives the viewer settings, and counts this as its launch number `launches`.
    void haveSettings_(int launches = 1) const
    {
        viewer_().setSettingsManager(std::make_unique<ViewerSettingsManager>());
        viewer_().setLaunchCount(launches);
    }

    [[nodiscard]] int quickSetupVersion_() const
    {
        return viewer_().settingsManager()->loadInt("QuickSetupVersion", 0);
    }

    static void setDisclaimer_(const Json::Value& shown)
    {
        Config::instance().setJson("telemetryDisclaimerModalShowed", shown);
    }

    [[nodiscard]] static Json::Value disclaimer_()
    {
        return Config::instance().getJson("telemetryDisclaimerModalShowed", Json::Value());
    }

    /// Fails the test where the open modal window is not `width` wide with its middle there, in pixels.
    static void expectModal_(const char* name, const Vector2f& middle, float width)
    {
        const ImGuiWindow* const window = ImGui::FindWindowByName(name);
        ASSERT_TRUE(window && window->Active);
        EXPECT_NEAR(window->Size.x, width, 1);
        EXPECT_NEAR(window->Pos.x + window->Size.x / 2, middle.x(), 1);
        EXPECT_NEAR(window->Pos.y + window->Size.y / 2, middle.y(), 1);
    }

    void askAtStart_()
    {
        menu_->asksAtStart = true;
        redraw_();
    }
};

} // namespace VX::Test
