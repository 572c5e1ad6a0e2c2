#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/UI.h>

#include <array>
#include <optional>
#include <string_view>

namespace VX
{

/// All the parts that a theme gives a colour to: those of `UI::Color`, with the same numbers, and more.
enum class ThemeRole
{
    Window = static_cast<int>(UI::Color::Window),
    Panel,
    Raised,
    RaisedHovered,
    RaisedPressed,
    Border,
    Text,
    SecondaryText,
    Accent,
    AccentHovered,
    AccentText,
    Selection,
    Warning,
    Error,
    Success,
    DisabledText,
    Icon,
    ViewportTop,
    ViewportBottom,
    SelectedFaces,
    Count
};

static_assert(static_cast<int>(ThemeRole::Success) == static_cast<int>(UI::Color::Success));

/// The colours of a theme.
class Palette
{
public:
    using Colors = std::array<unsigned, static_cast<std::size_t>(ThemeRole::Count)>;

    /// @param colors  0xRRGGBB by role
    constexpr explicit Palette(const Colors& colors)
        : colors_(colors)
    {
    }

    [[nodiscard]] Color get(ThemeRole role) const;

    void set(ThemeRole role, unsigned rgb) { colors_.at(static_cast<std::size_t>(role)) = rgb; }

    friend bool operator==(const Palette&, const Palette&) = default;

    /// The role that theme files call `name`.
    [[nodiscard]] static std::optional<ThemeRole> roleOf(std::string_view name);

    [[nodiscard]] static const Palette& dark();
    [[nodiscard]] static const Palette& light();

    /// The one that the program shows now.
    [[nodiscard]] static Palette& current();

private:
    Colors colors_;
};

} // namespace VX
