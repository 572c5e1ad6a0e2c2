#include "RibbonButtons.h"

#include "menu/Translate.h"
#include "panels/NamedPopup.h"
#include "ui/UiDrawing.h"

#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <utility>

namespace VX
{

namespace
{

constexpr float largeIcon = 28;
constexpr float smallIcon = 16;
constexpr float largePadding = 6;
constexpr float smallPadding = 6;
constexpr float smallestLarge = 48;
constexpr float captionLine = 13;
constexpr float chevronRoom = 14;
constexpr float tooltipWidth = 300;
constexpr float popupPadding = 4;
constexpr float disabledAlpha = 0.45F;
constexpr float activeAlpha = 0.22F;

constexpr const char* dropDownName = "Ribbon Drop-Down";

float textWidth(UI::Font font, const std::string& text)
{
    const ImFont* face = UI::font(font);
    return face->CalcTextSizeA(face->FontSize, FLT_MAX, 0, text.c_str()).x;
}

/// A caption in at most two lines, broken where they are the most alike.
struct TwoLines
{
    std::array<std::string, 2> lines;
    float width = 0;
};

TwoLines inTwoLines(const std::string& caption, float chevron)
{
    TwoLines best{{caption, {}}, textWidth(UI::Font::Small, caption)};
    if (chevron > 0 && caption.find(' ') == std::string::npos)
        best.width = std::max(best.width, chevron);
    for (std::size_t at = caption.find(' '); at != std::string::npos; at = caption.find(' ', at + 1))
    {
        TwoLines split{{caption.substr(0, at), caption.substr(at + 1)}, 0};
        split.width =
            std::max(textWidth(UI::Font::Small, split.lines[0]), textWidth(UI::Font::Small, split.lines[1]) + chevron);
        // Short words stay on one line.
        const bool isShort = best.lines[1].empty() && best.width <= UI::px(smallestLarge - 2 * largePadding);
        if (split.width < best.width && !isShort)
            best = split;
    }
    return best;
}

/// Regardless of the style's own alpha, which is lower within `ScopedDisabled`.
ImU32 withAlpha(ImU32 color, float alpha)
{
    return (color & ~IM_COL32_A_MASK) | static_cast<ImU32>(alpha * 255) << IM_COL32_A_SHIFT;
}

ImU32 faded(ImU32 color, bool enabled)
{
    return enabled ? color : withAlpha(color, disabledAlpha);
}

void drawChevronDown(ImVec2 center, ImU32 color)
{
    const float r = UI::px(3);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const std::array<ImVec2, 3> points{ImVec2(center.x - r, center.y - r / 2), ImVec2(center.x, center.y + r / 2),
                                       ImVec2(center.x + r, center.y - r / 2)};
    draw->AddPolyline(points.data(), static_cast<int>(points.size()), color, 0, 1.25F * UI::scale());
}

void drawText(UI::Font font, ImVec2 at, ImU32 color, const std::string& text)
{
    const ImFont* face = UI::font(font);
    ImGui::GetWindowDrawList()->AddText(face, face->FontSize, at, color, text.c_str());
}

/// What of a button is drawn over its background.
class Face
{
public:
    Face(const RibbonButton& button, ImVec2 min, ImVec2 max, ImU32 tint, ImU32 text)
        : button_(button)
        , min_(min)
        , max_(max)
        , tint_(tint)
        , text_(text)
    {
    }

    void drawLarge() const
    {
        const float middle = (min_.x + max_.x) / 2;
        drawIcon_({middle, min_.y + UI::px(2 + largeIcon / 2)}, largeIcon);
        const float chevron = hasChevron_() ? UI::px(chevronRoom) : 0;
        const TwoLines caption = inTwoLines(button_.caption, chevron);
        const bool oneLine = caption.lines[1].empty();
        float top = min_.y + UI::px(largeIcon + 1);
        for (const std::string& line : caption.lines)
        {
            const float width = textWidth(UI::Font::Small, line);
            const bool withChevron = chevron > 0 && !oneLine && &line == &caption.lines[1];
            const float left = std::round(middle - (width + (withChevron ? chevron : 0)) / 2);
            drawText(UI::Font::Small, {left, top}, text_, line);
            if (withChevron)
                drawChevronDown({left + width + UI::px(8), top + UI::px(8)}, text_);
            top += UI::px(captionLine);
        }
        if (chevron > 0 && oneLine)
            drawChevronDown({middle, min_.y + UI::px(largeIcon + 1 + captionLine + 8)}, text_);
    }

    void drawSmall(const std::string& right) const
    {
        const float middle = (min_.y + max_.y) / 2;
        drawIcon_({min_.x + UI::px(smallPadding + smallIcon / 2), middle}, smallIcon);
        const float left = min_.x + UI::px(smallPadding + smallIcon + 6);
        const float top = std::round(middle - ImGui::GetTextLineHeight() / 2);
        drawText(UI::Font::Regular, {left, top}, text_, button_.caption);
        if (!right.empty())
            drawText(UI::Font::Regular, {max_.x - UI::px(smallPadding + 2) - textWidth(UI::Font::Regular, right), top},
                     UI::color(UI::Color::SecondaryText), right);
        if (hasChevron_())
            drawChevronDown({max_.x - UI::px(smallPadding + 4), middle}, text_);
    }

    void drawIconOnly() const
    {
        const ImVec2 middle((min_.x + max_.x) / 2, (min_.y + max_.y) / 2);
        drawIcon_(middle, smallIcon);
        if (hasChevron_())
            drawChevronDown({max_.x - UI::px(5), max_.y - UI::px(6)}, text_);
    }

private:
    [[nodiscard]] bool hasChevron_() const { return !button_.dropDown.empty(); }

    void drawIcon_(ImVec2 center, float units) const
    {
        UI::drawIcon(*ImGui::GetWindowDrawList(), button_.icon, center, UI::px(units), tint_);
    }

    const RibbonButton& button_;
    ImVec2 min_;
    ImVec2 max_;
    ImU32 tint_;
    ImU32 text_;
};

} // namespace

float RibbonButtons::width(const RibbonButton& button, RibbonButtonForm form) const
{
    const bool chevron = !button.dropDown.empty();
    switch (form)
    {
    case RibbonButtonForm::Large:
        return std::max(UI::px(smallestLarge),
                        std::ceil(inTwoLines(button.caption, chevron ? UI::px(chevronRoom) : 0).width) +
                            2 * UI::px(largePadding));
    case RibbonButtonForm::Icon:
        return UI::px(height);
    case RibbonButtonForm::Small:
    case RibbonButtonForm::Row:
        break;
    }
    float width =
        UI::px(2 * smallPadding + smallIcon + 6 + 2) + std::ceil(textWidth(UI::Font::Regular, button.caption));
    if (chevron)
        width += UI::px(chevronRoom);
    const std::string key =
        form == RibbonButtonForm::Row && shortcuts_ ? shortcuts_->keyOf(button.name) : std::string();
    if (!key.empty())
        width += UI::px(24) + textWidth(UI::Font::Regular, key);
    return width;
}

bool RibbonButtons::drawPlain(const char* id, const RibbonButton& look, RibbonButtonForm form, float width, bool active)
{
    const float side = UI::px(form == RibbonButtonForm::Large ? largeHeight : height);
    const bool clicked = ImGui::InvisibleButton(id, {width, side});
    UI::record(UiKind::Button, look.caption, active ? "on" : "");
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const bool enabled = !UI::isDisabledNow();
    ImDrawList* draw = ImGui::GetWindowDrawList();
    if (active)
        draw->AddRectFilled(min, max, withAlpha(UI::color(UI::Color::Accent), activeAlpha), UI::px(4));
    if (enabled && ImGui::IsItemHovered())
    {
        const UI::Color hovered = ImGui::IsItemActive() ? UI::Color::RaisedPressed : UI::Color::RaisedHovered;
        draw->AddRectFilled(min, max, withAlpha(UI::color(hovered), active ? 0.5F : 1.0F), UI::px(4));
    }
    const ImU32 text = UI::color(UI::Color::Text);
    const Face face(look, min, max, faded(active ? UI::color(UI::Color::AccentHovered) : text, enabled),
                    faded(text, enabled));
    const bool showsKey = form == RibbonButtonForm::Row && shortcuts_ != nullptr;
    if (form == RibbonButtonForm::Large)
        face.drawLarge();
    else if (form == RibbonButtonForm::Icon)
        face.drawIconOnly();
    else
        face.drawSmall(showsKey ? shortcuts_->keyOf(look.name) : std::string());
    return focus_.stop() || clicked;
}

void RibbonButtons::draw(const RibbonButton& button, RibbonButtonForm form, float width)
{
    if (!button.dropDown.empty())
    {
        ImGui::PushID(button.name.c_str());
        const bool isOpen = ImGui::IsPopupOpen(dropDownName);
        const bool active = std::any_of(button.dropDown.begin(), button.dropDown.end(),
                                        [](const RibbonButton& each) { return each.item->isActive(); });
        if (drawPlain("##open", button, form, width, active || isOpen))
            ImGui::OpenPopup(dropDownName);
        drawTooltip_(button, {});
        drawDropDown_(button);
        ImGui::PopID();
        return;
    }
    const std::string reason = button.item->unavailableReason();
    bool pressed = false;
    {
        const UI::ScopedDisabled disabled(!reason.empty());
        pressed = drawPlain(button.name.c_str(), button, form, width, button.item->isActive());
    }
    drawTooltip_(button, reason);
    if (pressed)
    {
        pressed_ = button.item;
        focus_.leave();
    }
}

void RibbonButtons::drawDropDown_(const RibbonButton& button)
{
    if (!ImGui::IsPopupOpen(dropDownName))
        return;
    float width = UI::px(120);
    for (const RibbonButton& each : button.dropDown)
        width = std::max(width, this->width(each, RibbonButtonForm::Row));
    placeBelowItem(width + UI::px(2 * popupPadding));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(popupPadding), UI::px(popupPadding)));
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    if (beginNamedPopup(dropDownName, ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoNav))
    {
        focus_.beginLevel();
        for (const RibbonButton& each : button.dropDown)
            draw(each, RibbonButtonForm::Row, width);
        if (pressed_)
            ImGui::CloseCurrentPopup();
        focus_.endLevel();
        ImGui::EndPopup();
    }
    ImGui::PopStyleVar(2);
}

void placeBelowItem(float width)
{
    const float right = ImGui::GetIO().DisplaySize.x - UI::px(4);
    const ImVec2 below(ImGui::GetItemRectMin().x, ImGui::GetItemRectMax().y + UI::px(2));
    ImGui::SetNextWindowPos({std::max(0.0F, std::min(below.x, right - width)), below.y});
}

void RibbonButtons::drawTooltip_(const RibbonButton& button, const std::string& reason) const
{
    if (!UI::isTooltipDue())
        return;
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(8), UI::px(6)));
    if (ImGui::BeginTooltip())
    {
        {
            const UI::ScopedFont semiBold(UI::Font::SemiBold);
            UI::text(button.caption);
        }
        const std::string key = shortcuts_ ? shortcuts_->keyOf(button.name) : std::string();
        if (!key.empty())
        {
            ImGui::SameLine(0, UI::px(12));
            UI::secondaryText(key);
        }
        ImGui::PushTextWrapPos(ImGui::GetCursorPosX() + UI::px(tooltipWidth));
        if (!button.tooltip.empty())
            UI::text(button.tooltip);
        if (!reason.empty())
        {
            ImGui::PushStyleColor(ImGuiCol_Text, UI::color(UI::Color::Warning));
            UI::text(reason);
            ImGui::PopStyleColor();
        }
        ImGui::PopTextWrapPos();
        ImGui::EndTooltip();
    }
    ImGui::PopStyleVar();
}

std::shared_ptr<RibbonMenuItem> RibbonButtons::takePressed()
{
    return std::exchange(pressed_, nullptr);
}

} // namespace VX
