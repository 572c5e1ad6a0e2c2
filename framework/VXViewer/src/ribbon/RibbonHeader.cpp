#include "RibbonHeader.h"

#include "menu/Translate.h"
#include "panels/NamedPopup.h"

#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/RibbonSearch.h>
#include <VXViewer/UI.h>

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr float tabPadding = 12;
constexpr float narrowTabPadding = 7;
constexpr float button = 28;
constexpr float gap = 4;
constexpr float edge = 8;
constexpr float searchWidth = 240;
/// Of the field of the search, around its hint.
constexpr float searchPadding = 48;

constexpr const char* moreTabs = "More Tabs";

using Tabs = std::vector<const RibbonLayoutTab*>;

float widthOfTab(const RibbonLayoutTab& tab, float padding)
{
    return std::ceil(ImGui::CalcTextSize(tab.caption.c_str()).x) + 2 * UI::px(padding);
}

float widthOfTabs(const Tabs& tabs, float padding)
{
    float width = 0;
    for (const RibbonLayoutTab* tab : tabs)
        width += widthOfTab(*tab, padding);
    return width;
}

/// How the room between quick access and the right end is shared.
struct Plan
{
    float padding = tabPadding;
    std::size_t tabs = 0; ///< that are drawn; the others are in a list
    float search = 0;     ///< the width of its field; 0: only its button
};

Plan makePlan(const Tabs& tabs, float room)
{
    Plan plan{tabPadding, tabs.size(), 0};
    const float searchButton = UI::px(button + gap);
    const float wide = widthOfTabs(tabs, tabPadding);
    const float smallestSearch = ImGui::CalcTextSize(tr("Search for commands").c_str()).x + UI::px(searchPadding);
    if (wide + smallestSearch + UI::px(gap) <= room)
    {
        plan.search = std::min(std::max(UI::px(searchWidth), smallestSearch), room - wide - UI::px(gap));
        return plan;
    }
    if (wide + searchButton <= room)
        return plan;
    plan.padding = narrowTabPadding;
    float used = searchButton;
    if (used + widthOfTabs(tabs, plan.padding) <= room)
        return plan;
    used += UI::px(button);
    plan.tabs = 0;
    while (plan.tabs < tabs.size() && used + widthOfTab(*tabs[plan.tabs], plan.padding) <= room)
        used += widthOfTab(*tabs[plan.tabs++], plan.padding);
    return plan;
}

float widthOf(const RibbonHeader::Part& part)
{
    return part.width > 0 ? part.width + UI::px(gap) : 0;
}

/// Draws the header of one frame.
class Drawing
{
public:
    Drawing(const RibbonTabs& tabs, const RibbonHeader::Parts& parts, bool isBodyShown)
        : tabs_(tabs)
        , parts_(parts)
        , isBodyShown_(isBodyShown)
    {
    }

    RibbonHeader::Result draw(bool isCollapsed)
    {
        parts_.drawQuickAccess();
        const float right = ImGui::GetWindowWidth() - UI::px(edge - gap);
        const float buttons = right - UI::px(2 * (button + gap));
        const float account = buttons - widthOf(parts_.account);
        const float status = account - widthOf(parts_.status);
        const float left = ImGui::GetCursorPosX() + UI::px(edge);
        const Plan plan = makePlan(tabs_.shown(), status - left);
        float x = left;
        for (std::size_t i = 0; i < plan.tabs; ++i)
        {
            const float width = widthOfTab(*tabs_.shown()[i], plan.padding);
            ImGui::SetCursorPos({x, 0});
            drawTab_(*tabs_.shown()[i], width);
            x += width;
        }
        if (plan.tabs < tabs_.shown().size())
        {
            ImGui::SetCursorPos({x, UI::px(2)});
            drawMoreTabs_(plan.tabs);
        }
        drawSearch_(plan.search, status);
        drawPart_(parts_.status, status);
        drawPart_(parts_.account, account);
        ImGui::SetCursorPos({buttons + UI::px(gap), UI::px(2)});
        parts_.notifier.drawHistoryButton(UI::px(button));
        if (parts_.buttons.focus().stop())
            ImGui::ActivateItemByID(ImGui::GetItemID());
        ImGui::SetCursorPos({buttons + UI::px(button + 2 * gap), UI::px(2)});
        drawCollapseButton_(isCollapsed);
        return result_;
    }

private:
    void drawTab_(const RibbonLayoutTab& tab, float width)
    {
        const bool isOpen = isBodyShown_ && tabs_.open() == &tab;
        const bool clicked = ImGui::InvisibleButton(tab.name.c_str(), {width, UI::px(RibbonHeader::height)});
        UI::record(UiKind::Tab, tab.caption, isOpen ? "selected" : "");
        const ImVec2 min = ImGui::GetItemRectMin();
        const ImVec2 max = ImGui::GetItemRectMax();
        ImDrawList* draw = ImGui::GetWindowDrawList();
        if (isOpen)
            draw->AddRectFilled({min.x, min.y + UI::px(3)}, max, UI::color(UI::Color::Panel), UI::px(4),
                                ImDrawFlags_RoundCornersTop);
        else if (ImGui::IsItemHovered())
            draw->AddRectFilled({min.x, min.y + UI::px(3)}, {max.x, max.y - UI::px(3)},
                                UI::color(UI::Color::RaisedHovered), UI::px(4));
        const bool isContextual = !tab.forType.empty();
        const ImVec2 size = ImGui::CalcTextSize(tab.caption.c_str());
        const UI::Color color = isContextual ? UI::Color::AccentHovered
                                : isOpen     ? UI::Color::Text
                                             : UI::Color::SecondaryText;
        draw->AddText({std::round((min.x + max.x - size.x) / 2), std::round((min.y + max.y - size.y) / 2)},
                      UI::color(color), tab.caption.c_str());
        if (isOpen)
            draw->AddRectFilled({min.x + UI::px(6), max.y - UI::px(2)}, {max.x - UI::px(6), max.y},
                                UI::color(UI::Color::Accent), UI::px(1));
        const bool entered = parts_.buttons.focus().stop();
        if (!clicked && !entered)
            return;
        result_.pressed = &tab;
        result_.doubleClicked = clicked && ImGui::GetMouseClickedCount(ImGuiMouseButton_Left) == 0 &&
                                ImGui::GetIO().MouseClickedLastCount[ImGuiMouseButton_Left] == 2;
    }

    void drawMoreTabs_(std::size_t first)
    {
        RibbonButton look;
        look.caption = tr("More tabs");
        look.icon = "dots";
        if (parts_.buttons.drawPlain("##more", look, RibbonButtonForm::Icon, UI::px(button),
                                     ImGui::IsPopupOpen(moreTabs)))
            ImGui::OpenPopup(moreTabs);
        UI::tooltip(look.caption);
        if (!ImGui::IsPopupOpen(moreTabs))
            return;
        placeBelowItem(UI::px(160));
        ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(4), UI::px(4)));
        if (beginNamedPopup(moreTabs, ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoNav))
        {
            parts_.buttons.focus().beginLevel();
            for (std::size_t i = first; i < tabs_.shown().size(); ++i)
                drawMoreTab_(*tabs_.shown()[i]);
            parts_.buttons.focus().endLevel();
            ImGui::EndPopup();
        }
        ImGui::PopStyleVar();
    }

    void drawMoreTab_(const RibbonLayoutTab& tab)
    {
        RibbonButton look;
        look.caption = tab.caption;
        if (parts_.buttons.drawPlain(tab.name.c_str(), look, RibbonButtonForm::Row, UI::px(152),
                                     tabs_.open() == &tab && isBodyShown_))
        {
            result_.pressed = &tab;
            ImGui::CloseCurrentPopup();
        }
    }

    void drawSearch_(float width, float right)
    {
        if (width > 0)
        {
            ImGui::SetCursorPos({right - width, UI::px(2)});
            // The header is as dark as a field is elsewhere.
            for (const ImGuiCol role : {ImGuiCol_FrameBg, ImGuiCol_FrameBgHovered, ImGuiCol_FrameBgActive})
                ImGui::PushStyleColor(role, UI::color(UI::Color::Panel));
            parts_.search.drawField(width);
            ImGui::PopStyleColor(3);
            if (parts_.buttons.focus().stop())
                openSearch_();
            return;
        }
        RibbonButton look;
        look.caption = tr("Search for commands");
        look.icon = "search";
        ImGui::SetCursorPos({right - UI::px(button), UI::px(2)});
        if (parts_.buttons.drawPlain("##search", look, RibbonButtonForm::Icon, UI::px(button)))
            openSearch_();
        UI::tooltip(look.caption, "Ctrl+Shift+P");
    }

    void drawPart_(const RibbonHeader::Part& part, float x)
    {
        if (part.width <= 0)
            return;
        ImGui::SetCursorPos({x + UI::px(gap), UI::px(2)});
        part.draw();
        if (parts_.buttons.focus().stop())
            ImGui::ActivateItemByID(ImGui::GetItemID());
    }

    void openSearch_()
    {
        parts_.buttons.focus().leave();
        parts_.search.focus();
    }

    void drawCollapseButton_(bool isCollapsed)
    {
        RibbonButton look;
        look.caption = isCollapsed ? tr("Keep the ribbon open") : tr("Collapse the ribbon");
        look.icon = isCollapsed ? "chevron-down" : "chevron-up";
        result_.toggleCollapsed = parts_.buttons.drawPlain("##collapse", look, RibbonButtonForm::Icon, UI::px(button));
        UI::tooltip(look.caption);
    }

    const RibbonTabs& tabs_;
    const RibbonHeader::Parts& parts_;
    bool isBodyShown_;
    RibbonHeader::Result result_;
};

} // namespace

RibbonHeader::Result RibbonHeader::draw(const RibbonTabs& tabs, const Parts& parts, bool isCollapsed, bool isBodyShown)
{
    return Drawing(tabs, parts, isBodyShown).draw(isCollapsed);
}

} // namespace VX
