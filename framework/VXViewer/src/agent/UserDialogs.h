#pragma once

#include <string>

namespace VX
{

class Viewer;

/// The window that waits for an answer of the user before all others, by the name that "ui.tree" gives it; empty: none.
/// @threads the UI thread
[[nodiscard]] std::string waitingWindow(const Viewer& viewer);

/// Whether that window asks what to do with the scene, so that nothing should change it meanwhile.
/// @threads the UI thread
[[nodiscard]] bool isUserAsked(const Viewer& viewer);

/// The window that asks the user for a file where it is one of the viewer's own: it shows folders of the user.
[[nodiscard]] bool isFileDialog(const std::string& window);

} // namespace VX
