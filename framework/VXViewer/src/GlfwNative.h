#pragma once

struct GLFWwindow;

namespace VX
{

/// The number of the X11 window of `window`; 0 where it is none.
/// @threads the UI thread
[[nodiscard]] unsigned long x11WindowOf(GLFWwindow* window);

} // namespace VX
