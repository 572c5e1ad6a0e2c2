#pragma once

#include <VXViewer/InputEvent.h>

namespace VX
{

/// Using the interface with the keyboard: Tab begins in the window that was used last and goes on to the next widget,
/// F6 goes to the next window, arrows move in their direction, Space and Enter press, Escape ends it. While the focus
/// ring is not to be seen, all keys but the first two belong to others.
/// @threads the UI thread
class UiNavigation
{
public:
    /// True while the focus ring is to be seen.
    [[nodiscard]] static bool isActive();

    /// True when the interface is moved in by `event`, which nobody else should take then.
    [[nodiscard]] static bool takes(const KeyEvent& event);

    /// True when `event` would move in the interface though the ring is not to be seen: Dear ImGui should not know it.
    [[nodiscard]] static bool isStray(const KeyEvent& event);

    /// Begins with Tab or F6. @return true when `event` was one of them, with a window to go to
    bool begin(const KeyEvent& event);

    /// Call it once the next frame has begun.
    void applyRequest();

private:
    bool requested_ = false;
    bool next_ = false; ///< the window after the one with the focus
};

} // namespace VX
