#pragma once

#include <VXViewer/Window.h>

#include <tl/expected.hpp>

#include <array>
#include <memory>

struct GLFWcursor;

namespace VX
{

/// Counts clicks of one button that follow one another quickly at one place.
class VXVIEWER_API ClickCounter
{
public:
    /// @param now       seconds of a clock that only moves forward
    /// @param tolerance pixels that the mouse may move between two clicks
    /// @return which click of a series this is, from 1 up
    int press(int button, const Vector2f& position, double now, float tolerance);

    /// The number of the click that is going on.
    [[nodiscard]] int current() const { return clicks_; }

private:
    int button_ = -1;
    int clicks_ = 1;
    double time_ = 0;
    Vector2f position_{0, 0};
};

/// A window on the screen. One at a time.
/// @threads the UI thread, but for `wake`
class VXVIEWER_API GlfwWindow final : public Window
{
public:
    /// Creates the window, not shown yet, and makes its context current.
    /// @param size  of the drawing area in units of the design, which the screen's scale makes larger
    /// @return the window; or why there is none: "There is no display: REASON", "A window with OpenGL 3.3 …: REASON"
    [[nodiscard]] static tl::expected<std::unique_ptr<GlfwWindow>, std::string> create(PixelSize size,
                                                                                       const std::string& title);
    ~GlfwWindow() override;

    void makeCurrent() override;
    void swapBuffers() override;

    [[nodiscard]] unsigned defaultFramebuffer() const override { return 0; }

    [[nodiscard]] PixelSize framebufferSize() const override;
    void setFramebufferSize(PixelSize size) override;
    [[nodiscard]] float contentScale() const override;
    void setTitle(const std::string& title) override;
    [[nodiscard]] std::optional<PixelRect> placement() const override;
    void setPlacement(const PixelRect& rect) override;
    [[nodiscard]] bool isMaximized() const override;
    void maximize() override;

    [[nodiscard]] bool canFillScreen() const override { return true; }

    [[nodiscard]] bool isFullScreen() const override;
    void setFullScreen(bool full) override;
    void show() override;
    void focus() override;
    [[nodiscard]] bool isCloseRequested() const override;
    void requestClose(bool requested) override;
    void waitEvents(std::optional<double> timeoutSeconds) override;
    void wake() override;
    [[nodiscard]] std::vector<InputEvent> takeEvents() override;
    [[nodiscard]] bool hasEvents() const override;
    void setCursor(CursorShape shape) override;
    [[nodiscard]] std::string clipboard() override;
    void setClipboard(const std::string& text) override;
    [[nodiscard]] MonitorFacts monitors() const override;

    [[nodiscard]] unsigned long systemId() const override;

    [[nodiscard]] GLFWwindow* glfwWindow() const override { return window_; }

private:
    explicit GlfwWindow(GLFWwindow* window);
    void connectCallbacks_();
    void updateMods_(int key, int action, int mods);
    /// Framebuffer pixels in a unit of the system's window coordinates.
    [[nodiscard]] float pixelRatio_() const;

    GLFWwindow* window_;
    std::vector<InputEvent> events_;
    ClickCounter clicks_;
    Vector2f mouse_{0, 0};
    int mods_ = 0;
    PixelRect windowed_; ///< where it was before it filled the screen
    CursorShape cursor_ = CursorShape::Arrow;
    std::array<GLFWcursor*, 6> cursors_{};
};

} // namespace VX
