#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/InputEvent.h>

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

    /// Takes input over the scene before the camera does; the plug-in added last is asked first. One that takes the
    /// press of a button gets all mouse moves and buttons until its release, wherever the mouse goes. A plug-in is told
    /// that the window lost the keyboard, which ends such a drag.
    /// @return true when the event was used
    virtual bool handleSceneInput(const InputEvent& event);
};

} // namespace VX
