#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <boost/signals2/connection.hpp>
#include <imgui.h>
#include <tl/expected.hpp>

#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// The colours that a ribbon is drawn in, by the index that `ColorTheme::getRibbonColor` takes. The numbers of
/// Background, Text and Icon are fixed: others know them.
enum class RibbonColor : int
{
    Header = 0, ///< behind the tabs
    TabActive = 1,
    Background = 2,
    Border = 3,
    GroupName = 4,
    Hovered = 5,
    Pressed = 6,
    Active = 7, ///< a tool in use
    TabText = 8,
    TabTextActive = 9,
    TabUnderline = 10,
    Toolbar = 11,
    TextDisabled = 12,
    Text = 13,
    Icon = 14,
    IconActive = 15,
    Notification = 16
};

/// The colours of the program: two presets, and the user's own themes, which are JSON files in the folder `themes` of
/// the user's configuration (docs/user/themes.md). A change restyles the interface and redraws the window at once, and
/// the choice is kept in the configuration.
/// @threads the UI thread
class VXVIEWER_API ColorTheme
{
public:
    enum class Preset
    {
        Dark = 0,
        Light = 1
    };

    enum class Type
    {
        Preset = 0,
        User = 1
    };

    ColorTheme() = delete;

    /// `slot` is called after every change of the colours.
    static boost::signals2::connection onChanged(const std::function<void()>& slot);

    static void setupDefaultDark();
    static void setupDefaultLight();

    /// Takes the colours of the file NAME.json; the colours stay as they are where it cannot be used.
    /// @return `Cannot use the theme "NAME": ` and what is wrong with its file
    [[nodiscard]] static tl::expected<void, std::string> setupUserTheme(const std::string& name);

    /// Takes the theme that was chosen last; the dark preset where there was none or it cannot be used any more, which
    /// the log tells then.
    static void restore();

    /// Looks for the user's themes again.
    static void updateUserThemesList();

    /// The names of the files that `updateUserThemesList` found, without ".json", in alphabetical order.
    [[nodiscard]] static const std::vector<std::string>& foundUserThemes();

    [[nodiscard]] static Type getType();

    /// The preset in use, or the one that the user's theme is based on.
    [[nodiscard]] static Preset getPreset();

    /// Empty while a preset is in use.
    [[nodiscard]] static const std::string& getUserThemeName();

    /// "Dark" or "Light".
    [[nodiscard]] static std::string getPresetName(Preset preset);

    /// @param index  a number of `RibbonColor`; any other gives that of Text
    [[nodiscard]] static ImU32 getRibbonColor(int index);

    [[nodiscard]] static ImU32 getRibbonColor(RibbonColor color) { return getRibbonColor(static_cast<int>(color)); }

    /// The background of the scene, which goes from the one to the other.
    [[nodiscard]] static Color viewportTop();
    [[nodiscard]] static Color viewportBottom();

    [[nodiscard]] static Color selectedFaces();
};

} // namespace VX
