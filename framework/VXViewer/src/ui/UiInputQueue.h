#pragma once

#include <VXViewer/InputEvent.h>

#include <deque>

namespace VX
{

/// Hands events on to Dear ImGui so that a drag is seen whole: where a move and the release after it fell into one
/// frame, the release waits for the next one, or the widget would not see how far the mouse went.
/// @threads the UI thread
class UiInputQueue
{
public:
    void add(const InputEvent& event);

    /// A frame has just begun, for which Dear ImGui took what it can take at once.
    void frameBegan();

    [[nodiscard]] bool isEmpty() const { return waiting_.empty(); }

private:
    [[nodiscard]] bool mustWait_(const InputEvent& event);
    void handOn_(const InputEvent& event);

    std::deque<InputEvent> waiting_;
    Vector2f position_{0, 0};
    int buttonsDown_ = 0;
    bool moved_ = false; ///< with a button down, and no frame has seen it
};

} // namespace VX
