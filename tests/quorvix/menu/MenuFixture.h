#pragma once

#include "tests/quorvix/auth/AuthWindowAccess.h"
#include "tests/quorvix/support/AccountsFixture.h"
#include "tests/support/ui/UiDriver.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/menu/QuorvixRibbonMenu.h>

#include <VXMesh/Config.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonSchemaHolder.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VX::Test
{

/// Counts how often it was pressed.
class CountingItem : public RibbonMenuItem
{
public:
    using RibbonMenuItem::RibbonMenuItem;

    void press() override { ++presses; }

    [[nodiscard]] std::string unavailableReason() const override { return reason; }

    int presses = 0;
    std::string reason;
};

/// The application's menu with its steps open to tests.
class OpenMenu : public QuorvixRibbonMenu
{
public:
    using QuorvixRibbonMenu::authWindow_;
    using QuorvixRibbonMenu::itemPressed_;

    bool asksAtStart = false;

protected:
    [[nodiscard]] bool mayAskAtStart_() const override { return asksAtStart; }
};

/// The application's menu in an off-screen window, with a ribbon of the test's own items, a user signed in and a
/// session of telemetry open.
class MenuFixture : public AccountsFixture
{
protected:
    void SetUp() override
    {
        AccountsFixture::SetUp();
        RibbonSchemaHolder::reset();
        // With a tab there, the menu leaves the installed layout alone.
        RibbonSchemaHolder::schema().tabs = {{"Tools", {}, {}}};
        RibbonSchemaHolder::markChanged();
        openSession_("ann@example.com");
    }

    void TearDown() override
    {
        end_();
        RibbonSchemaHolder::reset();
        AccountsFixture::TearDown();
    }

    /// Starts the interface with the menu.
    void start_(PixelSize size = ViewerSession::usualSize, float scale = 1)
    {
        signIn_();
        startSignedOut_(size, scale);
    }

    /// The same while nobody is signed in.
    void startSignedOut_(PixelSize size = ViewerSession::usualSize, float scale = 1)
    {
        session_.emplace(menu_, size, scale);
        driver_.emplace(*session_);
        driver_->settle();
    }

    /// Somebody is signed in from now on, of whom nothing is told to others.
    void signIn_() const
    {
        constexpr int signedIn = 7;
        AuthWindowAccess(*menu_->authWindow_()).setState(signedIn);
    }

    /// Ends the interface.
    void end_()
    {
        driver_.reset();
        session_.reset();
        // The settings were the session's.
        Config::instance().reset("Quorvix");
    }

    /// Draws until nothing changes any more, after a change that no event tells of.
    void redraw_()
    {
        viewer_().incrementForceRedrawFrames(2);
        driver_->settle();
    }

    /// An item of this name in the schema.
    template <typename Item = CountingItem>
    std::shared_ptr<Item> addItem_(const std::string& name)
    {
        auto item = std::make_shared<Item>(name);
        RibbonSchemaHolder::addItem(item);
        return item;
    }

    /// What was reported so far, in order.
    [[nodiscard]] std::vector<std::string> reported_() const
    {
        SessionLogs::flushIfNeeded(true);
        return actions_();
    }

    [[nodiscard]] Viewer& viewer_() const { return session_->viewer(); }

    const std::shared_ptr<OpenMenu> menu_ = std::make_shared<OpenMenu>();
    std::optional<ViewerSession> session_;
    std::optional<UiDriver> driver_;
};

} // namespace VX::Test
