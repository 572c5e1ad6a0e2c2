#include "CommandMatch.h"
#include "PlacedText.h"
#include "menu/Translate.h"

#include <VXViewer/RibbonSearch.h>
#include <VXViewer/UI.h>

#include <imgui.h>
#include <imgui_internal.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* resultsName = "Search Results";
constexpr float rowHeight = 44;
constexpr float rowPadding = 12;
constexpr float iconSide = 20;
constexpr float resultsWidth = 420;
constexpr std::size_t rowsShown = 8;
constexpr float edge = 8;

constexpr ImGuiWindowFlags resultsFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                          ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_AlwaysAutoResize |
                                          ImGuiWindowFlags_NoFocusOnAppearing;

} // namespace

RibbonSearch::RibbonSearch(std::function<std::vector<RibbonSearchCommand>()> commands,
                           std::function<void(const std::string&)> press)
    : commands_(std::move(commands))
    , press_(std::move(press))
{
}

void RibbonSearch::focus()
{
    open_ = true;
    focusRequested_ = true;
}

void RibbonSearch::close()
{
    if (fieldActive_)
        ImGui::ClearActiveID();
    open_ = false;
    begun_ = false;
    focusRequested_ = false;
    fieldActive_ = false;
    text_.clear();
    hits_.clear();
}

void RibbonSearch::drawField(float width)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    left_ = min.x;
    fieldDrawn_ = true;
    drawInput_(width);
    bottom_ = ImGui::GetItemRectMax().y;
}

void RibbonSearch::drawInput_(float width)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    if (focusRequested_)
    {
        // Dear ImGui finds the field only in the window with the focus.
        ImGui::SetWindowFocus();
        ImGui::SetKeyboardFocusHere();
    }
    ImGui::SetNextItemWidth(width);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(UI::px(32), ImGui::GetStyle().FramePadding.y));
    // The list behind the field is what the arrows move in, so they must not move the focus.
    const bool entered =
        ImGui::InputTextWithHint("##search", tr("Search for commands").c_str(), &text_,
                                 ImGuiInputTextFlags_EnterReturnsTrue | ImGuiInputTextFlags_CallbackHistory,
                                 [](ImGuiInputTextCallbackData*) { return 0; });
    ImGui::PopStyleVar();
    UI::record(UiKind::TextInput, tr("Search for commands"), text_);
    const float height = ImGui::GetItemRectSize().y;
    UI::drawIcon(*ImGui::GetWindowDrawList(), "search", {min.x + UI::px(16), min.y + height / 2}, UI::px(16),
                 UI::color(UI::Color::SecondaryText));

    const bool edited = ImGui::IsItemEdited();
    fieldActive_ = ImGui::IsItemActive();
    focusRequested_ = focusRequested_ && !fieldActive_;
    const bool begins = fieldActive_ && !begun_;
    begun_ = begun_ || begins;
    open_ = open_ || begins;
    if (begins || edited)
        find_();
    if (begins && focused_)
        focused_();
    if (open_ && (fieldActive_ || entered))
        handleKeys_();
    if (open_ && !fieldActive_ && ImGui::IsKeyPressed(ImGuiKey_Escape, false))
        close();
    if (open_ && entered && !hits_.empty())
        run_(selected_);
    else if (entered)
        focusRequested_ = open_;
}

void RibbonSearch::handleKeys_()
{
    if (hits_.empty())
        return;
    const std::size_t count = hits_.size();
    const std::size_t before = selected_;
    if (ImGui::IsKeyPressed(ImGuiKey_DownArrow))
        selected_ = (selected_ + 1) % count;
    if (ImGui::IsKeyPressed(ImGuiKey_UpArrow))
        selected_ = (selected_ + count - 1) % count;
    scrollToSelected_ = scrollToSelected_ || selected_ != before;
}

void RibbonSearch::find_()
{
    const std::vector<std::u32string> words = searchWords(text_);
    hits_.clear();
    for (RibbonSearchCommand& command : commands_())
    {
        // The best in front, those as good in the order of the commands.
        if (const std::optional<int> score = commandScore(words, command))
            hits_.insert(std::ranges::upper_bound(hits_, *score, std::greater(), &Hit::score),
                         {std::move(command), *score});
    }
    selected_ = 0;
    scrollToSelected_ = true;
}

void RibbonSearch::run_(std::size_t index)
{
    if (!hits_[index].command.unavailableReason.empty())
    {
        focusRequested_ = true;
        return;
    }
    const std::string name = hits_[index].command.name;
    close();
    if (activated_)
        activated_();
    press_(name);
}

void RibbonSearch::drawResults(const PixelRect& area)
{
    const bool ownField = !std::exchange(fieldDrawn_, false);
    // Nothing stands over a modal window.
    if (open_ && ImGui::GetTopMostPopupModal())
        close();
    if (!open_)
        return;
    const auto areaWidth = static_cast<float>(area.width);
    const float left = static_cast<float>(area.x) + UI::px(edge);
    const float bottom = static_cast<float>(area.y + area.height) - UI::px(edge);
    const float width = std::min(UI::px(resultsWidth), areaWidth - 2 * UI::px(edge));
    const float last = std::max(left, left + areaWidth - 2 * UI::px(edge) - width);
    const float x = std::clamp(ownField ? (left + last) / 2 : left_, left, last);
    const float y = ownField ? static_cast<float>(area.y) + UI::px(edge) : bottom_ + UI::px(4);
    if (width < UI::px(rowHeight) || bottom - y < UI::px(rowHeight))
        return;

    ImGui::SetNextWindowPos({x, y});
    ImGui::SetNextWindowSizeConstraints({width, 0}, {width, bottom - y});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(4), UI::px(4)));
    ImGui::PushStyleColor(ImGuiCol_WindowBg, UI::color(UI::Color::Raised));
    UI::beginWindow(resultsName, ownField ? resultsFlags : resultsFlags | ImGuiWindowFlags_NoNav);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar();
    ImGui::BringWindowToDisplayFront(ImGui::GetCurrentWindow());
    if (ownField)
        drawInput_(ImGui::GetContentRegionAvail().x);
    drawRows_(bottom - UI::px(4) - ImGui::GetCursorScreenPos().y);
    const bool hovered =
        ImGui::IsWindowHovered(ImGuiHoveredFlags_ChildWindows | ImGuiHoveredFlags_AllowWhenBlockedByActiveItem);
    UI::endWindow();
    if (!open_ || fieldActive_ || focusRequested_)
        return;
    // A press elsewhere takes the keyboard out of the field, and with it the list away.
    if (!hovered)
        close();
    else if (!ImGui::IsMouseDown(ImGuiMouseButton_Left))
        focusRequested_ = true;
}

void RibbonSearch::drawRows_(float room)
{
    if (hits_.empty())
    {
        ImGui::SetCursorPos({UI::px(rowPadding), ImGui::GetCursorPosY() + UI::px(4)});
        UI::secondaryText(tr("Nothing found"));
        ImGui::Dummy({0, 0});
        return;
    }
    const float rows = UI::px(rowHeight) * static_cast<float>(std::min(hits_.size(), rowsShown));
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    ImGui::BeginChild("##rows", {0, std::min(rows, room)}, 0, ImGuiWindowFlags_NoNav);
    std::optional<std::size_t> pressed;
    for (std::size_t i = 0; i < hits_.size(); ++i)
    {
        if (drawRow_(i))
            pressed = i;
    }
    scrollToSelected_ = false;
    ImGui::EndChild();
    ImGui::PopStyleVar();
    if (pressed)
        run_(*pressed);
}

bool RibbonSearch::drawRow_(std::size_t index)
{
    const RibbonSearchCommand& command = hits_[index].command;
    const bool available = command.unavailableReason.empty();
    const float width = ImGui::GetContentRegionAvail().x;
    const float height = UI::px(rowHeight);
    const ImVec2 min = ImGui::GetCursorScreenPos();
    bool pressed = false;
    {
        const UI::ScopedDisabled disabled(!available);
        pressed = ImGui::InvisibleButton(command.name.c_str(), {width, height});
        UI::record(UiKind::ListRow, command.caption, index == selected_ ? "selected" : "");
    }
    if (index == selected_ && scrollToSelected_)
        ImGui::SetScrollHereY();
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const ImVec2 max(min.x + width, min.y + height);
    if (index == selected_)
        draw->AddRectFilled(min, max, ImGui::GetColorU32(ImGuiCol_Header), UI::px(4));
    else if (ImGui::IsItemHovered())
        draw->AddRectFilled(min, max, UI::color(UI::Color::RaisedHovered), UI::px(4));

    const ImU32 captionColor = UI::color(available ? UI::Color::Text : UI::Color::SecondaryText);
    const float side = UI::px(iconSide);
    UI::drawIcon(*draw, command.icon, {min.x + UI::px(rowPadding) + side / 2, min.y + height / 2}, side, captionColor);

    const float line = ImGui::GetTextLineHeight();
    const float left = min.x + UI::px(rowPadding) + side + UI::px(rowPadding);
    const float right = max.x - UI::px(rowPadding);
    const float shortcutLeft = right - ImGui::CalcTextSize(command.shortcut.c_str()).x;
    const float top = min.y + std::floor((height - 2 * line) / 2);
    draw->AddText({left, top}, captionColor,
                  UI::elided(command.caption, shortcutLeft - UI::px(rowPadding) - left).c_str());
    if (!available)
        UI::tooltip(command.unavailableReason);
    drawPlacedText({shortcutLeft, top}, UI::Color::SecondaryText, command.shortcut, right - shortcutLeft);
    drawPlacedText({left, top + line}, UI::Color::SecondaryText, available ? command.path : command.unavailableReason,
                   right - left);
    return pressed;
}

} // namespace VX
