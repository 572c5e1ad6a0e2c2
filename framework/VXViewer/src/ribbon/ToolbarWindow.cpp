#include "ToolbarWindow.h"

#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Toolbar.h>
#include <VXViewer/UI.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr float width = 340;
constexpr float height = 440;
constexpr float rowHeight = 28;
constexpr float icon = 16;

/// The icon and the caption of an item, the height of a button.
void drawLook(const RibbonButton& button, float room)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    UI::drawIcon(*ImGui::GetWindowDrawList(), button.icon, {min.x + UI::px(12), min.y + UI::px(rowHeight / 2)},
                 UI::px(icon), UI::color(UI::Color::Text));
    ImGui::SetCursorScreenPos({min.x + UI::px(28), min.y + (UI::px(rowHeight) - ImGui::GetTextLineHeight()) / 2});
    UI::text(UI::elided(button.caption, room - UI::px(28)));
}

} // namespace

void ToolbarWindow::draw(Toolbar& toolbar, const PixelRect& area, const RibbonLayout& layout)
{
    if (!open_)
        return;
    const ImVec2 size(std::min(UI::px(width), static_cast<float>(area.width)),
                      std::min(UI::px(height), static_cast<float>(area.height)));
    ImGui::SetNextWindowPos({static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                             static_cast<float>(area.y) + static_cast<float>(area.height) / 2},
                            ImGuiCond_Appearing, {0.5F, 0.5F});
    ImGui::SetNextWindowSize(size);
    UI::beginWindow("Customize Toolbar", ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoSavedSettings);
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        UI::text(tr("Toolbar"));
    }
    ImGui::SameLine(ImGui::GetWindowWidth() - ImGui::GetStyle().WindowPadding.x - UI::px(rowHeight));
    if (ImGui::ModalExitButton())
        open_ = false;
    const float buttons = UI::px(rowHeight) + ImGui::GetStyle().ItemSpacing.y;
    const float lists = ImGui::GetContentRegionAvail().y - buttons;
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(UI::px(4), 0));
    ImGui::BeginChild("Chosen", {0, std::floor(lists * 0.45F)}, 0, ImGuiWindowFlags_NavFlattened);
    drawChosen_(toolbar, layout);
    ImGui::EndChild();
    ImGui::PopStyleVar();
    UI::separator();
    drawOffered_(toolbar, layout);
    if (UI::button(tr("Reset")))
        toolbar.resetItems();
    UI::tooltip(tr("Back to the items that the program came with"));
    UI::endWindow();
}

void ToolbarWindow::drawChosen_(Toolbar& toolbar, const RibbonLayout& layout)
{
    std::vector<std::string> names = toolbar.items();
    bool changed = false;
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        const auto button = makeRibbonButton(RibbonSchemaHolder::schema(), names[i]);
        if (!button || layout.isHidden(names[i]))
            continue;
        ImGui::PushID(static_cast<int>(i));
        const float left = ImGui::GetCursorPosX();
        const float top = ImGui::GetCursorPosY();
        const float right = left + ImGui::GetContentRegionAvail().x - 3 * UI::px(rowHeight);
        drawLook(*button, right - left);
        ImGui::SetCursorPos({right, top});
        const auto at = names.begin() + static_cast<std::ptrdiff_t>(i);
        {
            const UI::ScopedDisabled first(i == 0);
            if (UI::iconButton("chevron-up", trf("Move {} up", button->caption)))
            {
                std::iter_swap(at, at - 1);
                changed = true;
            }
        }
        ImGui::SetCursorPos({right + UI::px(rowHeight), top});
        {
            const UI::ScopedDisabled last(i + 1 == names.size());
            if (UI::iconButton("chevron-down", trf("Move {} down", button->caption)))
            {
                std::iter_swap(at, at + 1);
                changed = true;
            }
        }
        ImGui::SetCursorPos({right + 2 * UI::px(rowHeight), top});
        const bool removed = UI::iconButton("trash", trf("Remove {}", button->caption));
        ImGui::PopID();
        if (removed)
            names.erase(at);
        changed = changed || removed;
        // The rows below have moved.
        if (changed)
            break;
    }
    if (changed)
        toolbar.setItems(std::move(names));
}

void ToolbarWindow::drawOffered_(Toolbar& toolbar, const RibbonLayout& layout)
{
    ImGui::SetNextItemWidth(ImGui::GetContentRegionAvail().x);
    UI::inputText("##filter", filter_, {.limit = 64, .hint = tr("Add an item")});
    UI::record(UiKind::TextInput, tr("Add an item"), filter_);
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(UI::px(4), 0));
    ImGui::BeginChild("Offered", {0, ImGui::GetContentRegionAvail().y - UI::px(rowHeight + 8)}, 0,
                      ImGuiWindowFlags_NavFlattened);
    const std::vector<std::string>& chosen = toolbar.items();
    const std::string wanted = toLower(filter_);
    std::string added;
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
    {
        const auto button = makeRibbonButton(RibbonSchemaHolder::schema(), name);
        const bool isChosen = std::find(chosen.begin(), chosen.end(), name) != chosen.end();
        if (!button || isChosen || layout.isHidden(name) || toLower(button->caption).find(wanted) == std::string::npos)
            continue;
        const ImVec2 row = ImGui::GetCursorPos();
        if (UI::listRow("##" + name, false))
            added = name;
        UI::record(UiKind::ListRow, trf("Add {}", button->caption));
        const ImVec2 below = ImGui::GetCursorPos();
        ImGui::SetCursorPos(row);
        drawLook(*button, ImGui::GetContentRegionAvail().x);
        ImGui::SetCursorPos(below);
    }
    ImGui::PopStyleVar();
    ImGui::EndChild();
    if (added.empty())
        return;
    std::vector<std::string> names = chosen;
    names.push_back(added);
    toolbar.setItems(std::move(names));
}

} // namespace VX
