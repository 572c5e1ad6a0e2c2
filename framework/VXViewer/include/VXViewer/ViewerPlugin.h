#pragma once

#include <VXViewer/Export.h>

namespace VX
{

class Viewer;

/// A part of the interface that lives with it.
/// @threads the UI thread
class VXVIEWER_API ViewerPlugin
{
public:
    ViewerPlugin() = default;
    virtual ~ViewerPlugin();
    ViewerPlugin(const ViewerPlugin&) = delete;
    ViewerPlugin& operator=(const ViewerPlugin&) = delete;

    /// Called once the window and the interface are there.
    virtual void init(Viewer* viewer);

    /// Called before the interface and the window go.
    virtual void shutdown();

    /// Draws this frame's windows and overlays.
    virtual void draw();
};

} // namespace VX
