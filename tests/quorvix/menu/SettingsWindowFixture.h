#pragma once

#include "WelcomeFixture.h"

#include <VXViewer/ViewerSettingsPlugin.h>

#include <memory>
#include <string>

namespace VX::Test
{

/// The application's menu with the window of the settings, which `open_` shows.
class SettingsWindowFixture : public WelcomeFixture
{
protected:
    /// Starts the interface with the settings open at the tab of the application.
    void open_()
    {
        const auto& settings = ViewerSettingsPlugin::instance();
        RibbonSchemaHolder::addItem(settings);
        start_(roomy);
        settings->setActiveTab(ViewerSettingsPlugin::TabType::Application);
        settings->setEnabled(true);
        redraw_();
    }

    /// Ends the interface and shows the settings in one of another menu, which adds none of its own.
    void openInAnotherMenu_()
    {
        end_();
        session_.emplace(std::make_shared<RibbonMenu>());
        driver_.emplace(*session_);
        ViewerSettingsPlugin::instance()->setEnabled(true);
        driver_->settle();
    }

    void TearDown() override
    {
        ViewerSettingsPlugin::instance()->setEnabled(false);
        WelcomeFixture::TearDown();
    }

    /// What the setting of this label shows, "on" or "off" where it is a switch.
    [[nodiscard]] std::string value_(const char* label) const
    {
        const auto item = driver_->find(label);
        return item ? item->value : "missing";
    }
};

} // namespace VX::Test
