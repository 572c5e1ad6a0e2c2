#pragma once

#include <VXViewer/Window.h>

struct GLFWmonitor;
struct GLFWwindow;

namespace VX
{

/// Whether the upper edge of `rect`, in screen coordinates, can be reached on a monitor.
/// @threads the UI thread
[[nodiscard]] bool overlapsAMonitor(const PixelRect& rect);

/// The monitor with the largest part of `rect` on it; null where there is none.
/// @threads the UI thread
[[nodiscard]] GLFWmonitor* monitorUnder(const PixelRect& rect);

/// Makes a window no larger than its monitor: one of a size in units of the design can be, where contents are large.
/// @threads the UI thread
void shrinkToMonitor(GLFWwindow* window);

} // namespace VX
