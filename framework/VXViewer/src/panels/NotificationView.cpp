#include "NotificationView.h"

#include "PlacedText.h"
#include "menu/Translate.h"

#include <VXViewer/UI.h>

#include <fmt/format.h>
#include <imgui.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace VX
{

namespace
{

constexpr float usualWidth = 340;
constexpr float padding = 12;
constexpr float margin = 12;
constexpr float markSide = 20;
constexpr float closeSide = 28;
constexpr float buttonHeight = 28;
constexpr float lineGap = 4;

constexpr ImGuiWindowFlags viewFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                       ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoFocusOnAppearing |
                                       ImGuiWindowFlags_NoNav | ImGuiWindowFlags_NoScrollWithMouse;

UI::Color colorOf(NotificationType type)
{
    switch (type)
    {
    case NotificationType::Error:
        return UI::Color::Error;
    case NotificationType::Warning:
        return UI::Color::Warning;
    case NotificationType::Info:
        break;
    }
    return UI::Color::Accent;
}

const char* iconOf(NotificationType type)
{
    switch (type)
    {
    case NotificationType::Error:
        return "alert-circle";
    case NotificationType::Warning:
        return "alert-triangle";
    case NotificationType::Info:
        break;
    }
    return "info-circle";
}

std::string countText(int count)
{
    return fmt::format("\u00D7{}", count);
}

float textHeight(const std::string& text, ImFont* font, float width)
{
    return text.empty() ? 0 : font->CalcTextSizeA(font->FontSize, FLT_MAX, width, text.c_str()).y;
}

/// The width that is left to the header beside the count.
float headerWidth(const RibbonNotifier::Entry& entry, float width)
{
    if (entry.count < 2)
        return width;
    const float count = ImGui::CalcTextSize(countText(entry.count).c_str()).x;
    return std::max(UI::px(padding), width - count - UI::px(padding));
}

/// The text takes the first line, beside the count, where there is no header.
float contentHeight(const RibbonNotifier::Entry& entry, float width)
{
    const RibbonNotification& shown = entry.notification;
    const float first = headerWidth(entry, width);
    const float header = textHeight(shown.header, UI::font(UI::Font::SemiBold), first);
    const float text = textHeight(shown.text, UI::font(UI::Font::Regular), header > 0 ? width : first);
    return header + text + (header > 0 && text > 0 ? UI::px(lineGap) : 0);
}

} // namespace

bool hasButton(const RibbonNotification& notification)
{
    return notification.onButtonClick && !notification.buttonName.empty();
}

void drawNotificationMark(NotificationType type, float side)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    ImGui::Dummy({side, side});
    UI::drawIcon(*ImGui::GetWindowDrawList(), iconOf(type), {min.x + side / 2, min.y + side / 2}, side,
                 UI::color(colorOf(type)));
}

void drawNotificationText(const RibbonNotifier::Entry& entry, float width)
{
    const ImVec2 start = ImGui::GetCursorPos();
    const float first = headerWidth(entry, width);
    if (entry.count > 1)
    {
        const std::string count = countText(entry.count);
        const float countWidth = ImGui::CalcTextSize(count.c_str()).x;
        const ImVec2 screen = ImGui::GetCursorScreenPos();
        drawPlacedText({screen.x + width - countWidth, screen.y}, UI::Color::SecondaryText, count, countWidth);
    }
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, UI::px(lineGap)));
    const bool hasHeader = !entry.notification.header.empty();
    if (hasHeader)
    {
        const UI::ScopedFont semiBold(UI::Font::SemiBold);
        ImGui::PushTextWrapPos(start.x + first);
        UI::text(entry.notification.header);
        ImGui::PopTextWrapPos();
    }
    ImGui::PushTextWrapPos(start.x + (hasHeader ? width : first));
    if (!entry.notification.text.empty())
        UI::text(entry.notification.text);
    ImGui::PopTextWrapPos();
    ImGui::PopStyleVar();
}

NotificationView::NotificationView(const RibbonNotifier::Entry& entry, const PixelRect& area)
    : entry_(entry)
    , area_(area)
{
    const auto areaWidth = static_cast<float>(area.width);
    const auto areaHeight = static_cast<float>(area.height);
    width_ = std::min(UI::px(usualWidth), areaWidth - 2 * UI::px(margin));
    textWidth_ = width_ - 2 * UI::px(padding) - UI::px(markSide) - UI::px(8) - UI::px(closeSide);
    const float button = hasButton(entry.notification) ? UI::px(buttonHeight) + UI::px(8) : 0;
    const float around = 2 * UI::px(padding) + button;
    const float largest = areaHeight - 2 * UI::px(margin);
    const float text = std::max(contentHeight(entry, textWidth_), UI::px(markSide));
    height_ = std::min(text + around, largest);
    textHeight_ = height_ - around;
}

void NotificationView::drawText_() const
{
    ImGui::SetCursorPos({UI::px(padding) + UI::px(markSide) + UI::px(8), UI::px(padding)});
    // Room for the scroll bar, which a text needs that is higher than the window.
    ImGui::BeginChild("##text", {textWidth_ + ImGui::GetStyle().ScrollbarSize, textHeight_});
    drawNotificationText(entry_, textWidth_);
    ImGui::EndChild();
}

NotificationResponse NotificationView::draw(float bottom) const
{
    NotificationResponse response;
    const float right = static_cast<float>(area_.x + area_.width) - UI::px(margin);
    ImGui::SetNextWindowPos({right - width_, bottom - height_});
    ImGui::SetNextWindowSize({width_, height_});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
    UI::beginWindow(fmt::format("Notification {}", entry_.id).c_str(), viewFlags);
    ImGui::PopStyleVar(2);

    const ImVec2 min = ImGui::GetWindowPos();
    ImGui::GetWindowDrawList()->AddRectFilled(min, {min.x + UI::px(4), min.y + height_},
                                              UI::color(colorOf(entry_.notification.type)), UI::px(4),
                                              ImDrawFlags_RoundCornersLeft);
    ImGui::SetCursorPos({UI::px(padding), UI::px(padding)});
    drawNotificationMark(entry_.notification.type, UI::px(markSide));
    drawText_();
    if (hasButton(entry_.notification))
    {
        ImGui::SetCursorPos(
            {UI::px(padding) + UI::px(markSide) + UI::px(8), height_ - UI::px(padding) - UI::px(buttonHeight)});
        response.buttonPressed = UI::button(entry_.notification.buttonName + "##button");
    }
    ImGui::SetCursorPos({width_ - UI::px(closeSide) - UI::px(4), UI::px(4)});
    response.closed = UI::iconButton("x", tr("Close"));
    response.hovered =
        ImGui::IsWindowHovered(ImGuiHoveredFlags_ChildWindows | ImGuiHoveredFlags_AllowWhenBlockedByActiveItem);
    UI::endWindow();
    return response;
}

} // namespace VX
