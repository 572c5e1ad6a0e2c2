#include "UiDrawing.h"
#include "UiState.h"

#include <VXViewer/UI.h>

#include <fmt/format.h>
#include <imgui_internal.h>

#include <algorithm>
#include <cmath>

namespace VX::UI
{

namespace
{

void endOpenTab()
{
    if (!UiState::instance().openTabs.back())
        return;
    ImGui::EndTabItem();
    UiState::instance().openTabs.back() = false;
}

/// Text in a cell of a table, in the middle of its height.
void drawCell(const std::string& text)
{
    ImGui::SetCursorPosY(ImGui::GetCursorPosY() + std::floor((px(controlHeight) - ImGui::GetTextLineHeight()) / 2));
    ImGui::TextUnformatted(text.c_str());
    needGlyphs(text);
}

std::string joined(const std::vector<std::string>& cells)
{
    std::string all;
    for (std::size_t column = 0; column < cells.size(); ++column)
        all += (column > 0 ? "\t" : "") + cells[column];
    return all;
}

} // namespace

bool listRow(const std::string& label, bool selected, ImGuiSelectableFlags flags)
{
    const std::string shown = visiblePart(label);
    const float width = ImGui::CalcTextSize(shown.c_str()).x + px(16);
    const bool pressed = ImGui::Selectable(
        ("##" + label).c_str(), selected,
        flags | static_cast<ImGuiSelectableFlags>(ImGuiSelectableFlags_SpanAvailWidth), {width, px(controlHeight)});
    record(UiKind::ListRow, label, selected ? "selected" : "");
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const float top = std::round((min.y + max.y - ImGui::GetTextLineHeight()) / 2);
    ImGui::RenderTextClipped({min.x + px(8), top}, {max.x - px(4), max.y}, shown.c_str(), nullptr, nullptr);
    return pressed;
}

bool collapsingHeader(const std::string& label, bool openAtFirst)
{
    const std::string shown = visiblePart(label);
    ImGuiStorage* storage = ImGui::GetStateStorage();
    ImGui::PushID(label.c_str());
    if (ImGui::Button("##header", {ImGui::GetContentRegionAvail().x, px(controlHeight)}))
        storage->SetBool(ImGui::GetItemID(), !storage->GetBool(ImGui::GetItemID(), openAtFirst));
    ImGui::PopID();
    const bool open = storage->GetBool(ImGui::GetItemID(), openAtFirst);
    record(UiKind::CollapsingHeader, label, open ? "open" : "");
    const ImVec2 min = ImGui::GetItemRectMin();
    const float middle = (min.y + ImGui::GetItemRectMax().y) / 2;
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    drawIcon(draw, open ? "chevron-down" : "chevron-right", {min.x + px(14), middle}, px(16),
             ImGui::GetColorU32(colorVec(Color::SecondaryText)));
    const ScopedFont semiBold(Font::SemiBold);
    draw.AddText({min.x + px(28), std::round(middle - ImGui::GetTextLineHeight() / 2)},
                 ImGui::GetColorU32(ImGuiCol_Text), shown.c_str());
    return open;
}

bool beginTabBar(const std::string& name)
{
    if (!ImGui::BeginTabBar(name.c_str(), ImGuiTabBarFlags_NoTooltip | ImGuiTabBarFlags_FittingPolicyScroll))
        return false;
    UiState::instance().openTabs.push_back(false);
    return true;
}

bool tab(const std::string& label, bool select)
{
    endOpenTab();
    const ImGuiTabItemFlags flags = select ? ImGuiTabItemFlags_SetSelected : ImGuiTabItemFlags_None;
    const bool open = ImGui::BeginTabItem(label.c_str(), nullptr, flags);
    record(UiKind::Tab, label, open ? "selected" : "");
    if (open)
    {
        const ImVec2 max = ImGui::GetItemRectMax();
        ImGui::GetWindowDrawList()->AddRectFilled({ImGui::GetItemRectMin().x, max.y - px(2)}, max,
                                                  ImGui::GetColorU32(colorVec(Color::Accent)));
    }
    UiState::instance().openTabs.back() = open;
    return open;
}

void endTabBar()
{
    endOpenTab();
    UiState::instance().openTabs.pop_back();
    ImGui::EndTabBar();
}

bool beginTable(const std::string& name, const std::vector<std::string>& headers, ImVec2 size)
{
    ImGuiTableFlags flags = ImGuiTableFlags_BordersInnerH | ImGuiTableFlags_BordersOuterH |
                            ImGuiTableFlags_SizingStretchProp | ImGuiTableFlags_PadOuterX;
    if (size.y > 0)
        flags |= ImGuiTableFlags_ScrollY;
    ImGui::PushStyleVar(ImGuiStyleVar_CellPadding, ImVec2(px(8), 0));
    if (!ImGui::BeginTable(name.c_str(), static_cast<int>(headers.size()), flags, size))
    {
        ImGui::PopStyleVar();
        return false;
    }
    for (const std::string& header : headers)
        ImGui::TableSetupColumn(header.c_str());
    ImGui::TableSetupScrollFreeze(0, 1);
    ImGui::TableNextRow(ImGuiTableRowFlags_Headers, px(controlHeight));
    const ScopedFont semiBold(Font::SemiBold);
    for (const std::string& header : headers)
    {
        ImGui::TableNextColumn();
        drawCell(header);
    }
    return true;
}

bool tableRow(const std::vector<std::string>& cells, bool selected)
{
    ImGui::TableNextRow();
    bool pressed = false;
    for (std::size_t column = 0; column < cells.size() && ImGui::TableNextColumn(); ++column)
    {
        if (column > 0)
        {
            drawCell(cells[column]);
            continue;
        }
        ImGui::PushID(ImGui::TableGetRowIndex());
        ImGui::PushStyleVar(ImGuiStyleVar_SelectableTextAlign, ImVec2(0, 0.5F));
        // A selectable fills the gaps to its neighbours, and here are none.
        ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
        pressed = ImGui::Selectable(cells[column].c_str(), selected, ImGuiSelectableFlags_SpanAllColumns,
                                    {0, px(controlHeight)});
        ImGui::PopStyleVar(2);
        ImGui::PopID();
        record(UiKind::TableRow, cells[column], joined(cells));
    }
    return pressed;
}

void endTable()
{
    ImGui::EndTable();
    ImGui::PopStyleVar();
}

void separator()
{
    ImGui::Separator();
}

void progressBar(const std::string& label, float fraction, ImVec2 size)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const ImVec2 max(min.x + size.x, min.y + size.y);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const float rounding = size.y / 2;
    draw->AddRectFilled(min, max, color(Color::Raised), rounding);
    const float width = std::max(size.y, size.x * fraction);
    if (fraction > 0)
        draw->AddRectFilled(min, {min.x + width, max.y}, color(Color::Accent), rounding);
    ImGui::Dummy(size);
    record(UiKind::ProgressBar, label, fmt::format("{:.0f} %", fraction * 100));
}

} // namespace VX::UI

void ImGuiMV::SetNextWindowPosMainViewport(ImVec2 pos, ImGuiCond cond, ImVec2 pivot)
{
    const ImVec2 origin = ImGui::GetMainViewport()->Pos;
    ImGui::SetNextWindowPos({origin.x + pos.x, origin.y + pos.y}, cond, pivot);
}
