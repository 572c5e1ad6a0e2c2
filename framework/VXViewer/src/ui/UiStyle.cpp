#include "UiStyle.h"

#include "../theme/Palette.h"
#include "UiState.h"

#include <VXViewer/UI.h>

#include <utility>

namespace VX
{

UiState& UiState::instance()
{
    static UiState state;
    return state;
}

namespace UI
{

ImVec4 colorVec(Color color)
{
    const VX::Color value = Palette::current().get(static_cast<ThemeRole>(color));
    return ImGui::ColorConvertU32ToFloat4(IM_COL32(value.r, value.g, value.b, value.a));
}

} // namespace UI

namespace
{

void setColor(ImGuiCol which, UI::Color color, float alpha = 1)
{
    ImVec4 value = UI::colorVec(color);
    value.w = alpha;
    ImGui::GetStyle().Colors[which] = value;
}

void setColors()
{
    using UI::Color;
    ImGui::StyleColorsDark();
    setColor(ImGuiCol_Text, Color::Text);
    setColor(ImGuiCol_TextDisabled, Color::SecondaryText);
    setColor(ImGuiCol_WindowBg, Color::Panel);
    setColor(ImGuiCol_ChildBg, Color::Panel, 0);
    setColor(ImGuiCol_PopupBg, Color::Raised);
    setColor(ImGuiCol_Border, Color::Border);
    setColor(ImGuiCol_FrameBg, Color::Window);
    setColor(ImGuiCol_FrameBgHovered, Color::Window);
    setColor(ImGuiCol_FrameBgActive, Color::Window);
    setColor(ImGuiCol_TitleBg, Color::Panel);
    setColor(ImGuiCol_TitleBgActive, Color::Panel);
    setColor(ImGuiCol_ScrollbarBg, Color::Panel, 0);
    setColor(ImGuiCol_ScrollbarGrab, Color::Border);
    setColor(ImGuiCol_ScrollbarGrabHovered, Color::SecondaryText, 0.6F);
    setColor(ImGuiCol_ScrollbarGrabActive, Color::SecondaryText);
    setColor(ImGuiCol_CheckMark, Color::Accent);
    setColor(ImGuiCol_SliderGrab, Color::Accent);
    setColor(ImGuiCol_SliderGrabActive, Color::AccentHovered);
    setColor(ImGuiCol_Button, Color::Raised);
    setColor(ImGuiCol_ButtonHovered, Color::RaisedHovered);
    setColor(ImGuiCol_ButtonActive, Color::RaisedPressed);
    setColor(ImGuiCol_Header, Color::Selection);
    setColor(ImGuiCol_HeaderHovered, Color::RaisedHovered);
    setColor(ImGuiCol_HeaderActive, Color::RaisedPressed);
    setColor(ImGuiCol_Separator, Color::Border);
    setColor(ImGuiCol_Tab, Color::Panel);
    setColor(ImGuiCol_TabHovered, Color::RaisedHovered);
    setColor(ImGuiCol_TabActive, Color::Raised);
    setColor(ImGuiCol_TabUnfocused, Color::Panel);
    setColor(ImGuiCol_TabUnfocusedActive, Color::Raised);
    setColor(ImGuiCol_TableHeaderBg, Color::Raised);
    setColor(ImGuiCol_TableBorderStrong, Color::Border);
    setColor(ImGuiCol_TableBorderLight, Color::Border);
    setColor(ImGuiCol_TextSelectedBg, Color::Selection);
    setColor(ImGuiCol_NavHighlight, Color::Accent);
    setColor(ImGuiCol_ModalWindowDimBg, Color::Window, 0.6F);
}

} // namespace

void applyUiStyle()
{
    ImGuiStyle& style = ImGui::GetStyle();
    style = ImGuiStyle();
    setColors();
    style.WindowPadding = {UI::px(8), UI::px(8)};
    style.FramePadding = {UI::px(12), UI::px(5)};
    style.ItemSpacing = {UI::px(8), UI::px(8)};
    style.ItemInnerSpacing = {UI::px(8), UI::px(4)};
    style.CellPadding = {UI::px(4), UI::px(2)};
    style.IndentSpacing = UI::px(16);
    style.ScrollbarSize = UI::px(12);
    style.GrabMinSize = UI::px(12);
    style.WindowRounding = UI::px(4);
    style.ChildRounding = UI::px(4);
    style.FrameRounding = UI::px(4);
    style.PopupRounding = UI::px(4);
    style.ScrollbarRounding = UI::px(4);
    style.GrabRounding = UI::px(4);
    style.TabRounding = UI::px(4);
    style.WindowBorderSize = UI::px(1);
    style.PopupBorderSize = UI::px(1);
    style.FrameBorderSize = 0;
    style.DisabledAlpha = 0.5F;
    style.HoverDelayNormal = 0.5F;
    style.HoverStationaryDelay = 0.1F;
}

} // namespace VX
