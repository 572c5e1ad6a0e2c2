#pragma once

#include "WelcomeFixture.h"

#include <VXViewer/ViewerSettingsManager.h>

namespace VX::Test
{

/// The application's menu in a window that asks its user at the start, from `askAtStart_` on.
class StartupFixture : public WelcomeFixture
{
protected:
    static constexpr const char* quickSetupTitle = "Getting started with Quorvix";
    static constexpr const char* disclaimerTitle = "We'd Like to Improve Your Experience";

    /// Gives the viewer settings, and counts this as its start number `launches`.
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

    void askAtStart_()
    {
        menu_->asksAtStart = true;
        redraw_();
    }
};

} // namespace VX::Test
