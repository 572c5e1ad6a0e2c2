#pragma once

#include "LocaleCatalogs.h"

#include <VXViewer/RibbonFontManager.h>

#include <array>
#include <cstdint>
#include <set>
#include <string_view>

namespace VX
{

/// The fonts of the interface in the current Dear ImGui context. The signs that most texts are made of and those of the
/// language's translations are always there; others come in when a text needs them, those of Chinese, Japanese and
/// Korean from a file that is not even opened before.
/// @threads the UI thread
class UiFonts
{
public:
    /// The files that the program's packages install.
    [[nodiscard]] static const RibbonFontManager::Paths& installedPaths();

    /// Puts the fonts into the context's atlas in place of those that are there. Where a file of `paths` cannot be used
    /// the installed one is; where that is missing, Dear ImGui's own font stands in, with a warning in the log.
    /// @param scale  pixels in a unit of the design
    void load(float scale, const RibbonFontManager::Paths& paths);

    [[nodiscard]] ImFont* get(UI::Font font) const { return fonts_.at(static_cast<std::size_t>(font)); }

    /// Asks for the signs of `text` that are not loaded.
    void need(std::string_view text);

    /// True when `load` is due: signs, files or the language have changed.
    [[nodiscard]] bool isOutdated() const { return outdated_ || catalogs_ != catalogsRevision(); }

    void setOutdated() { outdated_ = true; }

private:
    [[nodiscard]] bool isLoaded_(ImWchar sign) const;
    void takeCatalogs_();

    std::array<ImFont*, 5> fonts_{};
    std::set<ImWchar> catalogSigns_; ///< of the language's translations
    std::uint64_t catalogs_ = 0;     ///< the revision that they are of
    std::set<ImWchar> extraSigns_;   ///< asked for, whether a font has them or not
    ImVector<ImWchar> ranges_;       ///< the atlas reads them until it is built
    ImVector<ImWchar> extraRanges_;
    bool outdated_ = false;
};

} // namespace VX
