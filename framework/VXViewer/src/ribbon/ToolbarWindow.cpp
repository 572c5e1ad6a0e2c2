#include "ToolbarWindow.h"

#include "menu/Translate.h"
#include "ui/UiDrawing.h"

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

/// An item that the toolbar shows.
struct ShownItem
{
    std::size_t place; ///< among the chosen names, some of which may be hidden or unknown
    RibbonButton button;
};

std::vector<ShownItem> shownItems(const std::vector<std::string>& names, const RibbonLayout& layout)
{
    std::vector<ShownItem> shown;
    for (std::size_t place = 0; place < names.size(); ++place)
    {
        if (layout.isHidden(names[place]))
            continue;
        if (auto button = makeRibbonButton(RibbonSchemaHolder::schema(), names[place]))
            shown.push_back({place, std::move(*button)});
    }
    return shown;
}

} // namespace

void ToolbarWindow::draw(Toolbar& toolbar, const PixelRect& area, const RibbonLayout& layout)
{
    if (!open_)
        return;
    const ImVec2 space = ImGui::GetMainViewport()->Size;
    const ImVec2 size(std::min(UI::px(width), space.x), std::min(UI::px(height), space.y));
    ImGui::SetNextWindowPos({static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                             static_cast<float>(area.y) + static_cast<float>(area.height) / 2},
                            ImGuiCond_Appearing, {0.5F, 0.5F});
    ImGui::SetNextWindowSize(size);
    UI::beginWindow("Customize Toolbar", ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoSavedSettings);
    UI::keepInside();
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
    if (UI::escapePressed())
        open_ = false;
    UI::endWindow();
}

void ToolbarWindow::drawChosen_(Toolbar& toolbar, const RibbonLayout& layout)
{
    std::vector<std::string> names = toolbar.items();
    const std::vector<ShownItem> shown = shownItems(names, layout);
    bool changed = false;
    // Once one has changed, the rows below have moved.
    for (std::size_t row = 0; row < shown.size() && !changed; ++row)
    {
        const auto& [place, button] = shown[row];
        ImGui::PushID(static_cast<int>(place));
        const float left = ImGui::GetCursorPosX();
        const float top = ImGui::GetCursorPosY();
        const float right = left + ImGui::GetContentRegionAvail().x - 3 * UI::px(rowHeight);
        drawLook(button, right - left);
        ImGui::SetCursorPos({right, top});
        {
            const UI::ScopedDisabled first(row == 0);
            if (UI::iconButton("chevron-up", trf("Move {} up", button.caption)))
            {
                std::swap(names[place], names[shown[row - 1].place]);
                changed = true;
            }
        }
        ImGui::SetCursorPos({right + UI::px(rowHeight), top});
        {
            const UI::ScopedDisabled last(row + 1 == shown.size());
            if (UI::iconButton("chevron-down", trf("Move {} down", button.caption)))
            {
                std::swap(names[place], names[shown[row + 1].place]);
                changed = true;
            }
        }
        ImGui::SetCursorPos({right + 2 * UI::px(rowHeight), top});
        if (UI::iconButton("trash", trf("Remove {}", button.caption)))
        {
            names.erase(names.begin() + static_cast<std::ptrdiff_t>(place));
            changed = true;
        }
        ImGui::PopID();
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
