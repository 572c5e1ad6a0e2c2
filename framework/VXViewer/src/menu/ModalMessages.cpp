#include "ModalMessages.h"

#include "Translate.h"

#include <VXViewer/UI.h>

#include <algorithm>

namespace VX
{

namespace
{

/// More texts than these would not fit into a window.
constexpr std::size_t maxShown = 8;

const char* windowName(NotificationType type)
{
    switch (type)
    {
    case NotificationType::Error:
        return "Error Modal";
    case NotificationType::Warning:
        return "Warning Modal";
    case NotificationType::Info:
        break;
    }
    return "Info Modal";
}

std::string title(NotificationType type)
{
    switch (type)
    {
    case NotificationType::Error:
        return tr("Error");
    case NotificationType::Warning:
        return tr("Warning");
    case NotificationType::Info:
        break;
    }
    return tr("Information");
}

/// A bar in the colour of the kind along the upper edge of the window.
void drawMark(NotificationType type)
{
    UI::Color color = UI::Color::Accent;
    if (type == NotificationType::Error)
        color = UI::Color::Error;
    else if (type == NotificationType::Warning)
        color = UI::Color::Warning;
    const ImVec2 min = ImGui::GetWindowPos();
    const ImVec2 max(min.x + ImGui::GetWindowWidth(), min.y + UI::px(4));
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->PushClipRect(min, max);
    draw->AddRectFilled(min, max, UI::color(color), UI::px(4), ImDrawFlags_RoundCornersTop);
    draw->PopClipRect();
}

} // namespace

void ModalMessages::add(const std::string& text, NotificationType type)
{
    const auto same =
        std::find_if(groups_.begin(), groups_.end(), [&](const Group& group) { return group.type == type; });
    if (same == groups_.end())
        groups_.push_back({type, {text}});
    else if (std::find(same->texts.begin(), same->texts.end(), text) == same->texts.end())
        same->texts.push_back(text);
}

void ModalMessages::draw()
{
    if (groups_.empty())
        return;
    const Group& group = groups_.front();
    const char* name = windowName(group.type);
    if (!ImGui::IsPopupOpen(name))
        ImGui::OpenPopup(name);
    if (!UI::beginModal(name, title(group.type), UI::px(440)))
        return;
    drawMark(group.type);
    const std::size_t shown = std::min(group.texts.size(), maxShown);
    for (std::size_t i = 0; i < shown; ++i)
        UI::wrappedText(group.texts[i]);
    if (shown < group.texts.size())
        UI::secondaryText(trf("and {} more", group.texts.size() - shown));
    ImGui::Dummy({0, UI::px(8)});
    const float width = UI::px(88);
    ImGui::SetCursorPosX(ImGui::GetWindowWidth() - ImGui::GetStyle().WindowPadding.x - UI::px(12) - width);
    const bool confirmed = UI::primaryButton(tr("OK"), {width, 0}) || ImGui::IsKeyPressed(ImGuiKey_Enter, false) ||
                           ImGui::IsKeyPressed(ImGuiKey_KeypadEnter, false) ||
                           ImGui::IsKeyPressed(ImGuiKey_Escape, false);
    if (confirmed)
        ImGui::CloseCurrentPopup();
    UI::endModal();
    if (confirmed)
        groups_.pop_front();
}

} // namespace VX
