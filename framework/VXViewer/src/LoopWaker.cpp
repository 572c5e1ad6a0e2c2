#include "LoopWaker.h"

#include <VXViewer/Window.h>

namespace VX
{

LoopWaker& LoopWaker::instance()
{
    static LoopWaker waker;
    return waker;
}

void LoopWaker::setWindow(Window* window)
{
    const MutexLock lock(mutex_);
    window_ = window;
}

void LoopWaker::wake()
{
    const MutexLock lock(mutex_);
    if (window_)
        window_->wake();
}

} // namespace VX
