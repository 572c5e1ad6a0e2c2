#pragma once

#include <VXViewer/UI.h>

#include <array>

namespace VX
{

/// The fonts of the interface in the current Dear ImGui context.
/// @threads the UI thread
class UiFonts
{
public:
    /// Puts the fonts into the context's atlas in place of those that are there. Where the files are missing, Dear
    /// ImGui's own font stands in, with one warning in the log.
    /// @param scale  pixels in a unit of the design
    void load(float scale);

    [[nodiscard]] ImFont* get(UI::Font font) const { return fonts_.at(static_cast<std::size_t>(font)); }

private:
    std::array<ImFont*, 3> fonts_{};
};

} // namespace VX
