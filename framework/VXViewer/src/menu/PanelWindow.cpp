#include "PanelWindow.h"

#include <VXViewer/UI.h>

namespace VX
{

void beginPanel(const char* name, const PixelRect& rect, ImGuiWindowFlags flags)
{
    ImGui::SetNextWindowPos({static_cast<float>(rect.x), static_cast<float>(rect.y)});
    ImGui::SetNextWindowSize({static_cast<float>(rect.width), static_cast<float>(rect.height)});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, 0);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
    UI::beginWindow(name, flags);
    ImGui::PopStyleVar(3);
}

void drawPanelEdge(ImVec2 from, ImVec2 to)
{
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->PushClipRect(from, to);
    draw->AddRectFilled(from, to, UI::color(UI::Color::Border));
    draw->PopClipRect();
}

} // namespace VX
