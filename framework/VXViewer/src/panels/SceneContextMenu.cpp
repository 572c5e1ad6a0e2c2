#include "SceneContextMenu.h"

#include "NamedPopup.h"
#include "PlacedText.h"

#include <VXViewer/Locale.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* popupName = "Scene Menu";
constexpr float rowHeight = 28;
constexpr float rowPadding = 12;
constexpr float iconSide = 16;
constexpr float shortcutGap = 32;

/// An empty name stands for a line between sections.
constexpr std::array<const char*, 10> itemNames{"Rename",  "Duplicate", "Group",        "", "Hide",
                                                "Isolate", "Show All",  "Fit Selected", "", "Delete Selection"};

const std::string& nameOf(const RibbonItemInfo& info)
{
    return info.item->name();
}

std::string captionOf(const RibbonItemInfo& info)
{
    return Locale::translate(info.caption.empty() ? nameOf(info) : info.caption);
}

} // namespace

void SceneContextMenu::open(const Vector2f& position)
{
    position_ = position;
    openRequested_ = true;
    viewer_.incrementForceRedrawFrames(3);
}

std::vector<SceneContextMenu::Entry> SceneContextMenu::entries_() const
{
    const auto menu = std::dynamic_pointer_cast<RibbonMenu>(viewer_.getMenuPlugin());
    std::vector<Entry> entries;
    bool beginsSection = false;
    for (const char* name : itemNames)
    {
        const RibbonItemInfo* info = *name != '\0' ? RibbonSchemaHolder::find(name) : nullptr;
        if (info && info->item && !(menu && menu->isItemHidden(name)))
            entries.push_back({info, std::exchange(beginsSection, false)});
        else if (*name == '\0')
            beginsSection = !entries.empty();
    }
    return entries;
}

bool SceneContextMenu::draw()
{
    const std::vector<Entry> entries = entries_();
    const bool opens = std::exchange(openRequested_, false) && !entries.empty();
    if (opens)
        ImGui::OpenPopup(popupName);
    ImGui::SetNextWindowPos({position_.x(), position_.y()}, ImGuiCond_Appearing);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(4), UI::px(4)));
    const bool open = beginNamedPopup(popupName);
    ImGui::PopStyleVar();
    if (!open)
        return false;
    // Its size is known from the second frame on.
    const ImVec2 window = ImGui::GetMainViewport()->Size;
    const ImVec2 size = ImGui::GetWindowSize();
    const float edge = UI::px(4);
    ImGui::SetWindowPos({std::clamp(position_.x(), edge, std::max(edge, window.x - size.x - edge)),
                         std::clamp(position_.y(), edge, std::max(edge, window.y - size.y - edge))});
    const std::string pressed = drawEntries_(entries);
    if (!pressed.empty() || ImGui::IsKeyPressed(ImGuiKey_Escape, false))
        ImGui::CloseCurrentPopup();
    ImGui::EndPopup();
    // The item may change the scene that was just drawn.
    if (const auto menu = std::dynamic_pointer_cast<RibbonMenu>(viewer_.getMenuPlugin()); menu && !pressed.empty())
        menu->pressItem(pressed);
    return opens;
}

std::string SceneContextMenu::shortcutOf_(const RibbonItemInfo& info) const
{
    const auto& menu = viewer_.getMenuPlugin();
    return menu && menu->shortcutManager() ? menu->shortcutManager()->keyOf(nameOf(info)) : std::string();
}

/// @return the name of the item that was pressed
std::string SceneContextMenu::drawEntries_(const std::vector<Entry>& entries) const
{
    float width = 0;
    for (const Entry& entry : entries)
    {
        const float caption = ImGui::CalcTextSize(captionOf(*entry.info).c_str()).x;
        const float shortcut = ImGui::CalcTextSize(shortcutOf_(*entry.info).c_str()).x;
        width = std::max(width, caption + (shortcut > 0 ? shortcut + UI::px(shortcutGap) : 0));
    }
    width += 3 * UI::px(rowPadding) + UI::px(iconSide);
    const float height = UI::px(rowHeight);
    std::string pressed;
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    ImDrawList* draw = ImGui::GetWindowDrawList();
    for (const Entry& entry : entries)
    {
        if (entry.beginsSection)
        {
            const ImVec2 from = ImGui::GetCursorScreenPos();
            ImGui::Dummy({width, UI::px(8)});
            const float y = from.y + UI::px(4);
            draw->AddLine({from.x, y}, {from.x + width, y}, UI::color(UI::Color::Border), UI::px(1));
        }
        const std::string reason = entry.info->item->unavailableReason();
        const std::string caption = captionOf(*entry.info);
        const ImVec2 min = ImGui::GetCursorScreenPos();
        {
            const UI::ScopedDisabled disabled(!reason.empty());
            if (ImGui::InvisibleButton(nameOf(*entry.info).c_str(), {width, height}))
                pressed = nameOf(*entry.info);
            UI::record(UiKind::ListRow, caption);
        }
        if (ImGui::IsItemHovered())
            draw->AddRectFilled(min, {min.x + width, min.y + height}, UI::color(UI::Color::RaisedHovered), UI::px(4));
        ImVec4 textColor = UI::colorVec(reason.empty() ? UI::Color::Text : UI::Color::SecondaryText);
        textColor.w = reason.empty() ? 1.0F : ImGui::GetStyle().DisabledAlpha;
        const ImU32 color = ImGui::ColorConvertFloat4ToU32(textColor);
        const float textY = min.y + std::floor((height - ImGui::GetTextLineHeight()) / 2);
        const float side = UI::px(iconSide);
        UI::drawIcon(*draw, entry.info->icon, {min.x + UI::px(rowPadding) + side / 2, min.y + height / 2}, side, color);
        draw->AddText({min.x + 2 * UI::px(rowPadding) + side, textY}, color, caption.c_str());
        const std::string shortcut = shortcutOf_(*entry.info);
        if (!reason.empty())
            UI::tooltip(reason);
        const float shortcutWidth = ImGui::CalcTextSize(shortcut.c_str()).x;
        drawPlacedText({min.x + width - UI::px(rowPadding) - shortcutWidth, textY}, UI::Color::SecondaryText, shortcut,
                       shortcutWidth);
    }
    ImGui::PopStyleVar();
    return pressed;
}

} // namespace VX
