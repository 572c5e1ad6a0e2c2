#include <quorvix/menu/StartupModal.h>

#include <VXViewer/UI.h>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

// Units of the design.
constexpr ImVec2 padding{28, 20};
constexpr ImVec2 spacing{16, 24};

constexpr ImGuiWindowFlags flags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove |
                                   ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoSavedSettings;

bool isAnyPopupOpen()
{
    return ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

} // namespace

bool StartupModal::begin(ImVec2 size, Width width)
{
    if (!open_)
        return false;
    if (!ImGui::IsPopupOpen(name_))
    {
        if (isAnyPopupOpen())
            return false;
        ImGui::OpenPopup(name_);
    }
    const ImGuiViewport& viewport = *ImGui::GetMainViewport();
    const ImVec2 least(std::min(UI::px(size.x), viewport.Size.x), std::min(UI::px(size.y), viewport.Size.y));
    ImGui::SetNextWindowPos(viewport.GetCenter(), ImGuiCond_Always, {0.5F, 0.5F});
    ImGui::SetNextWindowSizeConstraints(least, {width == Width::Fixed ? least.x : viewport.Size.x, viewport.Size.y});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding.x), UI::px(padding.y)));
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(UI::px(spacing.x), UI::px(spacing.y)));
    ImGui::PushStyleColor(ImGuiCol_PopupBg, UI::color(UI::Color::Panel));
    const bool visible = ImGui::BeginPopupModal(name_, nullptr, flags);
    ImGui::PopStyleColor();
    if (!visible)
        ImGui::PopStyleVar(2);
    return visible;
}

void StartupModal::end()
{
    ImGui::EndPopup();
    ImGui::PopStyleVar(2);
}

void StartupModal::close()
{
    open_ = false;
    ImGui::CloseCurrentPopup();
}

void StartupModal::centeredText(const std::string& text, float top)
{
    const float left = std::round((ImGui::GetWindowWidth() - ImGui::CalcTextSize(text.c_str()).x) / 2);
    ImGui::SetCursorPos({std::max(left, ImGui::GetStyle().WindowPadding.x), UI::px(top)});
    UI::text(text);
}

} // namespace VX
