#pragma once

#include <VXViewer/InputEvent.h>

#include <cstdint>
#include <deque>
#include <vector>

namespace VX
{

class Viewer;

/// Gives the input of the window to whom it concerns, in order: the interface,
/// shortcuts, the scene. A drag belongs to where it began. After a press or a
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

    /// Keys wait until the interface has drawn `frames` more frames.
    void holdKeys_(std::uint64_t frames);

    Viewer& viewer_;
    std::deque<InputEvent> pending_;
    std::uint64_t heldUntilFrame_ = 0;
    bool dragInScene_ = false;
};

} // namespace VX
