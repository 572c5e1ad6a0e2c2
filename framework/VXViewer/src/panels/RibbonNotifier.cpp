#include "NamedPopup.h"
#include "NotificationView.h"
#include "menu/Translate.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <fmt/chrono.h>
#include <imgui.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

constexpr float margin = 12;
constexpr float gap = 8;

/// Where fewer pixels are left, nothing could be read.
constexpr float smallestWidth = 160;
constexpr float smallestHeight = 68;

constexpr const char* historyName = "Notifications";
constexpr float historyWidth = 360;
constexpr float historyHeight = 420;
constexpr float padding = 12;
constexpr float markSide = 20;
constexpr float rowIndent = markSide + 8;

bool looksEqual(const RibbonNotification& a, const RibbonNotification& b)
{
    return a.type == b.type && a.header == b.header && a.text == b.text && a.buttonName == b.buttonName;
}

/// Runs the button's action last: it may show a notification itself.
void runAction(const RibbonNotification& notification)
{
    const std::function<void()> action = notification.onButtonClick;
    if (action)
        action();
}

/// The rest of the row goes on below the text.
void drawHistoryRow(const RibbonNotifier::Entry& entry)
{
    const ImVec2 start = ImGui::GetCursorPos();
    const float right = start.x + ImGui::GetContentRegionAvail().x;
    const std::string time = fmt::format("{:%H:%M}", fmt::localtime(std::chrono::system_clock::to_time_t(entry.time)));
    const float timeWidth = ImGui::CalcTextSize(time.c_str()).x;
    drawNotificationMark(entry.notification.type, UI::px(markSide));
    ImGui::SetCursorPos({right - timeWidth, start.y});
    UI::secondaryText(time);
    ImGui::SetCursorPos({start.x, start.y});
    ImGui::Indent(UI::px(rowIndent));
    drawNotificationText(entry, right - timeWidth - UI::px(padding) - start.x - UI::px(rowIndent));
}

} // namespace

RibbonNotifier::RibbonNotifier(Viewer& viewer, std::function<double()> now)
    : viewer_(viewer)
    , now_(std::move(now))
    , lastAged_(now_())
{
}

void RibbonNotifier::push(const RibbonNotification& notification)
{
    Entry entry;
    const auto same = std::find_if(shown_.begin(), shown_.end(),
                                   [&](const Entry& each) { return looksEqual(each.notification, notification); });
    if (same != shown_.end())
    {
        entry = std::move(*same);
        shown_.erase(same);
        ++entry.count;
    }
    else
    {
        entry.id = ++lastId_;
    }
    entry.notification = notification;
    entry.time = std::chrono::system_clock::now();
    entry.secondsLeft = static_cast<double>(notification.lifeTimeSec);
    entry.seen = false;
    shown_.push_back(std::move(entry));
    if ((notification.tags & shownTags_) == 0)
        archive_(shown_.size() - 1);
    if (shown_.size() > maxShown)
        archive_(0);
    viewer_.incrementForceRedrawFrames(2);
}

void RibbonNotifier::archive_(std::size_t index)
{
    const auto entry = shown_.begin() + static_cast<std::ptrdiff_t>(index);
    history_.push_front(std::move(*entry));
    shown_.erase(entry);
    if (history_.size() > maxHistory)
        history_.pop_back();
    unseen_ = true;
}

void RibbonNotifier::age_()
{
    const double now = now_();
    const double passed = now - std::exchange(lastAged_, now);
    if (hovered_)
        return;
    for (std::size_t i = 0; i < shown_.size();)
    {
        Entry& entry = shown_[i];
        const bool ages = entry.seen && entry.notification.lifeTimeSec > 0;
        entry.secondsLeft -= ages ? passed : 0;
        if (ages && entry.secondsLeft <= 0)
            archive_(i);
        else
            ++i;
    }
}

void RibbonNotifier::draw(const PixelRect& area)
{
    age_();
    hovered_ = false;
    const bool hasRoom = static_cast<float>(area.width) >= UI::px(smallestWidth) &&
                         static_cast<float>(area.height) >= UI::px(smallestHeight);
    float bottom = static_cast<float>(area.y + area.height) - UI::px(margin);
    bool full = !hasRoom;
    std::vector<std::uint64_t> closed;
    RibbonNotification pressed;
    double next = 0;
    for (auto entry = shown_.rbegin(); entry != shown_.rend(); ++entry)
    {
        entry->seen = false;
        if (full)
            continue;
        const NotificationView view(*entry, area);
        if (bottom - view.height() < static_cast<float>(area.y) + UI::px(margin) - 0.5F)
        {
            full = true;
            continue;
        }
        const NotificationResponse response = view.draw(bottom);
        bottom -= view.height() + UI::px(gap);
        entry->seen = true;
        hovered_ = hovered_ || response.hovered;
        if (response.buttonPressed)
            pressed = entry->notification;
        if (response.closed || response.buttonPressed)
            closed.push_back(entry->id);
        if (entry->notification.lifeTimeSec > 0)
            next = next > 0 ? std::min(next, entry->secondsLeft) : entry->secondsLeft;
    }
    for (const std::uint64_t id : closed)
    {
        const auto entry = std::find_if(shown_.begin(), shown_.end(), [&](const Entry& each) { return each.id == id; });
        archive_(static_cast<std::size_t>(entry - shown_.begin()));
    }
    if (next > 0 && !hovered_)
        viewer_.loop().requestFrameAfter(next);
    if (!closed.empty())
        viewer_.incrementForceRedrawFrames(2);
    runAction(pressed);
}

void RibbonNotifier::drawHistoryButton(float side)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    if (UI::iconButton("bell", tr("Notifications"), unseen_, {side, side}))
    {
        ImGui::OpenPopup(historyName);
        unseen_ = false;
    }
    drawHistory_(min.x + side, min.y, min.y + side);
}

/// The list stands above or under the button, where there is more room.
void RibbonNotifier::drawHistory_(float right, float top, float bottom)
{
    const ImVec2 window = ImGui::GetMainViewport()->Size;
    const float edge = UI::px(8);
    const float width = std::min(UI::px(historyWidth), window.x - 2 * edge);
    const bool above = top > window.y - bottom;
    const float room = (above ? top : window.y - bottom) - 2 * edge;
    const float x = std::clamp(right - width, edge, std::max(edge, window.x - width - edge));
    ImGui::SetNextWindowPos({x, above ? top - edge : bottom + edge}, ImGuiCond_Always, {0, above ? 1.0F : 0.0F});
    ImGui::SetNextWindowSizeConstraints({width, 0},
                                        {width, std::max(UI::px(64), std::min(UI::px(historyHeight), room))});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding), UI::px(padding)));
    ImGui::PushStyleColor(ImGuiCol_PopupBg, UI::color(UI::Color::Panel));
    const bool open = beginNamedPopup(historyName, ImGuiWindowFlags_NoMove);
    ImGui::PopStyleColor();
    ImGui::PopStyleVar();
    if (!open)
        return;
    const RibbonNotification pressed = drawHistoryList_();
    if (pressed.onButtonClick)
        ImGui::CloseCurrentPopup();
    ImGui::EndPopup();
    runAction(pressed);
}

/// @return the notification whose button was pressed
RibbonNotification RibbonNotifier::drawHistoryList_()
{
    RibbonNotification pressed;
    if (history_.empty())
    {
        UI::secondaryText(tr("No notifications yet"));
        return pressed;
    }
    {
        const UI::ScopedFont semiBold(UI::Font::SemiBold);
        ImGui::AlignTextToFramePadding();
        UI::text(tr("Notifications"));
    }
    ImGui::SameLine();
    const std::string clear = tr("Clear");
    ImGui::SetCursorPosX(ImGui::GetWindowWidth() - UI::px(padding) - UI::buttonWidth(clear));
    const bool cleared = UI::button(clear);
    for (const Entry& entry : history_)
    {
        ImGui::PushID(static_cast<int>(entry.id));
        ImGui::GetWindowDrawList()->AddLine(
            ImGui::GetCursorScreenPos(),
            {ImGui::GetCursorScreenPos().x + ImGui::GetContentRegionAvail().x, ImGui::GetCursorScreenPos().y},
            UI::color(UI::Color::Border), UI::px(1));
        ImGui::Dummy({0, 0});
        drawHistoryRow(entry);
        if (hasButton(entry.notification) && UI::button(entry.notification.buttonName + "##button"))
            pressed = entry.notification;
        ImGui::Unindent(UI::px(rowIndent));
        ImGui::PopID();
    }
    if (cleared)
        history_.clear();
    return pressed;
}

} // namespace VX
