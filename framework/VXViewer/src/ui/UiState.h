#pragma once

#include "UiFonts.h"

#include <VXViewer/RibbonFontManager.h>

#include <vector>

namespace VX
{

/// A change of the look in the midst of a frame is seen in the next one, and sizes settle in the one after it.
inline constexpr int framesForAChange = 3;

/// What the widgets draw with, set by the session of the interface.
struct UiState
{
    static UiState& instance();

    float scale = 1;
    float userScale = 1;
    bool escapeTaken = false; ///< by the window that had the keyboard in the last frame
    UiFonts* fonts = nullptr;
    /// The theme has changed: the next frame begins with the new style. In a frame, colours are pushed over the old.
    bool styleOutdated = false;
    RibbonFontManager::Paths fontPaths = UiFonts::installedPaths();
    /// Of the tab bars that are begun: whether a tab is open in it.
    std::vector<bool> openTabs;
};

} // namespace VX
