#include "ActiveItemList.h"

#include "menu/PanelWindow.h"
#include "menu/Translate.h"

#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/UI.h>

#include <algorithm>

namespace VX
{

namespace
{

constexpr float edge = 8;
constexpr float padding = 4;
constexpr float rowHeight = 28;
constexpr float icon = 16;

} // namespace

void ActiveItemList::update(const RibbonSchema& schema)
{
    std::erase_if(items_, [](const auto& item) { return !item->isActive(); });
    for (const auto& [name, info] : schema.items)
    {
        if (info.item && info.item->isTool() && info.item->isActive() &&
            std::find(items_.begin(), items_.end(), info.item) == items_.end())
            items_.push_back(info.item);
    }
}

bool ActiveItemList::endLast()
{
    std::erase_if(items_, [](const auto& item) { return !item->isActive(); });
    if (items_.empty())
        return false;
    const std::shared_ptr<RibbonMenuItem> last = items_.back();
    last->deactivate();
    return true;
}

void ActiveItemList::draw(const PixelRect& area, const RibbonSchema& schema, RibbonButtons& buttons)
{
    std::vector<RibbonButton> shown;
    float captions = 0;
    for (const std::shared_ptr<RibbonMenuItem>& item : items_)
    {
        if (auto made = makeRibbonButton(schema, item->name()))
        {
            captions = std::max(captions, ImGui::CalcTextSize(made->caption.c_str()).x);
            shown.push_back(std::move(*made));
        }
    }
    if (shown.empty())
        return;
    const float width = UI::px(28 + 8 + rowHeight + 2 * padding) + std::ceil(captions);
    const float height = UI::px(rowHeight) * static_cast<float>(shown.size()) + UI::px(2 * padding);
    ImGui::SetNextWindowPos({static_cast<float>(area.x) + std::floor((static_cast<float>(area.width) - width) / 2),
                             static_cast<float>(area.y + area.height) - UI::px(edge) - height});
    ImGui::SetNextWindowSize({width, height});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding), UI::px(padding)));
    UI::beginWindow("Active Tools", barFlags);
    ImGui::PopStyleVar();
    float y = UI::px(padding);
    for (const RibbonButton& each : shown)
    {
        const ImVec2 window = ImGui::GetWindowPos();
        UI::drawIcon(*ImGui::GetWindowDrawList(), each.icon,
                     {window.x + UI::px(padding + 12), window.y + y + UI::px(rowHeight / 2)}, UI::px(icon),
                     UI::color(UI::Color::AccentHovered));
        ImGui::SetCursorPos({UI::px(padding + 28), y + (UI::px(rowHeight) - ImGui::GetTextLineHeight()) / 2});
        UI::text(each.caption);
        ImGui::SetCursorPos({width - UI::px(padding + rowHeight), y});
        const bool pressed = UI::iconButton("x", trf("End {}", each.caption));
        if (buttons.focus().stop() || pressed)
            each.item->deactivate();
        y += UI::px(rowHeight);
    }
    UI::endWindow();
}

} // namespace VX
