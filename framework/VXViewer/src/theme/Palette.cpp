#include "Palette.h"

#include <algorithm>

namespace VX
{

namespace
{

/// In the order of `ThemeRole`, as are the colours below.
constexpr std::array<std::string_view, static_cast<std::size_t>(ThemeRole::Count)> names{
    "window",        "panel",        "raised",        "raisedHovered", "raisedPressed",  "border",       "text",
    "secondaryText", "accent",       "accentHovered", "accentText",    "selection",      "warning",      "error",
    "success",       "disabledText", "icon",          "viewportTop",   "viewportBottom", "selectedFaces"};

constexpr Palette darkPalette(Palette::Colors{0x1E2126, 0x262A30, 0x2F343B, 0x394049, 0x444C56, 0x3A4048, 0xE6E8EB,
                                              0xA7AEB8, 0x4C8DFF, 0x6AA1FF, 0x0E1726, 0x253F6A, 0xE5A23B, 0xFF7A72,
                                              0x3FB27F, 0x6E7681, 0xC9CED6, 0x3A3F47, 0x23262B, 0xE84FC4});

constexpr Palette lightPalette(Palette::Colors{0xF5F6F8, 0xFFFFFF, 0xEDEFF2, 0xE3E6EB, 0xD5D9DE, 0xD5D9DE, 0x1C1F23,
                                               0x5A626C, 0x2563EB, 0x1D4FD7, 0xFFFFFF, 0xD3E2FD, 0x8F5B00, 0xC4322A,
                                               0x1F7A4D, 0x9AA1AB, 0x3D444D, 0xF2F4F7, 0xD9DEE5, 0xC4259C});

} // namespace

Color Palette::get(ThemeRole role) const
{
    const unsigned rgb = colors_.at(static_cast<std::size_t>(role));
    return {static_cast<std::uint8_t>(rgb >> 16U & 0xFFU), static_cast<std::uint8_t>(rgb >> 8U & 0xFFU),
            static_cast<std::uint8_t>(rgb & 0xFFU), 255};
}

std::optional<ThemeRole> Palette::roleOf(std::string_view name)
{
    const auto* const found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return static_cast<ThemeRole>(found - names.begin());
}

const Palette& Palette::dark()
{
    return darkPalette;
}

const Palette& Palette::light()
{
    return lightPalette;
}

Palette& Palette::current()
{
    static Palette palette = darkPalette;
    return palette;
}

} // namespace VX
