#pragma once

#include <VXViewer/Window.h>

namespace VX
{

/// Hands the window's input to the current Dear ImGui context, and the cursor and the clipboard back.
/// @threads the UI thread
class ImGuiInput
{
public:
    /// Connects the clipboard of `window`, which outlives the context.
    static void connect(Window& window);

    /// Overwrites what was taken from the clipboard last.
    static void wipePasted();

    static void feed(const InputEvent& event);

    /// True while Dear ImGui has events that wait for one of its next frames.
    [[nodiscard]] static bool hasQueuedEvents();

    /// True where a press would reach a window of the interface and not the scene.
    [[nodiscard]] static bool isOverUi(const Vector2f& position);

    /// Gives `window` the cursor that the widget under the mouse wants.
    static void updateCursor(Window& window);
};

} // namespace VX
