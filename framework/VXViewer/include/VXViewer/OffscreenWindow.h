#pragma once

#include <VXViewer/Window.h>

#include <tl/expected.hpp>

#include <memory>

namespace VX
{

/// A window without a screen: an EGL context without a surface and a framebuffer of its own (colour with alpha, no
/// multisampling). Needs no display; input is what `inject` puts in.
/// @threads the UI thread, but for `wake` and `inject`
class VXVIEWER_API OffscreenWindow final : public Window
{
public:
    /// Creates the context and makes it current.
    /// @return the window, or "OpenGL 3.3 is not available without a display: …"
    [[nodiscard]] static tl::expected<std::unique_ptr<OffscreenWindow>, std::string> create(PixelSize size,
                                                                                            float contentScale = 1);
    ~OffscreenWindow() override;

    /// Appends `event` to the input and wakes the loop.
    /// @threads any
    void inject(InputEvent event);

    [[nodiscard]] const std::string& title() const;
    [[nodiscard]] CursorShape cursor() const;

    void makeCurrent() override;
    void swapBuffers() override;
    [[nodiscard]] unsigned defaultFramebuffer() const override;
    [[nodiscard]] PixelSize framebufferSize() const override;
    void setFramebufferSize(PixelSize size) override;
    [[nodiscard]] float contentScale() const override;
    /// Changes what `contentScale` answers; a ResizeEvent follows.
    void setContentScale(float scale);
    void setTitle(const std::string& title) override;
    [[nodiscard]] std::optional<PixelRect> placement() const override;
    void setPlacement(const PixelRect& rect) override;
    [[nodiscard]] bool isMaximized() const override;
    void maximize() override;
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

private:
    struct State;
    explicit OffscreenWindow(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace VX
