#pragma once

#include <string>

namespace VX
{

class Viewer;

/// The window that waits for an answer of the user before all others, by the name that "ui.tree" gives it; empty: none.
/// @threads the UI thread
[[nodiscard]] std::string waitingWindow(const Viewer& viewer);

/// Whether the user is asked to save before the program closes.
/// @threads the UI thread
[[nodiscard]] bool isUserAskedToSave(const Viewer& viewer);

/// Whether the user is asked for a file.
/// @threads the UI thread
[[nodiscard]] bool isUserAskedForFile(const Viewer& viewer);

/// The window that asks the user for a file where it is one of the viewer's own: it shows folders of the user.
[[nodiscard]] bool isFileDialog(const std::string& window);

} // namespace VX
