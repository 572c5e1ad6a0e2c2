#pragma once

#include <VXViewer/InputEvent.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace VX
{

class Viewer;
class ViewerPlugin;

/// Gives the input of the window to whom it concerns, in order: the interface,
/// shortcuts, the plug-ins, the scene. A drag belongs to where it began. After a press or a
/// shortcut that may open something, what was typed next waits until the
/// interface has drawn the change, however fast the user is.
/// @threads the UI thread
class InputRouter
{
public:
    explicit InputRouter(Viewer& viewer);

    /// Takes new events behind those that still wait, and hands on what can be.
    /// @return true when anything was handed on
    bool route(std::vector<InputEvent> events);

    /// True while events wait for the interface to draw frames.
    [[nodiscard]] bool hasPending() const;

private:
    [[nodiscard]] bool mayGoOn_() const;
    void dispatch_(const InputEvent& event);

    void handle_(const MouseMoveEvent& event);
    void handle_(const MouseButtonEvent& event);
    void handle_(const ScrollEvent& event);
    void handle_(const KeyEvent& event);
    void handle_(const DropEvent& event);
    void handle_(const FocusEvent& event);

    void handle_(const CharEvent&) {}

    void handle_(const ResizeEvent&) {}

    void handle_(const EnterEvent&) {}

    [[nodiscard]] bool isOverUi_(const Vector2f& position) const;

    /// Something stands before the interface: only that is to be used.
    [[nodiscard]] bool isUiCovered_() const;

    /// The plug-in that uses `event`, the one added last asked first; null where none does.
    [[nodiscard]] std::shared_ptr<ViewerPlugin> offerToPlugins_(const InputEvent& event) const;

    /// Gives a mouse event of a drag that a plug-in took to that plug-in. @return false while there is no such drag
    bool continuePluginDrag_(const InputEvent& event);

    /// Keys wait until the interface has drawn `frames` more frames.
    void holdKeys_(std::uint64_t frames);

    Viewer& viewer_;
    std::deque<InputEvent> pending_;
    std::uint64_t heldUntilFrame_ = 0;
    bool dragInScene_ = false;

    /// The drag that a plug-in took; the plug-in may be gone before it ends.
    struct PluginDrag
    {
        std::weak_ptr<ViewerPlugin> plugin;
        int button = 0;
    };

    std::optional<PluginDrag> pluginDrag_;
};

} // namespace VX
