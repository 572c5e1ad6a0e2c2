#include "ColorField.h"

#include <VXViewer/UI.h>

#include <fmt/format.h>
#include <imgui.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace VX
{

namespace
{

std::uint8_t toByte(float value)
{
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255));
}

} // namespace

bool colorField(const std::string& label, Color& color)
{
    std::array<float, 3> values{static_cast<float>(color.r) / 255, static_cast<float>(color.g) / 255,
                                static_cast<float>(color.b) / 255};
    const bool changed =
        ImGui::ColorEdit3(label.c_str(), values.data(), ImGuiColorEditFlags_DisplayHex | ImGuiColorEditFlags_NoOptions);
    if (changed)
        color = {toByte(values[0]), toByte(values[1]), toByte(values[2]), color.a};
    UI::record(UiKind::TextInput, label, fmt::format("#{:02X}{:02X}{:02X}", color.r, color.g, color.b));
    return changed;
}

} // namespace VX
