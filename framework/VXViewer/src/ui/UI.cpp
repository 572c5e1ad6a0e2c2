#include "LineBreaks.h"
#include "UiDrawing.h"
#include "UiState.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui_internal.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX::UI
{

namespace
{

constexpr double tooltipDelay = 0.5;

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

/// Draws `text` as Dear ImGui does, which ends lines at spaces; those of Chinese and Japanese are ended before.
void drawText(const std::string& text)
{
    const float wrapPosition = ImGui::GetCurrentWindow()->DC.TextWrapPos;
    if (wrapPosition < 0 || !hasWideSigns(text))
    {
        ImGui::TextUnformatted(text.c_str());
        return;
    }
    const ImFont* const font = ImGui::GetFont();
    const float scale = ImGui::GetFontSize() / font->FontSize;
    const float width = ImGui::CalcWrapWidthForPos(ImGui::GetCursorScreenPos(), wrapPosition);
    const auto advance = [&](char32_t sign) { return scale * font->GetCharAdvance(static_cast<ImWchar>(sign)); };
    ImGui::TextUnformatted(withLineEnds(text, width, advance).c_str());
}

void addItem(UiKind kind, std::string_view label, ImVec2 max, std::string value)
{
    UiItem item = itemWithRect(kind, label, ImGui::GetItemRectMin(), max);
    needGlyphs(label);
    needGlyphs(value);
    item.value = std::move(value);
    item.enabled = (ImGui::GetItemFlags() & ImGuiItemFlags_Disabled) == 0;
    item.hovered = ImGui::IsItemHovered();
    item.focused = ImGui::IsItemFocused() && !ImGui::GetCurrentContext()->NavDisableHighlight;
    UiTree::instance().add(std::move(item));
}

} // namespace

std::string visiblePart(std::string_view label)
{
    return std::string(label.substr(0, label.find("##")));
}

void recordWindow(const char* name)
{
    // Dear ImGui keeps the name that a window was created with, but for "###id" the part before it may change, as with
    // the language.
    ImGuiWindow& window = *ImGui::GetCurrentWindow();
    if (std::string_view(window.Name) != name)
    {
        auto size = static_cast<std::size_t>(window.NameBufLen);
        window.Name = ImStrdupcpy(window.Name, &size, name);
        window.NameBufLen = static_cast<int>(size);
    }
    const ImVec2 min = ImGui::GetWindowPos();
    const ImVec2 size = ImGui::GetWindowSize();
    UiItem item = itemWithRect(UiKind::Window, name, min, {min.x + size.x, min.y + size.y});
    item.visibleMin = item.min;
    item.visibleMax = item.max;
    UiTree::instance().add(std::move(item));
}

void keepInside()
{
    const ImVec2 space = ImGui::GetMainViewport()->Size;
    const ImVec2 size = ImGui::GetWindowSize();
    const ImVec2 place = ImGui::GetWindowPos();
    const ImVec2 inside(std::max(0.0F, std::min(place.x, space.x - size.x)),
                        std::max(0.0F, std::min(place.y, space.y - size.y)));
    if (inside.x != place.x || inside.y != place.y)
        ImGui::SetWindowPos(inside);
}

ImVec2 controlSize(ImVec2 size)
{
    if (size.y <= 0)
        size.y = px(controlHeight);
    return size;
}

bool isDisabledNow()
{
    return (ImGui::GetCurrentContext()->CurrentItemFlags & ImGuiItemFlags_Disabled) != 0;
}

float scale()
{
    return UiState::instance().scale;
}

void setScale(float pixelsPerUnit)
{
    UiState::instance().scale = pixelsPerUnit;
}

float userScale()
{
    return UiState::instance().userScale;
}

void setUserScale(float factor)
{
    UiState::instance().userScale = std::clamp(factor, smallestUserScale, largestUserScale);
    getViewerInstance().incrementForceRedrawFrames(framesForAChange);
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

void needGlyphs(std::string_view text)
{
    if (UiFonts* fonts = UiState::instance().fonts)
        fonts->need(text);
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

bool escapePressed()
{
    if (!ImGui::IsWindowFocused(ImGuiFocusedFlags_RootAndChildWindows))
        return false;
    UiState::instance().escapeTaken = true;
    return ImGui::IsKeyPressed(ImGuiKey_Escape, false);
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

void text(const std::string& text)
{
    drawText(text);
    record(UiKind::Text, text);
}

void secondaryText(const std::string& text)
{
    ImGui::PushStyleColor(ImGuiCol_Text, color(Color::SecondaryText));
    drawText(text);
    ImGui::PopStyleColor();
    record(UiKind::Text, text);
}

void wrappedText(const std::string& text)
{
    ImGui::PushTextWrapPos(0);
    drawText(text);
    ImGui::PopTextWrapPos();
    record(UiKind::Text, text);
}

bool isTooltipDue()
{
    if (!ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled | ImGuiHoveredFlags_NoSharedDelay))
        return false;
    const auto hoveredFor = static_cast<double>(ImGui::GetCurrentContext()->HoverItemDelayTimer);
    if (ImGui::IsItemHovered(ImGuiHoveredFlags_AllowWhenDisabled | ImGuiHoveredFlags_DelayNormal |
                             ImGuiHoveredFlags_NoSharedDelay))
        return true;
    // Nothing else wakes the loop while the mouse rests.
    getViewerInstance().loop().requestFrameAfter(std::max(0.02, tooltipDelay - hoveredFor));
    return false;
}

void tooltip(const std::string& text, const std::string& shortcut)
{
    if (!isTooltipDue())
        return;
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
    addItem(kind, label, ImGui::GetItemRectMax(), std::move(value));
}

void recordField(UiKind kind, std::string_view label, float width, std::string value)
{
    addItem(kind, label, {ImGui::GetItemRectMin().x + width, ImGui::GetItemRectMax().y}, std::move(value));
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
