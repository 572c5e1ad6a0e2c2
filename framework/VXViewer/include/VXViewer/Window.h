#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/InputEvent.h>

#include <optional>
#include <string>
#include <vector>

struct GLFWwindow;

namespace VX
{

/// A width and a height in pixels.
struct PixelSize
{
    int width = 0;
    int height = 0;

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A rectangle on the screen in pixels.
struct PixelRect
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

enum class CursorShape
{
    Arrow,
    TextInput,
    Hand,
    ResizeHorizontal,
    ResizeVertical,
    Crosshair
};

/// What is known of the screens of a window's system.
struct MonitorFacts
{
    int count = 0;
    PixelSize biggest;        ///< of the one with the most pixels
    int scalingPercent = 100; ///< of that one
};

/// A drawing area with an OpenGL 3.3 core context, and the input that arrives at it.
/// @threads the UI thread, but for `wake`
class VXVIEWER_API Window
{
public:
    Window() = default;
    virtual ~Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Makes the OpenGL context current on this thread.
    virtual void makeCurrent() = 0;

    /// Shows what was drawn into `defaultFramebuffer`.
    virtual void swapBuffers() = 0;

    /// The OpenGL name of the framebuffer that the window shows; an off-screen window has one of its own.
    [[nodiscard]] virtual unsigned defaultFramebuffer() const = 0;

    /// The drawing area in pixels; empty while the window is minimised.
    [[nodiscard]] virtual PixelSize framebufferSize() const = 0;

    /// Asks for a drawing area of `size` pixels; a ResizeEvent follows.
    virtual void setFramebufferSize(PixelSize size) = 0;

    /// How many pixels one unit of the design takes: 1 on a usual screen, 2 on a dense one.
    [[nodiscard]] virtual float contentScale() const = 0;

    virtual void setTitle(const std::string& title) = 0;

    /// The window's place on the screen in the system's coordinates, and while it fills the screen the place to which
    /// it goes back; nothing where there is none.
    [[nodiscard]] virtual std::optional<PixelRect> placement() const = 0;

    virtual void setPlacement(const PixelRect& rect) = 0;

    [[nodiscard]] virtual bool isMaximized() const = 0;

    virtual void maximize() = 0;

    /// True where the window is on a screen, all of which it could take up.
    [[nodiscard]] virtual bool canFillScreen() const { return false; }

    [[nodiscard]] virtual bool isFullScreen() const { return false; }

    /// Takes up all of the screen that it is on, or goes back to where it was.
    virtual void setFullScreen(bool) {}

    virtual void show() = 0;

    /// Brings the window to the front and asks for the keyboard.
    virtual void focus() = 0;

    /// True once the user (or `requestClose`) asked for the end.
    [[nodiscard]] virtual bool isCloseRequested() const = 0;

    virtual void requestClose(bool requested = true) = 0;

    /// Sleeps until input, a `wake` or the end of `timeoutSeconds` (nothing: no end); a wake-up that came since the
    /// last wait counts. Zero only collects what is there.
    virtual void waitEvents(std::optional<double> timeoutSeconds) = 0;

    /// Ends the current or the next `waitEvents`.
    /// @threads any
    virtual void wake() = 0;

    /// The input since the last call, in order.
    [[nodiscard]] virtual std::vector<InputEvent> takeEvents() = 0;

    /// True while input waits for `takeEvents`, without asking the system for more.
    [[nodiscard]] virtual bool hasEvents() const = 0;

    virtual void setCursor(CursorShape shape) = 0;

    /// Text in UTF-8; empty where the clipboard holds none.
    [[nodiscard]] virtual std::string clipboard() = 0;

    virtual void setClipboard(const std::string& text) = 0;

    [[nodiscard]] virtual MonitorFacts monitors() const = 0;

    /// The number that other programs know the window by (X11), or 0.
    [[nodiscard]] virtual unsigned long systemId() const { return 0; }

    /// GLFW's window, or null where this is none.
    [[nodiscard]] virtual GLFWwindow* glfwWindow() const { return nullptr; }
};

} // namespace VX
