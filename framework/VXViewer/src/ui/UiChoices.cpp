#include "UiDrawing.h"
#include "UiState.h"

#include <VXViewer/UI.h>

#include <imgui_internal.h>

#include <cmath>

namespace VX::UI
{

namespace
{

constexpr float markUnits = 16;
constexpr float gapUnits = 8;

/// An item as high as the other controls: a mark, which the caller draws, and the label at its right.
struct MarkedItem
{
    ImVec2 center; ///< of the mark
    bool pressed = false;
    bool hovered = false;
};

MarkedItem drawMarkedItem(const std::string& label)
{
    const std::string shown = visiblePart(label);
    const ImVec2 textSize = ImGui::CalcTextSize(shown.c_str());
    const float mark = px(markUnits);
    const float gap = shown.empty() ? 0 : px(gapUnits);
    MarkedItem item;
    item.pressed = ImGui::InvisibleButton(label.c_str(), {mark + gap + textSize.x, px(controlHeight)});
    item.hovered = ImGui::IsItemHovered();
    const ImVec2 min = ImGui::GetItemRectMin();
    const float middle = std::round((min.y + ImGui::GetItemRectMax().y) / 2);
    item.center = {min.x + mark / 2, middle};
    ImGui::RenderNavHighlight({min, ImGui::GetItemRectMax()}, ImGui::GetItemID());
    ImGui::GetWindowDrawList()->AddText({min.x + mark + gap, std::round(middle - textSize.y / 2)},
                                        ImGui::GetColorU32(ImGuiCol_Text), shown.c_str());
    return item;
}

ImU32 dimmed(Color color)
{
    return ImGui::GetColorU32(colorVec(color));
}

ImU32 fill(bool on, bool hovered)
{
    if (on)
        return dimmed(hovered ? Color::AccentHovered : Color::Accent);
    return dimmed(hovered ? Color::RaisedHovered : Color::Window);
}

} // namespace

bool checkbox(const std::string& label, bool& value)
{
    const MarkedItem item = drawMarkedItem(label);
    if (item.pressed)
        value = !value;
    record(UiKind::Checkbox, label, value ? "on" : "off");
    const float half = px(markUnits) / 2;
    const ImVec2 min(item.center.x - half, item.center.y - half);
    const ImVec2 max(item.center.x + half, item.center.y + half);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->AddRectFilled(min, max, fill(value, item.hovered), px(3));
    if (!value)
        draw->AddRect(min, max, dimmed(Color::SecondaryText), px(3), 0, px(1));
    else
        ImGui::RenderCheckMark(draw, {min.x + px(3), min.y + px(3)}, dimmed(Color::AccentText), px(10));
    return item.pressed;
}

bool radio(const std::string& label, int& value, int choice)
{
    const MarkedItem item = drawMarkedItem(label);
    const bool changed = item.pressed && value != choice;
    if (changed)
        value = choice;
    const bool on = value == choice;
    record(UiKind::Radio, label, on ? "on" : "off");
    const float radius = px(markUnits) / 2;
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->AddCircleFilled(item.center, radius, fill(on, item.hovered));
    if (!on)
        draw->AddCircle(item.center, radius - px(1) / 2, dimmed(Color::SecondaryText), 0, px(1));
    else
        draw->AddCircleFilled(item.center, px(3), dimmed(Color::AccentText));
    return changed;
}

} // namespace VX::UI
