#pragma once

#include "tests/quorvix/auth/AuthWindowFixture.h"
#include "tests/support/ui/UiDriver.h"
#include "tests/support/ui/ViewerSession.h"
#include <quorvix/auth/AccountItem.h>

#include <VXMesh/Config.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonSchemaHolder.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VX::Test
{

/// A ribbon with a sign-in window before it.
class AuthMenu : public RibbonMenu
{
public:
    void drawAdditionalWindows() override
    {
        if (auth)
            auth->drawIfNeeded();
        RibbonMenu::drawAdditionalWindows();
    }

    void shutdown() override
    {
        account.reset();
        auth.reset();
        RibbonMenu::shutdown();
    }

    [[nodiscard]] bool isCovered() const override { return auth && auth->isCovering(); }

    std::optional<AuthWindow> auth;
    std::optional<AccountItem> account;
    int firstSignInFrames = 0;

protected:
    float headerAccountWidth_() override { return account ? account->width() : 0; }

    void drawHeaderAccount_() override { account->draw(); }

    void onFirstSignInFrame() override { ++firstSignInFrames; }
};

/// The pages of the web application, of which it tells which were opened.
class RecordingWebAuth : public WebAuthInterface
{
public:
    explicit RecordingWebAuth(std::vector<std::string>& calls)
        : calls_(calls)
    {
    }

    void openSignIn() override { calls_.emplace_back("sign-in"); }

    void openSignUp() override { calls_.emplace_back("sign-up"); }

    void openForgotPassword() override { calls_.emplace_back("forgot-password"); }

    void notifyAboutSignOut() override { calls_.emplace_back("signed out"); }

private:
    std::vector<std::string>& calls_;
};

/// The sign-in window in an off-screen window.
class AuthUiFixture : public AuthWindowFixture
{
protected:
    static constexpr const char* authWindow = "Auth window";

    void SetUp() override
    {
        AuthWindowFixture::SetUp();
        RibbonSchemaHolder::reset();
        RibbonSchemaHolder::schema().tabs = {{"Tools", {}, {}}};
        RibbonSchemaHolder::markChanged();
    }

    void TearDown() override
    {
        driver_.reset();
        session_.reset();
        // The settings were the session's.
        Config::instance().reset("QuorvixTest");
        RibbonSchemaHolder::reset();
        AuthWindowFixture::TearDown();
    }

    /// Shows the window with the screen `state`; in the browser variant its calls come into `calls_`.
    AuthWindowAccess show_(int state = 2, bool browser = false, PixelSize size = ViewerSession::usualSize,
                           float scale = 1)
    {
        session_.emplace(menu_, size, scale);
        driver_.emplace(*session_);
        menu_->auth.emplace(false);
        menu_->account.emplace(*menu_->auth);
        const AuthWindowAccess window(*menu_->auth);
        if (browser)
            window.setWebAuth(std::make_unique<RecordingWebAuth>(calls_));
        driver_->settle();
        goTo_(window, state);
        return window;
    }

    void goTo_(const AuthWindowAccess& window, int state)
    {
        window.setState(state);
        redraw_();
    }

    void redraw_()
    {
        session_->viewer().incrementForceRedrawFrames(3);
        driver_->settle();
    }

    /// Presses the field and types into it.
    void fill_(const char* field, const char* text)
    {
        driver_->press(field, authWindow);
        driver_->type(text);
    }

    void answer_(int code, const std::string& text)
    {
        answerAccount_(code, text);
        driver_->settle();
    }

    void press_(const char* label) { driver_->press(label, authWindow); }

    [[nodiscard]] bool shows_(const char* label) const { return driver_->shows(label, authWindow); }

    const std::shared_ptr<AuthMenu> menu_ = std::make_shared<AuthMenu>();
    std::optional<ViewerSession> session_;
    std::optional<UiDriver> driver_;
    std::vector<std::string> calls_;
};

} // namespace VX::Test
