#include "RibbonBody.h"

#include "panels/NamedPopup.h"

#include <VXViewer/UI.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace VX
{

namespace
{

constexpr float edge = 4;         ///< left of the first group
constexpr float groupPadding = 4; ///< left and right of what a group holds
constexpr float separator = 1;
constexpr float columnGap = 2;
constexpr float top = 3; ///< over the buttons
constexpr float nameTop = 59;

constexpr const char* groupName = "Ribbon Group";

RibbonButtonForm formOf(const RibbonButton& button, RibbonGroupForm group)
{
    if (group == RibbonGroupForm::Icons || group == RibbonGroupForm::Bare)
        return RibbonButtonForm::Icon;
    return group == RibbonGroupForm::Full && button.size == RibbonItemSize::Large ? RibbonButtonForm::Large
                                                                                  : RibbonButtonForm::Small;
}

/// Buttons one above the other: a large one, or up to two others.
struct Column
{
    std::vector<const RibbonButton*> buttons;
    RibbonButtonForm form = RibbonButtonForm::Large;
    float width = 0;
};

std::vector<Column> columnsOf(const RibbonLayoutGroup& group, RibbonGroupForm groupForm, const RibbonButtons& measure)
{
    constexpr std::size_t rows = 2;
    std::vector<Column> columns;
    for (const RibbonButton& button : group.buttons)
    {
        const RibbonButtonForm form = formOf(button, groupForm);
        const bool fits = !columns.empty() && form != RibbonButtonForm::Large && columns.back().form == form &&
                          columns.back().buttons.size() < rows;
        if (!fits)
            columns.push_back({{}, form, 0});
        columns.back().buttons.push_back(&button);
        columns.back().width = std::max(columns.back().width, measure.width(button, form));
    }
    return columns;
}

float widthOf(const std::vector<Column>& columns)
{
    float width = -UI::px(columnGap);
    for (const Column& column : columns)
        width += column.width + UI::px(columnGap);
    return width;
}

float nameWidth(const std::string& name)
{
    const ImFont* font = UI::font(UI::Font::Small);
    return font->CalcTextSizeA(font->FontSize, FLT_MAX, 0, name.c_str()).x;
}

/// The button that stands for a whole group.
RibbonButton standIn(const RibbonLayoutGroup& group)
{
    RibbonButton button;
    button.name = group.name;
    button.caption = group.caption;
    button.icon = group.buttons.front().icon;
    // Marks it as one that opens something.
    button.dropDown.emplace_back();
    return button;
}

} // namespace

float RibbonBody::width_(const RibbonLayoutGroup& group, RibbonGroupForm form) const
{
    if (form == RibbonGroupForm::DropDown)
        return buttons_.width(standIn(group), RibbonButtonForm::Large) + UI::px(2 * groupPadding + separator);
    const float buttons = widthOf(columnsOf(group, form, buttons_));
    const float name = form == RibbonGroupForm::Bare ? 0 : std::ceil(nameWidth(group.caption)) + UI::px(4);
    return std::max(buttons, name) + UI::px(2 * groupPadding + separator);
}

void RibbonBody::draw(const RibbonLayoutTab& tab)
{
    std::vector<RibbonGroupWidths> widths;
    for (const RibbonLayoutGroup& group : tab.groups)
    {
        RibbonGroupWidths each{};
        for (std::size_t form = 0; form < each.size(); ++form)
            each.at(form) = width_(group, static_cast<RibbonGroupForm>(form));
        widths.push_back(each);
    }
    const std::vector<RibbonGroupForm> forms =
        fitRibbonGroups(widths, ImGui::GetContentRegionAvail().x - UI::px(2 * edge));
    ImVec2 origin = ImGui::GetCursorScreenPos();
    origin.x += UI::px(edge);
    for (std::size_t i = 0; i < tab.groups.size(); ++i)
    {
        const float width = widths[i].at(static_cast<std::size_t>(forms[i]));
        ImGui::PushID(tab.groups[i].name.c_str());
        drawGroup_(tab.groups[i], forms[i], origin, width);
        ImGui::PopID();
        origin.x += width;
        if (i + 1 < tab.groups.size())
            ImGui::GetWindowDrawList()->AddRectFilled({origin.x - UI::px(separator), origin.y + UI::px(8)},
                                                      {origin.x, origin.y + UI::px(height - 8)},
                                                      UI::color(UI::Color::Border));
    }
}

void RibbonBody::drawGroup_(const RibbonLayoutGroup& group, RibbonGroupForm form, ImVec2 origin, float width)
{
    const float inner = width - UI::px(separator);
    if (form == RibbonGroupForm::DropDown)
    {
        drawDropDown_(group, {origin.x + UI::px(groupPadding), origin.y + UI::px(top)},
                      inner - UI::px(2 * groupPadding));
        return;
    }
    const float content = widthOf(columnsOf(group, form, buttons_));
    drawButtons_(group, form, {origin.x + std::floor((inner - content) / 2), origin.y + UI::px(top)});
    if (form == RibbonGroupForm::Bare)
        return;
    const ImFont* font = UI::font(UI::Font::Small);
    const float left = origin.x + std::floor((inner - nameWidth(group.caption)) / 2);
    ImGui::GetWindowDrawList()->AddText(font, font->FontSize, {left, origin.y + UI::px(nameTop)},
                                        UI::color(UI::Color::SecondaryText), group.caption.c_str());
    UI::needGlyphs(group.caption);
}

void RibbonBody::drawButtons_(const RibbonLayoutGroup& group, RibbonGroupForm form, ImVec2 origin)
{
    for (const Column& column : columnsOf(group, form, buttons_))
    {
        // A lone small button stands in the middle.
        const bool alone =
            column.form != RibbonButtonForm::Large && column.buttons.size() == 1 && group.buttons.size() == 1;
        float y = origin.y + (alone ? UI::px(RibbonButtons::height / 2) : 0);
        for (const RibbonButton* button : column.buttons)
        {
            ImGui::SetCursorScreenPos({origin.x, y});
            buttons_.draw(*button, column.form, column.width);
            y += UI::px(RibbonButtons::height);
        }
        origin.x += column.width + UI::px(columnGap);
    }
}

void RibbonBody::drawDropDown_(const RibbonLayoutGroup& group, ImVec2 origin, float width)
{
    ImGui::SetCursorScreenPos(origin);
    if (buttons_.drawPlain("##group", standIn(group), RibbonButtonForm::Large, width, ImGui::IsPopupOpen(groupName)))
        ImGui::OpenPopup(groupName);
    if (!ImGui::IsPopupOpen(groupName))
        return;
    RibbonGroupForm form = RibbonGroupForm::Full;
    const float most = ImGui::GetIO().DisplaySize.x - UI::px(2 * groupPadding);
    while (form != RibbonGroupForm::Icons && width_(group, form) > most)
        form = static_cast<RibbonGroupForm>(static_cast<int>(form) + 1);
    const float popupWidth = width_(group, form) + UI::px(2 * groupPadding);
    placeBelowItem(popupWidth);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    if (beginNamedPopup(groupName, ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoNav))
    {
        buttons_.focus().beginLevel();
        const ImVec2 corner = ImGui::GetCursorScreenPos();
        ImGui::Dummy({popupWidth, UI::px(height)});
        drawGroup_(group, form, {corner.x + UI::px(groupPadding), corner.y + UI::px(2)},
                   popupWidth - UI::px(2 * groupPadding));
        if (buttons_.hasPressed())
            ImGui::CloseCurrentPopup();
        buttons_.focus().endLevel();
        ImGui::EndPopup();
    }
    ImGui::PopStyleVar();
}

} // namespace VX
