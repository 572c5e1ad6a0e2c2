#include "FuzzyMatch.h"
#include "PlacedText.h"
#include "menu/Translate.h"

#include <VXViewer/Locale.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/ShortcutListWindow.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>

#include <imgui.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr const char* windowName = "Shortcuts";
constexpr float windowWidth = 480;
constexpr float listHeight = 440;
constexpr float rowHeight = 28;

/// In the order of `ShortcutCategory`.
constexpr std::array<const char*, 6> categoryNames{translatable("Info"),    translatable("Edit"),
                                                   translatable("View"),    translatable("Scene"),
                                                   translatable("Objects"), translatable("Selection ")};

struct Row
{
    std::string name;
    std::string key;
};

/// Of an item of the ribbon, what its button says.
std::string shownName(const Shortcut& shortcut)
{
    const RibbonItemInfo* item = RibbonSchemaHolder::find(shortcut.name);
    return Locale::translate(item && !item->caption.empty() ? item->caption : shortcut.name);
}

std::vector<Row> rowsOf(const ShortcutManager& shortcuts, ShortcutCategory category, const std::u32string& filter)
{
    std::vector<Row> rows;
    for (const Shortcut& shortcut : shortcuts.list())
    {
        if (shortcut.category != category)
            continue;
        Row row{shownName(shortcut), ShortcutManager::keyText(shortcut.key)};
        const bool found = foldedText(row.name).find(filter) != std::u32string::npos ||
                           foldedText(row.key).find(filter) != std::u32string::npos;
        if (found)
            rows.push_back(std::move(row));
    }
    return rows;
}

void drawRow(const Row& row)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const float besideScrollBar = ImGui::GetScrollMaxY() > 0 ? UI::px(8) : 0;
    const float width = ImGui::GetContentRegionAvail().x - besideScrollBar;
    ImGui::Dummy({width, UI::px(rowHeight)});
    const float keyWidth = ImGui::CalcTextSize(row.key.c_str()).x;
    const float top = min.y + std::floor((UI::px(rowHeight) - ImGui::GetTextLineHeight()) / 2);
    drawPlacedText({min.x, top}, UI::Color::Text, row.name, width - keyWidth - UI::px(16));
    drawPlacedText({min.x + width - keyWidth, top}, UI::Color::SecondaryText, row.key, keyWidth);
}

} // namespace

void ShortcutListWindow::open()
{
    open_ = true;
    appearing_ = true;
    filter_.clear();
}

void ShortcutListWindow::close()
{
    open_ = false;
}

void ShortcutListWindow::draw(const ShortcutManager& shortcuts)
{
    if (!open_)
        return;
    if (!ImGui::IsPopupOpen(windowName))
    {
        if (ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel))
            return;
        ImGui::OpenPopup(windowName);
    }
    if (!UI::beginModal(windowName, tr("Shortcuts"), UI::px(windowWidth)))
        return;
    if (std::exchange(appearing_, false))
        ImGui::SetKeyboardFocusHere();
    ImGui::SetNextItemWidth(-1);
    UI::inputText("##filter", filter_, {.hint = tr("Filter")});
    drawList_(shortcuts);
    const float width = UI::px(88);
    ImGui::SetCursorPosX(ImGui::GetWindowWidth() - ImGui::GetStyle().WindowPadding.x - UI::px(12) - width);
    const bool closed = UI::primaryButton(tr("Close"), {width, 0}) || ImGui::IsKeyPressed(ImGuiKey_Escape, false);
    if (closed)
    {
        ImGui::CloseCurrentPopup();
        open_ = false;
    }
    UI::endModal();
}

void ShortcutListWindow::drawList_(const ShortcutManager& shortcuts) const
{
    const float room = ImGui::GetMainViewport()->Size.y - UI::px(32 + 160);
    ImGui::BeginChild("##list", {0, std::min(UI::px(listHeight), std::max(UI::px(rowHeight), room))});
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    const std::u32string filter = foldedText(filter_);
    bool any = false;
    for (std::size_t i = 0; i < categoryNames.size(); ++i)
    {
        const std::vector<Row> rows = rowsOf(shortcuts, static_cast<ShortcutCategory>(i), filter);
        if (rows.empty())
            continue;
        any = true;
        ImGui::Dummy({0, UI::px(8)});
        {
            const UI::ScopedFont semiBold(UI::Font::SemiBold);
            UI::text(tr(categoryNames.at(i)));
        }
        std::for_each(rows.begin(), rows.end(), drawRow);
    }
    if (!any)
        UI::secondaryText(tr("Nothing found"));
    ImGui::PopStyleVar();
    ImGui::EndChild();
}

} // namespace VX
