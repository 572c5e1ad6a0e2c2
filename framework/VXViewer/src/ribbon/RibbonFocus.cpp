#include "RibbonFocus.h"

#include <VXViewer/UI.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <imgui_internal.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace VX
{

namespace
{

/// Going down, being out of line costs more than being far.
constexpr float weightAcross = 3;

/// A row is left only where it ends.
constexpr float otherRow = 1e6F;

float gap(float minA, float maxA, float minB, float maxB)
{
    return std::max({0.0F, minB - maxA, minA - maxB});
}

} // namespace

void RibbonFocus::beginFrame()
{
    drawn_.clear();
    level_ = 0;
}

void RibbonFocus::endFrame()
{
    shown_.swap(drawn_);
    pressed_ = 0;
    topLevel_ = 0;
    for (const Stop& stop : shown_)
        topLevel_ = std::max(topLevel_, stop.level);
    const auto levels = static_cast<std::size_t>(topLevel_) + 1;
    if (!active_ || shown_.empty())
        return;
    focus_.resize(std::min(focus_.size(), levels));
    if (focus_.size() < levels || !focused_())
    {
        focus_.resize(levels, 0);
        focus_.back() = topStops_().front().id;
    }
}

bool RibbonFocus::stop()
{
    const ImGuiID id = ImGui::GetItemID();
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    drawn_.push_back({id, level_, min, max});
    const ImGuiContext& context = *ImGui::GetCurrentContext();
    // The interface's own control of all windows by Tab and F6.
    const bool isNavigatedTo = context.NavId == id && !context.NavDisableHighlight;
    if (isOn(id) || isNavigatedTo)
        ImGui::GetWindowDrawList()->AddRect(min, max, UI::color(UI::Color::Accent), UI::px(4), 0, UI::px(2));
    return isOn(id) && pressed_ == id;
}

void RibbonFocus::beginLevel()
{
    ++level_;
    if (level_ == topLevel_)
        handlePopupKeys_();
}

void RibbonFocus::endLevel()
{
    --level_;
}

bool RibbonFocus::isOn(ImGuiID id) const
{
    return active_ && static_cast<int>(focus_.size()) == topLevel_ + 1 && !focus_.empty() && focus_.back() == id;
}

void RibbonFocus::enter()
{
    active_ = true;
    focus_.clear();
    // There is one ring at a time.
    ImGui::GetCurrentContext()->NavDisableHighlight = true;
}

void RibbonFocus::leave()
{
    active_ = false;
    focus_.clear();
}

bool RibbonFocus::handleKey(int key, int mods)
{
    if (!active_)
        return false;
    switch (key)
    {
    case GLFW_KEY_LEFT:
        move_({-1, 0});
        return true;
    case GLFW_KEY_RIGHT:
        move_({1, 0});
        return true;
    case GLFW_KEY_UP:
        move_({0, -1});
        return true;
    case GLFW_KEY_DOWN:
        move_({0, 1});
        return true;
    case GLFW_KEY_TAB:
        moveInOrder_((mods & GLFW_MOD_SHIFT) != 0 ? -1 : 1);
        return true;
    case GLFW_KEY_ENTER:
    case GLFW_KEY_KP_ENTER:
    case GLFW_KEY_SPACE:
        pressed_ = focus_.empty() ? 0 : focus_.back();
        return true;
    default:
        leave();
        return key == GLFW_KEY_ESCAPE;
    }
}

void RibbonFocus::handlePopupKeys_()
{
    static constexpr std::array<std::pair<ImGuiKey, int>, 8> keys{{{ImGuiKey_LeftArrow, GLFW_KEY_LEFT},
                                                                   {ImGuiKey_RightArrow, GLFW_KEY_RIGHT},
                                                                   {ImGuiKey_UpArrow, GLFW_KEY_UP},
                                                                   {ImGuiKey_DownArrow, GLFW_KEY_DOWN},
                                                                   {ImGuiKey_Tab, GLFW_KEY_TAB},
                                                                   {ImGuiKey_Enter, GLFW_KEY_ENTER},
                                                                   {ImGuiKey_KeypadEnter, GLFW_KEY_ENTER},
                                                                   {ImGuiKey_Space, GLFW_KEY_SPACE}}};
    for (const auto& [key, glfwKey] : keys)
    {
        if (!ImGui::IsKeyPressed(key))
            continue;
        // A pop-up that the mouse opened: the first key finds the first stop.
        if (!active_)
            enter();
        else
            handleKey(glfwKey, ImGui::GetIO().KeyShift ? GLFW_MOD_SHIFT : 0);
    }
    if (ImGui::IsKeyPressed(ImGuiKey_Escape, false))
        ImGui::CloseCurrentPopup();
}

const RibbonFocus::Stop* RibbonFocus::focused_() const
{
    const auto found = std::find_if(shown_.begin(), shown_.end(), [&](const Stop& stop)
                                    { return !focus_.empty() && stop.level == topLevel_ && stop.id == focus_.back(); });
    return found != shown_.end() ? &*found : nullptr;
}

std::vector<RibbonFocus::Stop> RibbonFocus::topStops_() const
{
    std::vector<Stop> stops;
    std::copy_if(shown_.begin(), shown_.end(), std::back_inserter(stops),
                 [&](const Stop& stop) { return stop.level == topLevel_; });
    return stops;
}

void RibbonFocus::move_(ImVec2 direction)
{
    const Stop* from = focused_();
    if (!from)
        return;
    float best = std::numeric_limits<float>::max();
    ImGuiID target = from->id;
    for (const Stop& stop : topStops_())
    {
        const ImVec2 way((stop.min.x + stop.max.x - from->min.x - from->max.x) / 2,
                         (stop.min.y + stop.max.y - from->min.y - from->max.y) / 2);
        const float along = way.x * direction.x + way.y * direction.y;
        const float gapX = gap(from->min.x, from->max.x, stop.min.x, stop.max.x);
        const float gapY = gap(from->min.y, from->max.y, stop.min.y, stop.max.y);
        const bool sideways = direction.x != 0;
        // Beside it, not merely a little off the middle.
        const bool apart = sideways ? from->max.x <= stop.min.x + 1 || stop.max.x <= from->min.x + 1
                                    : from->max.y <= stop.min.y + 1 || stop.max.y <= from->min.y + 1;
        const float across = sideways ? gapY : gapX;
        const float offset = std::abs(sideways ? way.y : way.x);
        const float score = along + weightAcross * across + offset / 16 + (sideways && across > 0 ? otherRow : 0);
        if (stop.id == from->id || along <= 0 || !apart || score >= best)
            continue;
        best = score;
        target = stop.id;
    }
    focus_.back() = target;
}

void RibbonFocus::moveInOrder_(int step)
{
    const Stop* from = focused_();
    if (!from)
        return;
    const std::vector<Stop> stops = topStops_();
    const auto at = std::find_if(stops.begin(), stops.end(), [&](const Stop& stop) { return stop.id == from->id; });
    const auto count = static_cast<std::ptrdiff_t>(stops.size());
    focus_.back() = stops[static_cast<std::size_t>((at - stops.begin() + step + count) % count)].id;
}

} // namespace VX
