#pragma once

#include <VXViewer/Export.h>

#include <functional>

namespace VX
{

/// Does the same as `CommandLoop::appendCommand` for a command after which nothing is to be drawn that would not be
/// drawn anyway, as one that only reads: the loop draws no frame because of it.
/// @threads any
VXVIEWER_API void appendQuietCommand(std::function<void()> command);

} // namespace VX
