#include "ScaleIndicator.h"

#include "SceneFacts.h"

#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiTree.h>

#include <imgui.h>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

// In units of the design.
constexpr float margin = 16;
constexpr float longest = 160;
constexpr float thickness = 2;
constexpr float tickHeight = 7;
constexpr float gap = 3;

std::string scaleText(double millimetres)
{
    constexpr double metre = 1000;
    constexpr double kilometre = 1000 * metre;
    constexpr double leastMillimetres = 0.1;
    // What is 5 microns in print may be a little less in a double.
    constexpr double rounding = 1 - 1e-9;
    if (millimetres >= kilometre * rounding)
        return lengthText(millimetres / kilometre) + " km";
    if (millimetres >= metre * rounding)
        return lengthText(millimetres / metre) + " m";
    if (millimetres >= leastMillimetres * rounding)
        return lengthText(millimetres) + " mm";
    return lengthText(millimetres * metre) + " \u00B5m";
}

} // namespace

ScaleBar scaleBar(double pixelSize, double mostPixels)
{
    const double most = pixelSize * mostPixels;
    const double power = std::pow(10, std::floor(std::log10(most)));
    const double length = most >= 5 * power ? 5 * power : most >= 2 * power ? 2 * power : power;
    return {length, length / pixelSize, scaleText(length)};
}

void drawScaleIndicator(const SceneView& view)
{
    const SceneOptions& options = view.options();
    const PixelRect& area = view.area();
    const float width = static_cast<float>(area.width) - 2 * UI::px(margin);
    if ((options.scaleIndicator & options.viewport).isEmpty() || width < UI::px(longest))
        return;
    const Camera& camera = view.camera();
    const ScaleBar bar =
        scaleBar(camera.pixelSize(camera.target(), {area.width, area.height}), static_cast<double>(UI::px(longest)));
    const float line = std::max(1.0F, std::round(UI::px(thickness)));
    const float left = static_cast<float>(area.x) + std::round(UI::px(margin));
    const float right = left + static_cast<float>(bar.pixels);
    const float bottom = static_cast<float>(area.y + area.height) - std::round(UI::px(margin));
    const float top = bottom - std::round(UI::px(tickHeight));
    const ImVec2 textSize = ImGui::CalcTextSize(bar.text.c_str());
    const ImVec2 textPlace(std::round((left + right - textSize.x) / 2), top - UI::px(gap) - textSize.y);

    ImDrawList& draw = *ImGui::GetBackgroundDrawList();
    const auto drawAll = [&](float offset, ImU32 color)
    {
        draw.AddRectFilled({left + offset, bottom - line + offset}, {right + offset, bottom + offset}, color);
        draw.AddRectFilled({left + offset, top + offset}, {left + line + offset, bottom + offset}, color);
        draw.AddRectFilled({right - line + offset, top + offset}, {right + offset, bottom + offset}, color);
        draw.AddText({textPlace.x + offset, textPlace.y + offset}, color, bar.text.c_str());
    };
    // A shadow keeps it readable over the objects.
    ImVec4 shadow = UI::colorVec(UI::Color::Window);
    shadow.w = 0.7F;
    drawAll(std::max(1.0F, std::round(UI::px(1))), ImGui::ColorConvertFloat4ToU32(shadow));
    drawAll(0, UI::color(UI::Color::Text));

    const Vector2f min(std::min(left, textPlace.x), textPlace.y);
    const Vector2f max(std::max(right, textPlace.x + textSize.x), bottom);
    UiTree::instance().add({.kind = UiKind::Text,
                            .window = "Scale Indicator",
                            .label = bar.text,
                            .value = {},
                            .min = min,
                            .max = max,
                            .visibleMin = min,
                            .visibleMax = max});
}

} // namespace VX
