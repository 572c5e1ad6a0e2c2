#pragma once

#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Locale.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <gtest/gtest.h>

#include <memory>

namespace VX::Test
{

/// A menu that draws the settings window.
class MenuWithSettings : public ImGuiMenu
{
public:
    void drawAdditionalWindows() override
    {
        ViewerSettingsPlugin::instance()->drawPanel();
        ImGuiMenu::drawAdditionalWindows();
    }
};

/// A viewer with stored settings; what they change of the process is as it was at the end.
class SettingsFixture : public testing::Test
{
protected:
    explicit SettingsFixture(PixelSize size = ViewerSession::usualSize, float scale = 1)
        : session_(menu_, size, scale)
    {
        viewer_.setSettingsManager(std::make_unique<ViewerSettingsManager>());
    }

    ~SettingsFixture() override
    {
        Locale::set("en");
        ColorTheme::setupDefaultDark();
        UI::setUserScale(1);
    }

    void open_(ViewerSettingsPlugin::TabType tab = ViewerSettingsPlugin::TabType::Application)
    {
        settings_.setEnabled(true);
        settings_.setActiveTab(tab);
        driver_.settle();
    }

    std::shared_ptr<MenuWithSettings> menu_ = std::make_shared<MenuWithSettings>();
    ViewerSession session_;
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};
    ViewerSettingsPlugin& settings_ = *ViewerSettingsPlugin::instance();
};

} // namespace VX::Test
