#pragma once

#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXMesh/Object.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Toolbar.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// Counts its presses; can be a tool or unavailable.
class CountingItem : public RibbonMenuItem
{
public:
    using RibbonMenuItem::RibbonMenuItem;

    void press() override
    {
        ++presses;
        active = tool && !active;
    }

    [[nodiscard]] std::string unavailableReason() const override { return reason; }

    [[nodiscard]] bool isActive() const override { return active; }

    [[nodiscard]] bool isTool() const override { return tool; }

    void deactivate() override { active = false; }

    void drawPanel() override
    {
        ++panels;
        if (panelDrawn)
            panelDrawn();
    }

    int presses = 0;
    int panels = 0;
    bool tool = false;
    bool active = false;
    std::string reason;
    std::function<void()> panelDrawn;
};

/// A ribbon that tells what it was asked to do.
class RecordingRibbonMenu : public RibbonMenu
{
public:
    void pushNotification(const RibbonNotification& notification) override
    {
        notifications.push_back(notification.text);
        RibbonMenu::pushNotification(notification);
    }

    std::vector<std::string> notifications;
    std::vector<std::string> pressed;
    std::vector<std::string> steps;

protected:
    bool itemPressed_(const std::shared_ptr<RibbonMenuItem>& item, const std::string& unavailableReason) override
    {
        const bool accepted = RibbonMenu::itemPressed_(item, unavailableReason);
        if (accepted)
            pressed.push_back(item->name());
        return accepted;
    }

    void drawWelcomeWindow_() override { steps.emplace_back("welcome"); }

    void draw_helpers() override
    {
        steps.emplace_back("helpers");
        RibbonMenu::draw_helpers();
    }

    void drawVersionWindow_() override { steps.emplace_back("version"); }

    void onFirstSignInFrame() override { steps.emplace_back("signed in"); }
};

/// The ribbon of a small schema in a window.
///
/// Tab "Home": group "File" with "Open It" (large) and "Save It" and "Close It" (small, "Shut"); group "Tools" with
/// "Measure" (a tool) the drop-down "Sides" of "From Front" and "From Top", "Tool A" and "Tool B" (small). Tab
/// "Second": group "Other" with "Other Thing". Tab "Mesh", for meshes: group "Repair" with "Repair It". Quick access:
/// "Save It". Toolbar: "Measure".
class RibbonFixture : public testing::Test
{
protected:
    explicit RibbonFixture(PixelSize size = ViewerSession::usualSize);
    ~RibbonFixture() override;

    [[nodiscard]] CountingItem& item_(const std::string& name) const;

    TempDir folder_;
    std::vector<std::shared_ptr<CountingItem>> items_ = makeItems_();
    std::shared_ptr<RecordingRibbonMenu> menu_ = std::make_shared<RecordingRibbonMenu>();
    ViewerSession session_;
    Viewer& viewer_ = session_.viewer();
    UiDriver driver_{session_};

private:
    std::vector<std::shared_ptr<CountingItem>> makeItems_();
};

} // namespace VX::Test
