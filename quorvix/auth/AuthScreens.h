#pragma once

#include <quorvix/auth/AuthWindow.h>

#include <VXViewer/Locale.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// Stands behind the service's message, in English, where the stored sign-in is too old.
inline constexpr const char* sessionExpired = translatable(" Session expired. Please log in again.");

/// What the sign-in window shows: the screen of the window's state over a background that hides all else. What the
/// user types goes into the window's fields, and what is wrong with it is told beside each field.
/// @threads the UI thread
class AuthScreens
{
public:
    explicit AuthScreens(AuthWindow& window)
        : window_(window)
    {
    }

    /// Draws the screen, if the state has one. To be called within a frame.
    void draw();

    /// Overwrites what the interface keeps of a text that was typed, and hides the password again.
    void forget();

private:
    using Screen = AuthWindow::Screen;

    enum class Field
    {
        Email,
        Password,
        NewPassword, ///< the same text as `Password`, with rules
        Code,
        Count
    };

    void drawBackground_();
    void drawScreen_();
    void enterScreen_();

    void drawError_();
    void drawBrowser_();
    void drawSignIn_();
    void drawSignUp_();
    void drawConfirmSignUp_();
    void drawResetPassword_();
    void drawConfirmReset_();

    /// @return true when Enter was pressed in it
    bool drawField_(Field field, const char* name, float top);
    void drawEye_(float top);
    void drawRules_(float top) const;

    /// Where a code went, and what to do with it.
    void drawSent_(float top, const std::string& sent, const std::string& what) const;

    /// The button that sends the form, and above it what there is to say of the request.
    /// @return true when it was pressed, or `entered`, and the fields are right
    bool drawSubmit_(const char* name, bool entered);
    void drawMessage_();
    void drawBusy_(float top);

    /// Those of the screen, from top to bottom.
    [[nodiscard]] std::vector<Field> fields_() const;
    bool check_();
    [[nodiscard]] std::string problem_(Field field) const;
    [[nodiscard]] std::string& text_(Field field) const;
    [[nodiscard]] std::string& error_(Field field);
    [[nodiscard]] bool hasFieldErrors_() const;

    /// The window's error in the user's language.
    [[nodiscard]] std::string shownError_() const;
    void edited_(Field field);
    void focusOn_(Field field);
    void resend_();

    /// Signs the user of the window in again.
    void retry_();

    /// Leaves the screen, and with it the request that it made.
    void goTo_(Screen screen);
    void cancel_();

    AuthWindow& window_;
    std::optional<Screen> shown_; ///< in the frame before; nothing while the window was not drawn
    std::array<std::string, static_cast<std::size_t>(Field::Count)> errors_; ///< in English
    std::optional<Field> focus_; ///< gets the keyboard when it is drawn next
    bool isRevealed_ = false;
    bool wasBusy_ = false;   ///< as the frame before left it
    bool wasBehind_ = false; ///< a message stood before the window in the frame before
};

} // namespace VX
