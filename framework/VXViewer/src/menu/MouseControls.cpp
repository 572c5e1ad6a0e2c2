#include "MouseControls.h"

#include "Translate.h"

#include <VXViewer/UI.h>

#include <algorithm>
#include <array>
#include <utility>

namespace VX
{

namespace
{

constexpr std::array<std::pair<const char*, const char*>, 7> mouseControls{
    {{translatable("Left drag"), translatable("Turn about the point under the mouse")},
     {translatable("Alt + left drag"), translatable("Turn freely, over the poles too")},
     {translatable("Middle drag, Shift + left drag"), translatable("Move sideways")},
     {translatable("Wheel, right drag"), translatable("Zoom")},
     {translatable("Double click"), translatable("Bring the point to the middle")},
     {translatable("Click"), translatable("Select")},
     {translatable("Ctrl + click, Shift + click"), translatable("Select more")}}};

constexpr float gap = 20;

float widthOf(const char* text)
{
    return ImGui::CalcTextSize(tr(text).c_str()).x;
}

} // namespace

void drawMouseControls(float width)
{
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(UI::px(8), UI::px(4)));
    const float left = ImGui::GetCursorPosX();
    float widestAction = 0;
    float widestEffect = 0;
    for (const auto& [action, effect] : mouseControls)
    {
        widestAction = std::max(widestAction, widthOf(action));
        widestEffect = std::max(widestEffect, widthOf(effect));
    }
    const bool beside = widestAction + UI::px(gap) + widestEffect <= width;
    for (const auto& [action, effect] : mouseControls)
    {
        UI::text(tr(action));
        if (beside)
            ImGui::SameLine(left + widestAction + UI::px(gap));
        UI::secondaryText(tr(effect));
        if (!beside)
            ImGui::Dummy({0, UI::px(4)});
    }
    ImGui::PopStyleVar();
}

} // namespace VX
