#include "ViewerSession.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/Viewer.h>

#include <stdexcept>
#include <utility>

namespace VX::Test
{

ViewerSession::ViewerSession(std::shared_ptr<ImGuiMenu> menu, PixelSize size, float scale)
    : viewer_(getViewerInstance())
{
    viewer_.reset();
    auto window = OffscreenWindow::create(size, scale);
    if (!window)
        throw std::runtime_error(window.error());
    const bool hasMenu = menu != nullptr;
    viewer_.setMenuPlugin(std::move(menu));
    viewer_.setWindow(std::move(*window));
    if (hasMenu)
        viewer_.startUi();
    viewer_.loop().runUntilIdle();
}

ViewerSession::~ViewerSession()
{
    viewer_.reset();
}

OffscreenWindow& ViewerSession::window() const
{
    return dynamic_cast<OffscreenWindow&>(*viewer_.window());
}

} // namespace VX::Test
