#include "ItemsFixture.h"

#include <VXViewer/OffscreenWindow.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace VX
{

namespace
{

/// An off-screen window that says it is on a screen, and remembers whether it fills it.
class WindowOnScreen : public Window
{
public:
    explicit WindowOnScreen(std::unique_ptr<OffscreenWindow> window)
        : window_(std::move(window))
    {
    }

    [[nodiscard]] bool canFillScreen() const override { return true; }

    [[nodiscard]] bool isFullScreen() const override { return full_; }

    void setFullScreen(bool full) override { full_ = full; }

    void makeCurrent() override { window_->makeCurrent(); }

    void swapBuffers() override { window_->swapBuffers(); }

    [[nodiscard]] unsigned defaultFramebuffer() const override { return window_->defaultFramebuffer(); }

    [[nodiscard]] PixelSize framebufferSize() const override { return window_->framebufferSize(); }

    void setFramebufferSize(PixelSize size) override { window_->setFramebufferSize(size); }

    [[nodiscard]] float contentScale() const override { return window_->contentScale(); }

    void setTitle(const std::string& title) override { window_->setTitle(title); }

    [[nodiscard]] std::optional<PixelRect> placement() const override { return window_->placement(); }

    void setPlacement(const PixelRect& rect) override { window_->setPlacement(rect); }

    [[nodiscard]] bool isMaximized() const override { return window_->isMaximized(); }

    void maximize() override { window_->maximize(); }

    void show() override { window_->show(); }

    void focus() override { window_->focus(); }

    [[nodiscard]] bool isCloseRequested() const override { return window_->isCloseRequested(); }

    void requestClose(bool requested) override { window_->requestClose(requested); }

    void waitEvents(std::optional<double> timeoutSeconds) override { window_->waitEvents(timeoutSeconds); }

    void wake() override { window_->wake(); }

    [[nodiscard]] std::vector<InputEvent> takeEvents() override { return window_->takeEvents(); }

    [[nodiscard]] bool hasEvents() const override { return window_->hasEvents(); }

    void setCursor(CursorShape shape) override { window_->setCursor(shape); }

    [[nodiscard]] std::string clipboard() override { return window_->clipboard(); }

    void setClipboard(const std::string& text) override { window_->setClipboard(text); }

    [[nodiscard]] MonitorFacts monitors() const override { return window_->monitors(); }

private:
    std::unique_ptr<OffscreenWindow> window_;
    bool full_ = false;
};

} // namespace

class FullScreenItemTests : public VX::Test::ItemsFixture
{
protected:
    FullScreenItemTests()
    {
        // The end of a window takes the current graphics context away.
        viewer_.setWindow(nullptr);
        auto window = OffscreenWindow::create({1200, 800});
        if (!window)
            throw std::runtime_error(window.error());
        viewer_.setWindow(std::make_unique<WindowOnScreen>(std::move(*window)));
        viewer_.startUi();
    }
};

TEST_F(FullScreenItemTests, FillsTheScreenAndGoesBack)
{
    EXPECT_TRUE(menu_->pressItem("Full Screen"));
    EXPECT_TRUE(viewer_.window()->isFullScreen());
    EXPECT_TRUE(item_("Full Screen").isActive());
    EXPECT_TRUE(menu_->pressItem("Full Screen"));
    EXPECT_FALSE(viewer_.window()->isFullScreen());
    EXPECT_FALSE(item_("Full Screen").isActive());
}

} // namespace VX
