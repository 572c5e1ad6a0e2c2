#include <quorvix/auth/AuthScreens.h>
#include <quorvix/auth/AuthWidgets.h>
#include <quorvix/auth/PasswordRules.h>
#include <quorvix/setup/Translate.h>

#include <VXViewer/Locale.h>

#include <fmt/format.h>

#include <exception>

namespace VX
{

namespace
{

using namespace AuthWidgets; // NOLINT(google-build-using-namespace): the screens are made of these alone
using Product::tr;

constexpr float centered = 0.5F;
constexpr float atRight = 1;

constexpr float smallLogo = 40;
constexpr float largeLogo = 64;
constexpr float logoTop = 14;
constexpr float firstField = 64;
constexpr float textLine = 18;
constexpr float ruleLine = 17;
constexpr float buttonWidth = 240;
constexpr float buttonHeight = 32;

/// "Error: TEXT" in the user's language.
std::string errorLine(const std::string& text)
{
    const std::string word = tr("Error");
    try
    {
        return fmt::format(fmt::runtime(tr("{}: {}")), word, text);
    }
    catch (const std::exception&)
    {
        return word + ": " + text;
    }
}

bool centeredButton(float top, const char* name)
{
    moveTo((width - buttonWidth) / 2, top);
    return UI::primaryButton(tr(name), {UI::px(buttonWidth), UI::px(buttonHeight)});
}

} // namespace

void AuthScreens::drawScreen_()
{
    switch (window_.state)
    {
    case Screen::Error:
        drawError_();
        break;
    case Screen::SignIn:
        window_.webAuth ? drawBrowser_() : drawSignIn_();
        break;
    case Screen::SignUp:
        drawSignUp_();
        break;
    case Screen::ConfirmSignUp:
        drawConfirmSignUp_();
        break;
    case Screen::ResetPassword:
        drawResetPassword_();
        break;
    case Screen::ConfirmReset:
        drawConfirmReset_();
        break;
    case Screen::Starting:
    case Screen::SignedIn:
        break;
    }
}

void AuthScreens::drawError_()
{
    constexpr float textTop = 124;
    constexpr float retryTop = 164;
    logo(36, largeLogo);
    centeredText(textTop, shownError_(), UI::Font::Regular);
    bool retried = false;
    {
        const UI::ScopedDisabled disabled(window_.busy);
        retried = centeredButton(retryTop, translatable("Retry"));
    }
    if (window_.busy)
        drawBusy_(messageTop);
    if (linkInFront(linksTop, centered, tr("Sign Out"), tr("and try with another account.")))
        window_.signOut();
    else if (retried)
        retry_();
}

void AuthScreens::drawBrowser_()
{
    constexpr float titleTop = 104;
    constexpr float signInTop = 142;
    constexpr float errorTop = 186;
    constexpr float rememberTop = 232;
    constexpr float markAndGap = 24;
    logo(28, largeLogo);
    centeredText(titleTop, tr("Welcome back!"), UI::Font::Headline);
    {
        const UI::ScopedDisabled disabled(window_.busy);
        if (centeredButton(signInTop, translatable("Sign In")))
            window_.webAuth->openSignIn();
    }
    if (window_.busy)
        drawBusy_(errorTop);
    else if (!window_.errorText.empty())
        message(errorTop, centered, errorLine(shownError_()), UI::Color::Warning);
    const std::string remember = tr("Remember me");
    moveTo(margin, rememberTop);
    const float rememberWidth = ImGui::CalcTextSize(remember.c_str()).x + UI::px(markAndGap);
    ImGui::SetCursorPosX(UI::px(margin) + (UI::px(column) - rememberWidth) / 2);
    UI::checkbox(remember, window_.rememberMe);
    if (linkLine(linksTop, centered, tr("Don't have an account?"), tr("Sign Up")))
        window_.webAuth->openSignUp();
}

void AuthScreens::drawSignIn_()
{
    constexpr float rememberTop = 180;
    logo(logoTop, smallLogo);
    bool entered = drawField_(Field::Email, translatable("Email"), firstField);
    entered |= drawField_(Field::Password, translatable("Password"), firstField + fieldHeight);
    moveTo(margin, rememberTop);
    {
        const UI::ScopedDisabled disabled(window_.busy);
        UI::checkbox(tr("Remember me"), window_.rememberMe);
    }
    const bool forgotten = linkLine(rememberTop + 2, atRight, tr("Forgot your"), tr("password?"));
    const bool sent = drawSubmit_(translatable("Sign In"), entered);
    const bool isNew = linkLine(linksTop, centered, tr("Need an account?"), tr("Sign Up"));
    if (forgotten)
        goTo_(Screen::ResetPassword);
    else if (isNew)
        goTo_(Screen::SignUp);
    else if (sent)
        window_.requestSignIn({});
}

void AuthScreens::drawSignUp_()
{
    logo(logoTop, smallLogo);
    bool entered = drawField_(Field::Email, translatable("Email"), firstField);
    entered |= drawField_(Field::NewPassword, translatable("Password"), firstField + fieldHeight);
    drawRules_(firstField + 2 * fieldHeight);
    const bool sent = drawSubmit_(translatable("Sign Up"), entered);
    if (linkLine(linksTop, centered, tr("Already have an account?"), tr("Sign In")))
        goTo_(Screen::SignIn);
    else if (sent)
        window_.requestSignUp();
}

void AuthScreens::drawConfirmSignUp_()
{
    constexpr float codeTop = firstField + 3 * textLine + 6;
    logo(logoTop, smallLogo);
    drawSent_(firstField, tr("We have sent a code by email to"), tr("Enter it below to confirm your account."));
    const bool entered = drawField_(Field::Code, translatable("Code"), codeTop);
    bool resent = false;
    {
        const UI::ScopedDisabled disabled(window_.busy);
        resent = linkLine(codeTop + fieldHeight, 0, tr("Didn't receive a code?"), tr("Resend it"));
    }
    const bool sent = drawSubmit_(translatable("Confirm Account"), entered);
    if (linkLine(linksTop, centered, tr("Back to"), tr("Sign Up")))
        goTo_(Screen::SignUp);
    else if (resent)
        resend_();
    else if (sent)
        window_.requestConfirmSignUp();
}

void AuthScreens::drawResetPassword_()
{
    constexpr float emailTop = 92;
    logo(logoTop, smallLogo);
    const bool entered = drawField_(Field::Email, translatable("Email"), emailTop);
    const bool sent = drawSubmit_(translatable("Reset My Password"), entered);
    if (linkLine(linksTop, centered, tr("Back to"), tr("Sign In")))
        goTo_(Screen::SignIn);
    else if (sent)
        window_.requestForgot();
}

void AuthScreens::drawConfirmReset_()
{
    constexpr float textTop = 14;
    constexpr float codeTop = textTop + 3 * textLine + 6;
    drawSent_(textTop, tr("We have sent a password reset code by email to"),
              tr("Enter it below to reset your password."));
    bool entered = drawField_(Field::Code, translatable("Code"), codeTop);
    entered |= drawField_(Field::NewPassword, translatable("New Password"), codeTop + fieldHeight);
    drawRules_(codeTop + 2 * fieldHeight);
    const bool sent = drawSubmit_(translatable("Change Password"), entered);
    if (linkLine(linksTop, centered, tr("Back to"), tr("Sign In")))
        goTo_(Screen::SignIn);
    else if (sent)
        window_.requestConfirmForgot();
}

void AuthScreens::drawSent_(float top, const std::string& sent, const std::string& what) const
{
    centeredText(top, sent, UI::Font::Regular);
    centeredText(top + textLine, window_.destination, UI::Font::SemiBold);
    centeredText(top + 2 * textLine, what, UI::Font::Regular);
}

void AuthScreens::drawRules_(float top) const
{
    const auto& rules = passwordRules();
    for (std::size_t i = 0; i < rules.size(); ++i)
    {
        const std::size_t row = i / 2;
        const float x = margin + (i % 2 == 0 ? 0 : column / 2);
        const float y = top + static_cast<float>(row) * ruleLine;
        rule(x, y, tr(rules.at(i).label), rules.at(i).isMet(window_.password));
    }
}

} // namespace VX
