#pragma once

#include <VXMesh/ThreadAnnotations.h>

namespace VX
{

class Window;

/// Reaches the loop from any thread, whether there is a window at the moment or not.
/// @threads any
class LoopWaker
{
public:
    static LoopWaker& instance();

    /// The window whose events the loop waits for; null while there is none.
    void setWindow(Window* window);

    /// Ends the loop's wait, without asking for a frame.
    void wake();

private:
    LoopWaker() = default;

    Mutex mutex_;
    Window* window_ VX_GUARDED_BY(mutex_) = nullptr;
};

} // namespace VX
