#include "../menu/Translate.h"
#include "UiDrawing.h"

#include <VXViewer/RibbonIcons.h>
#include <VXViewer/UI.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace VX::UI
{

namespace
{

constexpr float iconUnits = 16;

bool coloredButton(const std::string& label, ImVec2 size, std::array<Color, 3> colors, Color textColor)
{
    ImGui::PushStyleColor(ImGuiCol_Button, color(colors[0]));
    ImGui::PushStyleColor(ImGuiCol_ButtonHovered, color(colors[1]));
    ImGui::PushStyleColor(ImGuiCol_ButtonActive, color(colors[2]));
    ImGui::PushStyleColor(ImGuiCol_Text, color(textColor));
    const bool pressed = ImGui::Button(label.c_str(), controlSize(size));
    ImGui::PopStyleColor(4);
    return pressed;
}

/// Without a frame until the mouse comes.
bool flatButton(const std::string& label, bool active, ImVec2 size)
{
    ImGui::PushStyleColor(ImGuiCol_Button, active ? color(Color::Raised) : 0);
    ImGui::PushStyleColor(ImGuiCol_ButtonHovered, color(Color::RaisedHovered));
    ImGui::PushStyleColor(ImGuiCol_ButtonActive, color(Color::RaisedPressed));
    const bool pressed = ImGui::Button(label.c_str(), controlSize(size));
    ImGui::PopStyleColor(3);
    return pressed;
}

/// The line below the choice that holds.
void underline()
{
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    ImGui::GetWindowDrawList()->AddRectFilled({min.x, max.y - px(2)}, max, color(Color::Accent), px(1));
}

ImVec2 itemCenter()
{
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    return {(min.x + max.x) / 2, (min.y + max.y) / 2};
}

} // namespace

bool button(const std::string& label, ImVec2 size)
{
    const bool pressed =
        coloredButton(label, size, {Color::Raised, Color::RaisedHovered, Color::RaisedPressed}, Color::Text);
    record(UiKind::Button, label);
    return pressed;
}

bool primaryButton(const std::string& label, ImVec2 size)
{
    const ScopedFont semiBold(Font::SemiBold);
    const bool disabled = isDisabledNow();
    const bool pressed =
        disabled ? coloredButton(label, size, {Color::Raised, Color::Raised, Color::Raised}, Color::Text)
                 : coloredButton(label, size, {Color::Accent, Color::AccentHovered, Color::Accent}, Color::AccentText);
    record(UiKind::Button, label);
    return pressed;
}

bool toolButton(const std::string& label, bool active, ImVec2 size)
{
    const bool pressed = flatButton(label, active, size);
    record(UiKind::Button, label, active ? "on" : "");
    if (active)
        underline();
    return pressed;
}

float buttonWidth(const std::string& label)
{
    return ImGui::CalcTextSize(label.c_str(), nullptr, true).x + 2 * ImGui::GetStyle().FramePadding.x;
}

bool iconButton(const std::string& icon, const std::string& label, bool active, ImVec2 size)
{
    size = controlSize(size);
    if (size.x <= 0)
        size.x = px(controlHeight);
    ImGui::PushID(label.c_str());
    const bool pressed = flatButton("##icon", active, size);
    ImGui::PopID();
    record(UiKind::IconButton, label, active ? "on" : "");
    const Color tint = active ? Color::Accent : Color::Text;
    drawIcon(*ImGui::GetWindowDrawList(), icon, itemCenter(), px(iconUnits), ImGui::GetColorU32(colorVec(tint)));
    tooltip(visiblePart(label));
    return pressed;
}

bool buttonIconEx(const std::string& icon, float iconSize, const std::string& label, ImVec2 buttonSize)
{
    const std::string shown = visiblePart(label);
    ImGui::PushID(label.c_str());
    const bool pressed = ImGui::Button("##icon", controlSize(buttonSize));
    ImGui::PopID();
    record(UiKind::IconButton, label);
    const ImVec2 textSize = ImGui::CalcTextSize(shown.c_str());
    const float gap = shown.empty() ? 0 : px(4);
    const float height = iconSize + gap + (shown.empty() ? 0 : textSize.y);
    const ImVec2 center = itemCenter();
    const float top = std::round(center.y - height / 2);
    const ImU32 tint = ImGui::GetColorU32(ImGuiCol_Text);
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    drawIcon(draw, icon, {center.x, top + iconSize / 2}, iconSize, tint);
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    draw.PushClipRect(min, max, true);
    draw.AddText({std::round(std::max(min.x, center.x - textSize.x / 2)), top + iconSize + gap}, tint, shown.c_str());
    draw.PopClipRect();
    return pressed;
}

void icon(const std::string& name, float units, Color tint)
{
    // In the middle of the line of text that it stands beside.
    ImGui::Dummy({px(units), std::max(px(units), ImGui::GetTextLineHeight())});
    drawIcon(*ImGui::GetWindowDrawList(), name, itemCenter(), px(units), ImGui::GetColorU32(colorVec(tint)));
    record(UiKind::Icon, {}, name);
}

void drawIcon(ImDrawList& draw, const std::string& name, ImVec2 center, float size, ImU32 tint)
{
    const RibbonIcons::Icon* found = RibbonIcons::find(name, size);
    if (!found)
        return;
    const ImVec2 min(std::round(center.x - size / 2), std::round(center.y - size / 2));
    draw.AddImage(found->texture, min, {min.x + size, min.y + size}, {0, 0}, {1, 1}, tint);
}

} // namespace VX::UI

bool ImGui::ModalExitButton()
{
    return VX::UI::iconButton("x", VX::tr("Close"));
}
