#include "UiState.h"

#include <VXViewer/RibbonFontManager.h>
#include <VXViewer/Viewer.h>

namespace VX
{

RibbonFontManager::~RibbonFontManager()
{
    UiState::instance().fontPaths = UiFonts::installedPaths();
}

void RibbonFontManager::setNewFontPaths(const Paths& paths)
{
    UiState& state = UiState::instance();
    if (state.fontPaths == paths)
        return;
    state.fontPaths = paths;
    if (state.fonts)
        state.fonts->setOutdated();
    getViewerInstance().incrementForceRedrawFrames(framesForAChange);
}

const RibbonFontManager::Paths& RibbonFontManager::getCurrentFontPaths() const
{
    return UiState::instance().fontPaths;
}

} // namespace VX
