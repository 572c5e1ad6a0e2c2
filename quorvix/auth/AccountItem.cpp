#include <quorvix/auth/AccountItem.h>
#include <quorvix/auth/AuthWidgets.h>
#include <quorvix/auth/AuthWindow.h>
#include <quorvix/auth/UserInfo.h>
#include <quorvix/setup/Translate.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace VX
{

namespace
{

using Product::tr;

constexpr float side = 28;
constexpr float iconSize = 16;
constexpr float padding = 8;
constexpr float mostText = 160;
constexpr float smallestWindowWithText = 1000;
constexpr float popupWidth = 280;
constexpr const char* popupName = "Account";

constexpr ImGuiWindowFlags popupFlags = ImGuiWindowFlags_Popup | ImGuiWindowFlags_AlwaysAutoResize |
                                        ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoMove |
                                        ImGuiWindowFlags_NoSavedSettings;

/// What of the address is shown; empty in a narrow window.
std::string shownText()
{
    if (ImGui::GetMainViewport()->Size.x < UI::px(smallestWindowWithText))
        return {};
    return UI::elided(UserInfo::getEmail(), UI::px(mostText));
}

} // namespace

float AccountItem::width() const
{
    if (!window_.isAuthed())
        return 0;
    const std::string text = shownText();
    return UI::px(side) + (text.empty() ? 0 : std::ceil(ImGui::CalcTextSize(text.c_str()).x) + UI::px(padding));
}

void AccountItem::draw()
{
    const std::string& email = UserInfo::getEmail();
    const bool open = ImGui::IsPopupOpen(popupName);
    const ImVec2 size(width(), UI::px(side));
    const bool pressed = ImGui::InvisibleButton("##account", size);
    UI::record(UiKind::Button, email, open ? "open" : "");
    const bool hovered = ImGui::IsItemHovered();
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    if (hovered || open)
        draw.AddRectFilled(min, max,
                           UI::color(ImGui::IsItemActive() ? UI::Color::RaisedPressed : UI::Color::RaisedHovered),
                           UI::px(4));
    UI::drawIcon(draw, "user-circle", {min.x + UI::px(side / 2), (min.y + max.y) / 2}, UI::px(iconSize),
                 UI::color(UI::Color::Text));
    const std::string text = shownText();
    if (!text.empty())
        draw.AddText({min.x + UI::px(side), std::round((min.y + max.y - ImGui::GetTextLineHeight()) / 2)},
                     UI::color(UI::Color::Text), text.c_str());
    UI::tooltip(email);
    if (pressed)
        ImGui::OpenPopup(popupName);
    if (ImGui::IsPopupOpen(popupName))
    {
        ImGui::SetNextWindowPos({max.x, max.y + UI::px(2)}, ImGuiCond_Always, {1, 0});
        drawPopup_();
    }
}

void AccountItem::drawPopup_()
{
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding), UI::px(padding)));
    // The button is as light as a pop-up is elsewhere.
    ImGui::PushStyleColor(ImGuiCol_PopupBg, UI::color(UI::Color::Panel));
    const bool visible = UI::beginWindow(popupName, popupFlags);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar();
    bool signsOut = false;
    if (visible)
    {
        UI::secondaryText(tr("Signed in as"));
        ImGui::PushTextWrapPos(ImGui::GetCursorPosX() + UI::px(popupWidth));
        UI::text(UserInfo::getEmail());
        ImGui::PopTextWrapPos();
        UI::separator();
        const float least = UI::px(popupWidth / 2);
        signsOut = UI::button(tr("Sign Out"), {std::max(least, ImGui::GetItemRectSize().x), 0});
    }
    if (signsOut)
        ImGui::CloseCurrentPopup();
    ImGui::EndPopup();
    if (signsOut)
        window_.signOut();
}

} // namespace VX
