#pragma once

#include <VXViewer/Export.h>

#include <imgui.h>

#include <string_view>

namespace VX
{

/// The icons of the program, drawn as textures of the sizes in which they are needed. `resources/icons` has their
/// sources and says how one is added.
/// @threads the UI thread, with the interface started
class VXVIEWER_API RibbonIcons
{
public:
    enum class ColorType
    {
        Colored = 0, ///< in the colours of its source; icons without colours are white
        White = 1    ///< to be tinted when it is drawn
    };

    /// What the icon stands for. Logos have names of their own; the others share theirs.
    enum class IconType
    {
        RibbonItem = 0,
        Object = 1,
        Notification = 2,
        Logo = 3
    };

    struct Icon
    {
        ImTextureID texture;
        float size; ///< its side in pixels; the texture may be drawn smaller
    };

    RibbonIcons() = delete;

    /// The icon in the smallest of its sizes that is not below `pixels`, else in its largest.
    /// @return null where there is no icon of this name; else valid until the interface is shut down
    [[nodiscard]] static const Icon* find(std::string_view name, float pixels, ColorType colors = ColorType::White,
                                          IconType type = IconType::RibbonItem);
};

} // namespace VX
