#pragma once

#include <quorvix/auth/AuthWindow.h>

#include <string>
#include <utility>

namespace VX
{

/// Looks into a sign-in window and sends its requests without the screens.
class AuthWindowAccess
{
public:
    explicit AuthWindowAccess(AuthWindow& window)
        : window_(window)
    {
    }

    [[nodiscard]] int state() const { return static_cast<int>(window_.state); }

    void setState(int state) const { window_.state = static_cast<AuthWindow::Screen>(state); }

    [[nodiscard]] const std::string& errorText() const { return window_.errorText; }

    [[nodiscard]] const std::string& destination() const { return window_.destination; }

    [[nodiscard]] int retriesLeft() const { return window_.retriesLeft; }

    [[nodiscard]] bool isBusy() const { return window_.busy; }

    [[nodiscard]] bool isBackgroundShown() const { return window_.backgroundShown; }

    [[nodiscard]] std::string& email() const { return window_.email; }

    [[nodiscard]] std::string& password() const { return window_.password; }

    [[nodiscard]] std::string& code() const { return window_.code; }

    [[nodiscard]] bool& rememberMe() const { return window_.rememberMe; }

    /// The browser's part, for tests to play.
    void setWebAuth(std::unique_ptr<WebAuthInterface> webAuth) const { window_.webAuth = std::move(webAuth); }

    void requestSignIn(const AuthToken& token = {}) const { window_.requestSignIn(token); }

    void requestSignUp() const { window_.requestSignUp(); }

    void requestConfirmSignUp() const { window_.requestConfirmSignUp(); }

    void requestResendConfirm() const { window_.requestResendConfirm(); }

    void requestForgot() const { window_.requestForgot(); }

    void requestConfirmForgot() const { window_.requestConfirmForgot(); }

    void webAuthSignInCallback() const { window_.webAuthSignInCallback_(); }

private:
    AuthWindow& window_;
};

} // namespace VX
