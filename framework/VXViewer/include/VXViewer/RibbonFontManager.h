#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/UI.h>

#include <array>
#include <filesystem>

namespace VX
{

/// Which files the fonts of the interface come from: those that the program's packages install, until others are set;
/// again those once there is no manager any more.
/// @threads the UI thread
class VXVIEWER_API RibbonFontManager
{
public:
    enum class Slot
    {
        Regular = 0,
        CJK = 1, ///< Chinese, Japanese and Korean signs for all the others
        SemiBold = 2,
        Monospace = 3,
        Free = 4 ///< used by nothing
    };

    using Paths = std::array<std::filesystem::path, 5>;

    /// Units of the design.
    static constexpr float normalSize = 13;
    static constexpr float headlineSize = 18;
    static constexpr float smallSize = 11;

    RibbonFontManager() = default;
    ~RibbonFontManager();

    RibbonFontManager(const RibbonFontManager&) = delete;
    RibbonFontManager& operator=(const RibbonFontManager&) = delete;

    /// The interface draws with these files from its next frame on. A file that is missing or is no font is stood in
    /// for by the installed one, with a warning in the log.
    void setNewFontPaths(const Paths& paths);

    [[nodiscard]] const Paths& getCurrentFontPaths() const;
};

/// Draws in another font until the end of the scope.
using RibbonFontHolder = UI::ScopedFont;

} // namespace VX
