#include <quorvix/auth/AuthWidgets.h>

#include <VXViewer/RibbonIcons.h>
#include <VXViewer/UiTree.h>

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>

namespace VX::AuthWidgets
{

namespace
{

constexpr float labelGap = 12;
constexpr float linkHeight = 24;
constexpr float markSize = 16;
constexpr float markGap = 4;

float textWidth(const std::string& text)
{
    return ImGui::CalcTextSize(text.c_str(), nullptr, true).x;
}

float spaceWidth()
{
    return ImGui::CalcTextSize(" ").x;
}

/// One line of text at the cursor, in the middle of the height of a link.
void lineText(const std::string& text)
{
    ImGui::SetCursorPosY(ImGui::GetCursorPosY() + std::floor((UI::px(linkHeight) - ImGui::GetTextLineHeight()) / 2));
    UI::secondaryText(text);
}

void beginLine(float top, float align, const std::string& first, const std::string& second)
{
    const float used = textWidth(first) + spaceWidth() + textWidth(second);
    moveTo(margin, top);
    ImGui::SetCursorPosX(UI::px(margin) + std::max(0.0F, std::round((UI::px(column) - used) * align)));
}

} // namespace

void moveTo(float x, float y)
{
    ImGui::SetCursorPos({UI::px(x), UI::px(y)});
}

void logo(float top, float size)
{
    const RibbonIcons::Icon* const found =
        RibbonIcons::find("MainLogo", UI::px(size), RibbonIcons::ColorType::Colored, RibbonIcons::IconType::Logo);
    if (!found)
        return;
    moveTo((width - size) / 2, top);
    ImGui::Image(found->texture, {UI::px(size), UI::px(size)});
    UI::record(UiKind::Icon, {}, "MainLogo");
}

void centeredText(float top, const std::string& text, UI::Font font)
{
    const UI::ScopedFont scoped(font);
    const std::string shown = UI::elided(text, UI::px(column));
    moveTo(margin, top);
    ImGui::SetCursorPosX(UI::px(margin) + std::round((UI::px(column) - textWidth(shown)) / 2));
    ImGui::TextUnformatted(shown.c_str());
    UI::record(UiKind::Text, text);
    if (shown != text)
        UI::tooltip(text);
}

void label(float top, const std::string& name, const std::string& error)
{
    moveTo(margin, top);
    UI::needGlyphs(name);
    ImGui::TextUnformatted(UI::elided(name, UI::px(column)).c_str());
    if (error.empty())
        return;
    const float left = UI::px(margin) + textWidth(name) + UI::px(labelGap);
    const float right = UI::px(margin + column);
    const std::string shown = UI::elided(error, right - left);
    ImGui::SetCursorPos({right - textWidth(shown), UI::px(top)});
    ImGui::PushStyleColor(ImGuiCol_Text, UI::color(UI::Color::Error));
    ImGui::TextUnformatted(shown.c_str());
    ImGui::PopStyleColor();
    UI::record(UiKind::Text, error);
    UI::tooltip(error);
}

FieldResult field(float top, const std::string& name, std::string& text, const FieldOptions& options)
{
    moveTo(margin, top + labelHeight);
    ImGui::SetNextItemWidth(UI::px(options.width));
    UI::InputTextOptions input;
    input.limit = options.limit;
    input.password = options.password;
    input.revealed = options.revealed;
    // A password that was refused is typed anew.
    if (options.password)
        input.flags = ImGuiInputTextFlags_AutoSelectAll;
    const std::size_t widget = UiTree::instance().drawnCount();
    ImGui::PushID(name.c_str());
    FieldResult result;
    result.edited = UI::inputText("##field", text, input);
    ImGui::PopID();
    result.entered = ImGui::IsItemDeactivated() &&
                     (ImGui::IsKeyPressed(ImGuiKey_Enter, false) || ImGui::IsKeyPressed(ImGuiKey_KeypadEnter, false));
    UiTree::instance().nameDrawn(widget, name);
    return result;
}

bool link(const std::string& name)
{
    const bool pressed = ImGui::InvisibleButton(name.c_str(), {textWidth(name), UI::px(linkHeight)});
    UI::record(UiKind::Button, name);
    const bool hovered = ImGui::IsItemHovered();
    if (hovered)
        ImGui::SetMouseCursor(ImGuiMouseCursor_Hand);
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    const float lineHeight = ImGui::GetTextLineHeight();
    const float y = min.y + std::floor((max.y - min.y - lineHeight) / 2);
    const ImU32 color = ImGui::GetColorU32(UI::colorVec(hovered ? UI::Color::AccentHovered : UI::Color::Accent));
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    draw.AddText({min.x, y}, color, name.c_str());
    // Color alone would not tell it from the text.
    const float bottom = y + lineHeight;
    draw.AddRectFilled({min.x, bottom - UI::px(1)}, {max.x, bottom}, color);
    ImGui::RenderNavHighlight({min, max}, ImGui::GetItemID());
    return pressed;
}

bool linkLine(float top, float align, const std::string& text, const std::string& name)
{
    beginLine(top, align, text, name);
    lineText(text);
    ImGui::SameLine(0, spaceWidth());
    ImGui::SetCursorPosY(UI::px(top));
    return link(name);
}

bool linkInFront(float top, float align, const std::string& name, const std::string& text)
{
    beginLine(top, align, name, text);
    const bool pressed = link(name);
    ImGui::SameLine(0, spaceWidth());
    lineText(text);
    return pressed;
}

void rule(float x, float y, const std::string& name, bool isMet)
{
    const UI::ScopedFont font(UI::Font::Small);
    moveTo(x, y);
    const ImVec2 at = ImGui::GetCursorScreenPos();
    const float side = UI::px(markSize);
    ImDrawList& draw = *ImGui::GetWindowDrawList();
    const ImVec2 middle(at.x + side / 2, at.y + side / 2);
    if (isMet)
        UI::drawIcon(draw, "check", middle, side, UI::color(UI::Color::Success));
    else
        draw.AddCircle(middle, UI::px(3), UI::color(UI::Color::SecondaryText), 0, UI::px(1));
    const float offset = std::floor((side - ImGui::GetTextLineHeight()) / 2);
    ImGui::SetCursorPos({UI::px(x) + side + UI::px(markGap), UI::px(y) + offset});
    ImGui::PushStyleColor(ImGuiCol_Text, UI::color(isMet ? UI::Color::Text : UI::Color::SecondaryText));
    ImGui::TextUnformatted(UI::elided(name, UI::px(column / 2 - markSize - markGap)).c_str());
    ImGui::PopStyleColor();
    UI::record(UiKind::Text, name, isMet ? "on" : "off");
}

void message(float top, float align, const std::string& text, UI::Color color)
{
    constexpr float share = 1.9F;
    const UI::ScopedFont font(UI::Font::Small);
    moveTo(margin, top);
    ImGui::SetCursorPosX(UI::px(margin) + std::max(0.0F, std::round((UI::px(column) - textWidth(text)) * align)));
    ImGui::PushStyleColor(ImGuiCol_Text, UI::color(color));
    ImGui::PushTextWrapPos(UI::px(margin + column));
    // A line ends with a word, so two hold a little less than twice one.
    ImGui::TextUnformatted(UI::elided(text, share * UI::px(column)).c_str());
    ImGui::PopTextWrapPos();
    ImGui::PopStyleColor();
    UI::record(UiKind::Text, text);
    UI::tooltip(text);
}

} // namespace VX::AuthWidgets
