#include "SettingRow.h"

#include "menu/Translate.h"

#include <VXViewer/UI.h>
#include <VXViewer/UiTree.h>

#include <algorithm>

namespace VX
{

namespace
{

constexpr float buttonSide = 28;
constexpr float gap = 8;
constexpr float largestControl = 260;
constexpr float smallestControl = 140;

/// Draws the button at the right end of the line. @return true when it was pressed
bool resetButton(float right, const std::string& name)
{
    ImGui::SameLine(right - UI::px(buttonSide));
    return UI::iconButton("restore", trf("Reset \"{}\"", name), false, {UI::px(buttonSide), UI::px(buttonSide)});
}

} // namespace

void settingSection(const std::string& name)
{
    if (ImGui::GetCursorPosY() > ImGui::GetCursorStartPos().y)
        ImGui::Dummy({0, UI::px(4)});
    {
        const UI::ScopedFont semiBold(UI::Font::SemiBold);
        UI::text(name);
    }
    UI::separator();
}

bool settingRow(const std::string& name, const std::string& tooltip, bool isDefault,
                const std::function<void()>& drawControl)
{
    ImGui::PushID(name.c_str());
    const float left = ImGui::GetCursorPosX();
    const float width = ImGui::GetContentRegionAvail().x;
    const float control = std::clamp(width / 2, UI::px(smallestControl), UI::px(largestControl));
    const float start = width - control - UI::px(gap + buttonSide);

    UI::needGlyphs(name);
    ImGui::AlignTextToFramePadding();
    ImGui::TextUnformatted(UI::elided(name, start - UI::px(gap)).c_str());
    if (!tooltip.empty())
        UI::tooltip(tooltip);

    ImGui::SameLine(left + start);
    ImGui::SetNextItemWidth(control);
    const std::size_t widget = UiTree::instance().drawnCount();
    drawControl();
    UiTree::instance().nameDrawn(widget, name);
    const bool pressed = !isDefault && resetButton(left + width, name);
    ImGui::PopID();
    return pressed;
}

bool settingSwitch(const std::string& name, const std::string& tooltip, bool defaultValue, bool& value)
{
    ImGui::PushID(name.c_str());
    const float right = ImGui::GetCursorPosX() + ImGui::GetContentRegionAvail().x;
    bool changed = UI::checkbox(name, value);
    if (!tooltip.empty())
        UI::tooltip(tooltip);
    if (value != defaultValue && resetButton(right, name))
    {
        value = defaultValue;
        changed = true;
    }
    ImGui::PopID();
    return changed;
}

} // namespace VX
