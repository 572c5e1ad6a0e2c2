#include "PlacedText.h"

namespace VX
{

void drawPlacedText(ImVec2 position, UI::Color color, const std::string& text, float width)
{
    if (text.empty())
        return;
    const ImVec2 cursor = ImGui::GetCursorScreenPos();
    ImGui::SetCursorScreenPos(position);
    ImGui::PushStyleColor(ImGuiCol_Text, UI::color(color));
    ImGui::TextUnformatted(UI::elided(text, width).c_str());
    ImGui::PopStyleColor();
    UI::record(UiKind::Text, text);
    ImGui::SetCursorScreenPos(cursor);
}

} // namespace VX
