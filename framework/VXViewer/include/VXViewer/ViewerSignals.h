#pragma once

#include <boost/signals2/signal.hpp>

namespace VX
{

/// The signals of the viewer; each is emitted on the UI thread.
struct ViewerSignals
{
    /// Once, before the viewer closes: the menu, the scene and the window are still there.
    boost::signals2::signal<void()> shutdown;
};

} // namespace VX
