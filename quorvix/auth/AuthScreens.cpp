#include <quorvix/auth/AuthScreens.h>
#include <quorvix/auth/AuthWidgets.h>
#include <quorvix/auth/Credentials.h>
#include <quorvix/auth/PasswordRules.h>
#include <quorvix/setup/Translate.h>

#include <VXViewer/Locale.h>
#include <VXViewer/Viewer.h>

#include <imgui_internal.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

using Product::tr;

constexpr ImGuiWindowFlags backgroundFlags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize |
                                             ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoScrollbar |
                                             ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoNavFocus;

constexpr ImGuiWindowFlags windowFlags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize |
                                         ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoCollapse |
                                         ImGuiWindowFlags_NoSavedSettings;

constexpr float rounding = 8;
constexpr float buttonHeight = 32;
constexpr float eyeSize = 28;
constexpr float eyeGap = 4;
constexpr std::size_t mostCharacters = 1024;

/// The keyboard reaches a field in the second frame after that was asked for.
constexpr int framesToFocus = 3;

/// Of an error, which may be empty.
std::string translated(const std::string& error)
{
    return error.empty() ? std::string() : tr(error.c_str());
}

bool isPopupOpen()
{
    return ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

} // namespace

void AuthScreens::draw()
{
    if (!window_.isCovering())
    {
        shown_.reset();
        return;
    }
    window_.coveringBegins_();
    drawBackground_();

    const ImGuiViewport& viewport = *ImGui::GetMainViewport();
    const ImVec2 whole(UI::px(AuthWidgets::width), UI::px(AuthWidgets::height));
    const ImVec2 size(std::min(whole.x, viewport.Size.x), std::min(whole.y, viewport.Size.y));
    const bool fits = size.x >= whole.x && size.y >= whole.y;
    ImGui::SetNextWindowPos(viewport.GetCenter(), ImGuiCond_Always, {0.5F, 0.5F});
    ImGui::SetNextWindowSize(size);
    // A message is modal, and goes on being so.
    const bool isBehind = isPopupOpen();
    if (!isBehind)
        ImGui::SetNextWindowFocus();
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, UI::px(rounding));
    UI::beginWindow("Auth window", fits
                                       ? windowFlags | ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoScrollWithMouse
                                       : windowFlags);
    ImGui::PopStyleVar(2);
    const bool comesBack = std::exchange(wasBehind_, isBehind) && !isBehind;
    if (ImGui::IsWindowAppearing() || comesBack || shown_ != window_.state)
        enterScreen_();
    else if (wasBusy_ && !window_.busy && !window_.errorText.empty() && !fields_().empty())
        focusOn_(fields_().back());
    if (UI::escapePressed() && window_.busy)
        cancel_();
    drawScreen_();
    wasBusy_ = window_.busy;
    UI::endWindow();
}

void AuthScreens::forget()
{
    isRevealed_ = false;
    UI::wipeTypedText();
}

void AuthScreens::drawBackground_()
{
    const ImGuiViewport& viewport = *ImGui::GetMainViewport();
    ImGui::SetNextWindowPos(viewport.Pos);
    ImGui::SetNextWindowSize(viewport.Size);
    ImGui::PushStyleColor(ImGuiCol_WindowBg, UI::color(UI::Color::Window));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, 0);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0);
    UI::beginWindow("Background", backgroundFlags);
    ImGui::PopStyleVar(2);
    ImGui::PopStyleColor();
    // What opens later, as a tool that was left active, would stand before it.
    if (!isPopupOpen())
        ImGui::BringWindowToDisplayFront(ImGui::GetCurrentWindow());
    UI::endWindow();
}

void AuthScreens::enterScreen_()
{
    if (std::exchange(shown_, window_.state) != window_.state)
    {
        errors_ = {};
        isRevealed_ = false;
    }
    const std::vector<Field> fields = fields_();
    const auto empty = std::ranges::find_if(fields, [this](Field field) { return text_(field).empty(); });
    if (!fields.empty())
        focusOn_(empty != fields.end() ? *empty : fields.back());
    getViewerInstance().incrementForceRedrawFrames(framesToFocus);
}

void AuthScreens::focusOn_(Field field)
{
    focus_ = field;
    getViewerInstance().incrementForceRedrawFrames(framesToFocus);
}

std::vector<AuthScreens::Field> AuthScreens::fields_() const
{
    switch (window_.state)
    {
    case Screen::SignIn:
        return window_.webAuth ? std::vector<Field>() : std::vector{Field::Email, Field::Password};
    case Screen::SignUp:
        return {Field::Email, Field::NewPassword};
    case Screen::ConfirmSignUp:
        return {Field::Code};
    case Screen::ResetPassword:
        return {Field::Email};
    case Screen::ConfirmReset:
        return {Field::Code, Field::NewPassword};
    default:
        return {};
    }
}

std::string& AuthScreens::text_(Field field) const
{
    switch (field)
    {
    case Field::Email:
        return window_.email;
    case Field::Code:
        return window_.code;
    default:
        return window_.password;
    }
}

std::string& AuthScreens::error_(Field field)
{
    return errors_.at(static_cast<std::size_t>(field));
}

bool AuthScreens::hasFieldErrors_() const
{
    return std::ranges::any_of(errors_, [](const std::string& error) { return !error.empty(); });
}

std::string AuthScreens::problem_(Field field) const
{
    const std::string& text = text_(field);
    switch (field)
    {
    case Field::Email:
        return isValidEmail(text) ? "" : translatable("Please enter valid email");
    case Field::Password:
        return !text.empty() ? "" : translatable("Please enter your password");
    case Field::NewPassword:
        return isGoodPassword(text) ? "" : translatable("Please enter valid password");
    case Field::Code:
        return !text.empty() ? "" : translatable("Please enter verification code");
    default:
        return {};
    }
}

std::string AuthScreens::shownError_() const
{
    const std::string& error = window_.errorText;
    if (!error.ends_with(sessionExpired))
        return translated(error);
    // What stands before it is the service's.
    const std::size_t length = error.size() - std::string_view(sessionExpired).size();
    return translated(error.substr(0, length)) + tr(sessionExpired);
}

bool AuthScreens::check_()
{
    window_.errorText.clear();
    const std::vector<Field> fields = fields_();
    for (const Field field : fields)
        error_(field) = problem_(field);
    const auto wrong = std::ranges::find_if(fields, [this](Field field) { return !error_(field).empty(); });
    if (wrong == fields.end())
        return true;
    window_.errorText = error_(*wrong);
    focusOn_(*wrong);
    return false;
}

void AuthScreens::edited_(Field field)
{
    if (error_(field).empty())
        return;
    error_(field).clear();
    const auto left = std::ranges::find_if(errors_, [](const std::string& error) { return !error.empty(); });
    window_.errorText = left != errors_.end() ? *left : std::string();
}

void AuthScreens::goTo_(Screen screen)
{
    window_.abandonRequest_();
    window_.errorText.clear();
    window_.state = screen;
    getViewerInstance().incrementForceRedrawFrames(framesToFocus);
}

void AuthScreens::resend_()
{
    errors_ = {};
    window_.errorText.clear();
    window_.requestResendConfirm();
}

void AuthScreens::retry_()
{
    // The sign-in that is stored may be another user's.
    const AuthToken stored = loadAuthToken();
    window_.requestSignIn(stored.login == window_.email ? stored : AuthToken());
}

void AuthScreens::cancel_()
{
    window_.abandonRequest_();
    if (!fields_().empty())
        focusOn_(fields_().back());
}

bool AuthScreens::drawField_(Field field, const char* name, float top)
{
    const UI::ScopedDisabled disabled(window_.busy);
    const bool isSecret = field == Field::Password || field == Field::NewPassword;
    AuthWidgets::label(top, tr(name), translated(error_(field)));
    if (!window_.busy && focus_ == field)
    {
        ImGui::SetKeyboardFocusHere();
        focus_.reset();
    }
    AuthWidgets::FieldOptions options;
    options.limit = field == Field::Email ? 0 : mostCharacters;
    options.password = isSecret;
    options.revealed = isRevealed_;
    if (isSecret)
        options.width = AuthWidgets::column - eyeSize - eyeGap;
    const AuthWidgets::FieldResult result = AuthWidgets::field(top, tr(name), text_(field), options);
    if (result.edited)
        edited_(field);
    if (isSecret)
        drawEye_(top);
    return result.entered;
}

void AuthScreens::drawEye_(float top)
{
    AuthWidgets::moveTo(AuthWidgets::margin + AuthWidgets::column - eyeSize, top + AuthWidgets::labelHeight);
    if (UI::iconButton(isRevealed_ ? "eye-off" : "eye", isRevealed_ ? tr("Hide password") : tr("Show password"), false,
                       {UI::px(eyeSize), UI::px(eyeSize)}))
        isRevealed_ = !isRevealed_;
}

bool AuthScreens::drawSubmit_(const char* name, bool entered)
{
    drawMessage_();
    const UI::ScopedDisabled disabled(window_.busy);
    AuthWidgets::moveTo(AuthWidgets::margin, AuthWidgets::buttonTop);
    const bool pressed = UI::primaryButton(tr(name), {UI::px(AuthWidgets::column), UI::px(buttonHeight)});
    return (pressed || (entered && !window_.busy)) && check_();
}

void AuthScreens::drawMessage_()
{
    if (window_.busy)
        drawBusy_(AuthWidgets::messageTop);
    else if (!window_.errorText.empty() && !hasFieldErrors_())
        AuthWidgets::message(AuthWidgets::messageTop, 0, shownError_(), UI::Color::Error);
}

void AuthScreens::drawBusy_(float top)
{
    if (AuthWidgets::linkLine(top, 0.5F, tr("Waiting for the account service"), tr("Cancel")))
        cancel_();
}

} // namespace VX
