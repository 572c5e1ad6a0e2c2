#include "InputRouter.h"

#include <VXViewer/Clock.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/Viewer.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

/// The interface needs these frames after an event until sizes and what is
/// under the mouse have settled.
constexpr int framesToSettle = 3;

} // namespace

struct MainLoop::Timer
{
    double interval; ///< seconds
    double due;      ///< the time of the next call
    std::function<void()> callback;
};

MainLoop::MainLoop(Viewer& viewer)
    : viewer_(viewer)
    , router_(std::make_unique<InputRouter>(viewer))
{
}

MainLoop::~MainLoop() = default;

void MainLoop::run()
{
    while (viewer_.window() && !viewer_.window()->isCloseRequested())
        turn(true);
}

bool MainLoop::turn(bool mayWait)
{
    Window& window = *viewer_.window();
    window.waitEvents(mayWait ? waitTime_() : std::optional(0.0));

    answerCloseRequest_();
    const bool woken = viewer_.takeWakeUp();
    const bool commanded = CommandLoop::processCommands(started_ ? StartPosition::SetupDone : StartPosition::MenuReady);
    const bool hadInput = router_->route(window.takeEvents());
    if (woken || commanded || hadInput)
        requestFrames(viewer_.ui() ? framesToSettle : 1);
    const bool timed = runTimers_();

    const bool due = isFrameDue_();
    if (due)
    {
        const bool show = !showLastOnly_ || framesToDraw_ <= 1;
        drawFrame_(show);
        framesToDraw_ = std::max(0, framesToDraw_ - 1);
        showLastOnly_ = showLastOnly_ && framesToDraw_ > 0;
        if (show)
            start_();
    }
    if (!due || framesToDraw_ == 0)
        runLoadedCallback_();
    return woken || commanded || hadInput || timed || due;
}

void MainLoop::answerCloseRequest_()
{
    Window& window = *viewer_.window();
    if (!window.isCloseRequested() || viewer_.isClosing() || !viewer_.ui() || !viewer_.getMenuPlugin())
        return;
    if (!viewer_.getMenuPlugin()->mayClose())
        window.requestClose(false);
}

bool MainLoop::runUntilIdle(int maxTurns)
{
    for (int i = 0; i < maxTurns; ++i)
    {
        if (!turn(false))
            return true;
    }
    return false;
}

void MainLoop::requestFrames(int count, bool showLastOnly)
{
    showLastOnly_ = framesToDraw_ == 0 ? showLastOnly : showLastOnly_ && showLastOnly;
    framesToDraw_ = std::max(framesToDraw_, count);
}

void MainLoop::requestFrameAfter(double seconds)
{
    const double time = monotonicSeconds() + seconds;
    nextFrameTime_ = nextFrameTime_ ? std::min(*nextFrameTime_, time) : time;
}

std::shared_ptr<void> MainLoop::callEvery(double seconds, std::function<void()> callback)
{
    auto timer = std::make_shared<Timer>(Timer{seconds, monotonicSeconds() + seconds, std::move(callback)});
    timers_.push_back(timer);
    return timer;
}

bool MainLoop::runTimers_()
{
    std::erase_if(timers_, [](const std::weak_ptr<Timer>& timer) { return timer.expired(); });
    const double now = monotonicSeconds();
    bool called = false;
    // A copy: a callback may add timers.
    for (const std::weak_ptr<Timer>& entry : std::vector(timers_))
    {
        const std::shared_ptr<Timer> timer = entry.lock();
        if (!timer || timer->due > now)
            continue;
        timer->due = now + timer->interval;
        timer->callback();
        called = true;
    }
    return called;
}

void MainLoop::whenLoaded(std::function<void()> callback)
{
    loadedCallback_ = std::move(callback);
}

std::optional<double> MainLoop::waitTime_() const
{
    if (framesToDraw_ > 0 || router_->hasPending() || viewer_.view().controller().isAnimating())
        return 0;
    std::optional<double> time = viewer_.view().secondsToChange();
    const auto wakeAt = [&time](double due)
    {
        const double left = due - monotonicSeconds();
        time = time ? std::min(*time, left) : left;
    };
    if (nextFrameTime_)
        wakeAt(*nextFrameTime_);
    for (const std::weak_ptr<Timer>& entry : timers_)
    {
        if (const std::shared_ptr<Timer> timer = entry.lock())
            wakeAt(timer->due);
    }
    return time ? std::optional(std::max(0.0, *time)) : std::nullopt;
}

bool MainLoop::isFrameDue_() const
{
    const SceneView& view = viewer_.view();
    return framesToDraw_ > 0 || (nextFrameTime_ && *nextFrameTime_ <= monotonicSeconds()) || router_->hasPending() ||
           view.isOutdated();
}

void MainLoop::drawFrame_(bool show)
{
    Window& window = *viewer_.window();
    const PixelSize size = window.framebufferSize();
    // In a minimised window too: what asked for a frame would keep the loop awake.
    nextFrameTime_.reset();
    if (size.isEmpty())
        return;
    const double start = monotonicSeconds();
    SceneView& view = viewer_.view();
    UiSession* ui = viewer_.ui();
    PixelRect sceneArea{0, 0, size.width, size.height};
    int coveredTop = 0;
    if (ui)
    {
        ui->beginFrame();
        if (ImGuiMenu* menu = viewer_.getMenuPlugin().get())
        {
            sceneArea = menu->drawFrame();
            coveredTop = menu->coveredTop();
        }
        ui->endFrame();
        // This frame counts as one of them.
        if (ui->wantsAnotherFrame())
            requestFrames(2, showLastOnly_);
    }
    view.setArea(sceneArea, ui ? UI::scale() : window.contentScale(), coveredTop);
    view.animate();
    view.draw(window);
    if (ui)
        ui->draw();
    if (show)
        window.swapBuffers();
    ++framesDrawn_;
    lastFrameSeconds_ = monotonicSeconds() - start;
}

void MainLoop::start_()
{
    if (started_)
        return;
    started_ = true;
    viewer_.window()->show();
    // Commands that waited for the first frame are due.
    framesToDraw_ = std::max(framesToDraw_, 1);
}

void MainLoop::runLoadedCallback_()
{
    if (!loadedCallback_ || !started_ || !CommandLoop::isEmpty() || !viewer_.fileOpening().isIdle())
        return;
    if (viewer_.getMenuPlugin() && viewer_.getMenuPlugin()->isStartingUp())
        return;
    std::exchange(loadedCallback_, {})();
}

void MainLoop::layOut()
{
    if (viewer_.ui())
    {
        drawFrame_(false);
        return;
    }
    const PixelSize size = viewer_.framebufferSize();
    viewer_.view().setArea({0, 0, size.width, size.height}, viewer_.window()->contentScale());
}

Image MainLoop::captureWindow()
{
    drawFrame_(false);
    const PixelSize size = viewer_.framebufferSize();
    Image image{size, std::vector<Color>(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height))};
    glBindFramebuffer(GL_READ_FRAMEBUFFER, viewer_.window()->defaultFramebuffer());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
    std::for_each(image.pixels.begin(), image.pixels.end(), [](Color& pixel) { pixel.a = 255; });
    for (int top = 0, bottom = size.height - 1; top < bottom; ++top, --bottom)
    {
        const auto row = [&](int y) { return image.pixels.begin() + std::ptrdiff_t{y} * size.width; };
        std::swap_ranges(row(top), row(top) + size.width, row(bottom));
    }
    return image;
}

} // namespace VX
