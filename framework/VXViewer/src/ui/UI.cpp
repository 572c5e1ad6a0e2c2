#include "UiState.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>
#include <imgui_internal.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace VX::UI
{

namespace
{

constexpr float controlHeight = 28;
constexpr double tooltipDelay = 0.5;

std::string visiblePart(std::string_view label)
{
    return std::string(label.substr(0, label.find("##")));
}

Vector2f toVector(ImVec2 v)
{
    return {v.x, v.y};
}

/// The name of the window that the user sees around the current widget.
std::string windowName()
{
    return visiblePart(ImGui::GetCurrentWindow()->RootWindow->Name);
}

UiItem itemWithRect(UiKind kind, std::string_view label, ImVec2 min, ImVec2 max)
{
    UiItem item;
    item.kind = kind;
    item.window = windowName();
    item.label = visiblePart(label);
    item.min = toVector(min);
    item.max = toVector(max);
    const ImRect clip = ImGui::GetCurrentWindow()->ClipRect;
    item.visibleMin = item.min.cwiseMax(toVector(clip.Min));
    item.visibleMax = item.max.cwiseMin(toVector(clip.Max));
    return item;
}

void recordWindow(const char* name)
{
    const ImVec2 min = ImGui::GetWindowPos();
    const ImVec2 size = ImGui::GetWindowSize();
    UiItem item = itemWithRect(UiKind::Window, name, min, {min.x + size.x, min.y + size.y});
    item.visibleMin = item.min;
    item.visibleMax = item.max;
    UiTree::instance().add(std::move(item));
}

ImVec2 controlSize(ImVec2 size)
{
    if (size.y <= 0)
        size.y = px(controlHeight);
    return size;
}

/// A small arrow down at the right end of a combo.
void drawChevron(ImVec2 min, ImVec2 max)
{
    const float r = px(4);
    const ImVec2 center(max.x - px(14), (min.y + max.y) / 2);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const ImVec2 tip(center.x, center.y + r / 2);
    draw->AddLine({center.x - r, center.y - r / 2}, tip, color(Color::SecondaryText), scale() * 1.5F);
    draw->AddLine(tip, {center.x + r, center.y - r / 2}, color(Color::SecondaryText), scale() * 1.5F);
}

/// True within a `ScopedDisabled`.
bool isDisabledNow()
{
    return (ImGui::GetCurrentContext()->CurrentItemFlags & ImGuiItemFlags_Disabled) != 0;
}

bool coloredButton(const std::string& label, ImVec2 size, std::array<Color, 3> colors, Color textColor)
{
    ImGui::PushStyleColor(ImGuiCol_Button, color(colors[0]));
    ImGui::PushStyleColor(ImGuiCol_ButtonHovered, color(colors[1]));
    ImGui::PushStyleColor(ImGuiCol_ButtonActive, color(colors[2]));
    ImGui::PushStyleColor(ImGuiCol_Text, color(textColor));
    const bool pressed = ImGui::Button(label.c_str(), controlSize(size));
    ImGui::PopStyleColor(4);
    return pressed;
}

} // namespace

float scale()
{
    return UiState::instance().scale;
}

void setScale(float pixelsPerUnit)
{
    UiState::instance().scale = pixelsPerUnit;
}

float px(float units)
{
    return std::round(units * scale());
}

ImU32 color(Color color)
{
    return ImGui::ColorConvertFloat4ToU32(colorVec(color));
}

ImFont* font(Font font)
{
    const UiFonts* fonts = UiState::instance().fonts;
    return fonts ? fonts->get(font) : nullptr;
}

ScopedFont::ScopedFont(Font font)
{
    ImGui::PushFont(UI::font(font));
}

ScopedFont::~ScopedFont()
{
    ImGui::PopFont();
}

ScopedDisabled::ScopedDisabled(bool disabled)
{
    ImGui::BeginDisabled(disabled);
}

ScopedDisabled::~ScopedDisabled()
{
    ImGui::EndDisabled();
}

bool beginWindow(const char* name, ImGuiWindowFlags flags, bool* open)
{
    const bool visible = ImGui::Begin(name, open, flags);
    recordWindow(name);
    return visible;
}

void endWindow()
{
    ImGui::End();
}

bool beginModal(const char* name, const std::string& title, float width)
{
    const ImGuiViewport* viewport = ImGui::GetMainViewport();
    ImGui::SetNextWindowPos(viewport->GetCenter(), ImGuiCond_Always, {0.5F, 0.5F});
    const float fitting = std::min(width, viewport->Size.x - px(32));
    ImGui::SetNextWindowSizeConstraints({fitting, 0}, {fitting, viewport->Size.y - px(32)});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(px(20), px(16)));
    ImGui::PushStyleColor(ImGuiCol_PopupBg, color(Color::Panel));
    const bool visible = ImGui::BeginPopupModal(name, nullptr,
                                                ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_AlwaysAutoResize |
                                                    ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoSavedSettings);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar();
    if (!visible)
        return false;
    recordWindow(name);
    {
        const ScopedFont headline(Font::Headline);
        text(title);
    }
    ImGui::Dummy({0, px(4)});
    return true;
}

void endModal()
{
    ImGui::EndPopup();
}

void closeModal(const char* name)
{
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    const ImGuiID id = context.CurrentWindow->GetID(name);
    for (int level = 0; level < context.OpenPopupStack.Size; ++level)
    {
        if (context.OpenPopupStack[level].PopupId == id)
        {
            ImGui::ClosePopupToLevel(level, true);
            return;
        }
    }
}

bool button(const std::string& label, ImVec2 size)
{
    const bool pressed = coloredButton(label, size, {Color::Raised, Color::RaisedHovered, Color::Border}, Color::Text);
    record(UiKind::Button, label);
    return pressed;
}

bool primaryButton(const std::string& label, ImVec2 size)
{
    const ScopedFont semiBold(Font::SemiBold);
    const bool disabled = isDisabledNow();
    const bool pressed =
        disabled ? coloredButton(label, size, {Color::Raised, Color::Raised, Color::Raised}, Color::Text)
                 : coloredButton(label, size, {Color::Accent, Color::AccentHovered, Color::Accent}, Color::AccentText);
    record(UiKind::Button, label);
    return pressed;
}

bool toolButton(const std::string& label, bool active, ImVec2 size)
{
    const Color rest = active ? Color::Raised : Color::Panel;
    const bool pressed = coloredButton(label, size, {rest, Color::RaisedHovered, Color::Border}, Color::Text);
    record(UiKind::Button, label, active ? "on" : "");
    if (active)
    {
        const ImVec2 min = ImGui::GetItemRectMin();
        const ImVec2 max = ImGui::GetItemRectMax();
        ImGui::GetWindowDrawList()->AddRectFilled({min.x, max.y - px(2)}, max, color(Color::Accent), px(1));
    }
    return pressed;
}

float buttonWidth(const std::string& label)
{
    return ImGui::CalcTextSize(label.c_str(), nullptr, true).x + 2 * ImGui::GetStyle().FramePadding.x;
}

bool checkbox(const std::string& label, bool& value)
{
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding,
                        ImVec2(px(4), (px(controlHeight) - ImGui::GetTextLineHeight()) / 2));
    const bool changed = ImGui::Checkbox(label.c_str(), &value);
    ImGui::PopStyleVar();
    record(UiKind::Checkbox, label, value ? "on" : "off");
    return changed;
}

bool inputText(const std::string& label, std::string& text, ImGuiInputTextFlags flags, const std::string& hint)
{
    const bool changed = ImGui::InputTextWithHint(label.c_str(), hint.c_str(), &text, flags);
    record(UiKind::TextInput, label, (flags & ImGuiInputTextFlags_Password) != 0 ? std::string() : text);
    return changed;
}

bool combo(const std::string& label, int& current, const std::vector<std::string>& choices)
{
    const bool known = current >= 0 && current < static_cast<int>(choices.size());
    const std::string shown = known ? choices[static_cast<std::size_t>(current)] : std::string();
    const bool open = ImGui::BeginCombo(label.c_str(), shown.c_str(), ImGuiComboFlags_NoArrowButton);
    if (!open)
    {
        record(UiKind::Combo, label, shown);
        drawChevron(ImGui::GetItemRectMin(), ImGui::GetItemRectMax());
    }
    if (!open)
        return false;
    bool changed = false;
    for (int i = 0; i < static_cast<int>(choices.size()); ++i)
    {
        ImGui::PushID(i);
        if (listRow(choices[static_cast<std::size_t>(i)], i == current))
        {
            changed = i != current;
            current = i;
        }
        ImGui::PopID();
    }
    ImGui::EndCombo();
    return changed;
}

bool listRow(const std::string& label, bool selected, ImGuiSelectableFlags flags)
{
    ImGui::PushStyleVar(ImGuiStyleVar_SelectableTextAlign, ImVec2(0, 0.5F));
    const bool pressed = ImGui::Selectable(label.c_str(), selected, flags, {0, px(controlHeight)});
    ImGui::PopStyleVar();
    record(UiKind::ListRow, label, selected ? "selected" : "");
    return pressed;
}

void text(const std::string& text)
{
    ImGui::TextUnformatted(text.c_str());
    record(UiKind::Text, text);
}

void secondaryText(const std::string& text)
{
    ImGui::PushStyleColor(ImGuiCol_Text, color(Color::SecondaryText));
    ImGui::TextUnformatted(text.c_str());
    ImGui::PopStyleColor();
    record(UiKind::Text, text);
}

void wrappedText(const std::string& text)
{
    ImGui::PushTextWrapPos(0);
    ImGui::TextUnformatted(text.c_str());
    ImGui::PopTextWrapPos();
    record(UiKind::Text, text);
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

void tooltip(const std::string& text, const std::string& shortcut)
{
    if (!ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled | ImGuiHoveredFlags_NoSharedDelay))
        return;
    const auto hoveredFor = static_cast<double>(ImGui::GetCurrentContext()->HoverItemDelayTimer);
    if (!ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled | ImGuiHoveredFlags_DelayNormal |
                              ImGuiHoveredFlags_NoSharedDelay))
    {
        // Nothing else wakes the loop while the mouse rests.
        getViewerInstance().loop().requestFrameAfter(std::max(0.02, tooltipDelay - hoveredFor));
        return;
    }
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(px(8), px(4)));
    if (ImGui::BeginTooltip())
    {
        UI::text(text);
        if (!shortcut.empty())
        {
            ImGui::SameLine(0, px(12));
            secondaryText(shortcut);
        }
        ImGui::EndTooltip();
    }
    ImGui::PopStyleVar();
}

void record(UiKind kind, std::string_view label, std::string value)
{
    UiItem item = itemWithRect(kind, label, ImGui::GetItemRectMin(), ImGui::GetItemRectMax());
    item.value = std::move(value);
    item.enabled = (ImGui::GetItemFlags() & ImGuiItemFlags_Disabled) == 0;
    item.hovered = ImGui::IsItemHovered();
    UiTree::instance().add(std::move(item));
}

std::string elided(const std::string& text, float width)
{
    if (ImGui::CalcTextSize(text.c_str()).x <= width)
        return text;
    const std::string dots = "\u2026";
    const auto isBoundary = [&](std::size_t i)
    { return i >= text.size() || (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U; };
    std::size_t kept = text.size();
    std::string shortened = text;
    while (kept > 2 && ImGui::CalcTextSize(shortened.c_str()).x > width)
    {
        --kept;
        std::size_t head = (kept + 1) / 2;
        std::size_t tail = text.size() - kept / 2;
        while (head > 0 && !isBoundary(head))
            --head;
        while (tail < text.size() && !isBoundary(tail))
            ++tail;
        shortened = text.substr(0, head) + dots + text.substr(tail);
    }
    return shortened;
}

} // namespace VX::UI
