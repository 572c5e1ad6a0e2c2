#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Window.h>

#include <memory>

namespace VX
{

/// The interface in a window, from its fonts to the pixels: the one owner of the Dear ImGui context. No settings file
/// is read or written.
/// @threads the UI thread, with the window's context current
class VXVIEWER_API UiSession
{
public:
    /// @param window  outlives the session
    explicit UiSession(Window& window);
    ~UiSession();

    UiSession(const UiSession&) = delete;
    UiSession& operator=(const UiSession&) = delete;

    void feed(const InputEvent& event);

    /// True where a press would reach the interface and not the scene.
    [[nodiscard]] bool isOverUi(const Vector2f& position) const;

    /// True while the keyboard types into a text field or a modal window is open.
    [[nodiscard]] bool takesKeyboard() const;

    /// True when `event` moves the focus in the interface, presses what has it, or closes the window that has it.
    [[nodiscard]] bool navigatesBy(const KeyEvent& event) const;

    /// Begins to move the focus with Tab or F6. @return true when it does
    bool beginNavigation(const KeyEvent& event);

    /// True while events that were fed wait for the next frame.
    [[nodiscard]] bool hasQueuedInput() const;

    /// Begins a frame in the window's present size and scale.
    void beginFrame();

    /// Ends it; `draw` can be called now.
    void endFrame();

    /// True when a window of the frame was not shown yet, since it had to find its size first, or a sign was missing.
    [[nodiscard]] bool wantsAnotherFrame() const;

    /// Draws the frame over what is in the window.
    void draw();

private:
    struct State;

    [[nodiscard]] float wantedScale_() const;
    void setScale_(float scale);
    void loadFonts_();

    Window& window_;
    std::unique_ptr<State> state_;
};

} // namespace VX
