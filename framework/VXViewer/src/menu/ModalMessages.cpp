#include "ModalMessages.h"

#include "Translate.h"
#include "ui/LineBreaks.h"
#include "ui/UiNavigation.h"

#include <VXViewer/UI.h>

#include <fmt/format.h>
#include <imgui.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

/// Nobody reads more texts than these; all of them are copied.
constexpr std::size_t maxShown = 100;

constexpr float windowWidth = 440;

/// What the window needs besides the texts, and around itself, in units.
constexpr float spaceAround = 192;

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

/// `text` with a line end wherever a line would be wider than `width` pixels.
std::string brokenText(const std::string& text, float width)
{
    const ImFont* const font = ImGui::GetFont();
    const float scale = ImGui::GetFontSize() / font->FontSize;
    return withLineEnds(text, width,
                        [&](char32_t sign) { return scale * font->GetCharAdvance(static_cast<ImWchar>(sign)); });
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
    if (!UI::beginModal(name, title(group.type), UI::px(windowWidth)))
        return;
    drawMark(group.type);
    drawTexts_(group);
    const bool confirmed = drawButtons_(group) || ImGui::IsKeyPressed(ImGuiKey_Escape, false);
    if (confirmed)
        ImGui::CloseCurrentPopup();
    UI::endModal();
    if (confirmed)
        groups_.pop_front();
}

void ModalMessages::drawTexts_(const Group& group)
{
    const float width = ImGui::GetContentRegionAvail().x;
    const float line = ImGui::GetTextLineHeight();
    // The lines scroll, where they need to, with room for the bar beside them.
    const float textWidth = width - ImGui::GetStyle().ScrollbarSize;
    shown_.clear();
    std::vector<std::pair<std::string, std::size_t>> firstLines;
    std::size_t lines = 0;
    const std::size_t shown = std::min(group.texts.size(), maxShown);
    for (std::size_t i = 0; i < shown; ++i)
    {
        const std::string broken = brokenText(group.texts[i], textWidth);
        shown_ += (i > 0 ? "\n\n" : "") + broken;
        lines += i > 0 ? 1 : 0;
        firstLines.emplace_back(group.texts[i], lines);
        lines += 1 + static_cast<std::size_t>(std::count(broken.begin(), broken.end(), '\n'));
    }
    const float room = ImGui::GetMainViewport()->Size.y - UI::px(spaceAround);
    // Its own scrolling would begin where the text just fits.
    const float textHeight = line * (static_cast<float>(lines) + 0.5F);
    const float height = std::clamp(room, line, std::max(line, textHeight));

    ImGui::BeginChild("##texts", {0, height});
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(0, 0));
    ImGui::PushStyleColor(ImGuiCol_FrameBg, UI::color(UI::Color::Panel));
    const ImVec2 start = ImGui::GetCursorPos();
    ImGui::InputTextMultiline("##text", &shown_, {textWidth, textHeight},
                              ImGuiInputTextFlags_ReadOnly | ImGuiInputTextFlags_NoUndoRedo);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar();
    for (std::size_t i = 0; i < firstLines.size(); ++i)
    {
        const std::size_t end = i + 1 < firstLines.size() ? firstLines[i + 1].second - 1 : lines;
        ImGui::SetCursorPos({start.x, start.y + line * static_cast<float>(firstLines[i].second)});
        ImGui::Dummy({textWidth, line * static_cast<float>(end - firstLines[i].second)});
        UI::record(UiKind::Text, firstLines[i].first);
    }
    ImGui::EndChild();
    if (shown < group.texts.size())
        UI::secondaryText(trf("and {} more", group.texts.size() - shown));
    ImGui::Dummy({0, UI::px(8)});
}

/// @return true when the user confirmed
bool ModalMessages::drawButtons_(const Group& group)
{
    const float width = UI::px(88);
    const std::string copy = tr("Copy");
    const bool copies = UI::button(copy, {std::max(width, UI::buttonWidth(copy)), 0}) ||
                        (!ImGui::GetIO().WantTextInput && ImGui::IsKeyChordPressed(ImGuiMod_Ctrl | ImGuiKey_C));
    const bool enterCopies = UiNavigation::isActive() && ImGui::IsItemFocused();
    if (copies)
        ImGui::SetClipboardText(fmt::format("{}", fmt::join(group.texts, "\n\n")).c_str());
    ImGui::SameLine();
    ImGui::SetCursorPosX(ImGui::GetCursorPosX() + ImGui::GetContentRegionAvail().x - width);
    const bool pressed = UI::primaryButton(tr("OK"), {width, 0});
    const bool entered = ImGui::IsKeyPressed(ImGuiKey_Enter, false) || ImGui::IsKeyPressed(ImGuiKey_KeypadEnter, false);
    return pressed || (entered && !enterCopies);
}

} // namespace VX
