#include "EglContext.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/OffscreenWindow.h>

#include <epoxy/gl.h>

#include <chrono>
#include <condition_variable>
#include <utility>

namespace VX
{

namespace
{

/// A framebuffer object with colour, depth and stencil.
class ColorTarget
{
public:
    ColorTarget()
    {
        glGenFramebuffers(1, &framebuffer_);
        glGenRenderbuffers(1, &color_);
        glGenRenderbuffers(1, &depth_);
    }

    ~ColorTarget()
    {
        glDeleteFramebuffers(1, &framebuffer_);
        glDeleteRenderbuffers(1, &color_);
        glDeleteRenderbuffers(1, &depth_);
    }

    ColorTarget(const ColorTarget&) = delete;
    ColorTarget& operator=(const ColorTarget&) = delete;

    void resize(PixelSize size)
    {
        glBindRenderbuffer(GL_RENDERBUFFER, color_);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, size.width, size.height);
        glBindRenderbuffer(GL_RENDERBUFFER, depth_);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, size.width, size.height);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color_);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, depth_);
        glViewport(0, 0, size.width, size.height);
    }

    [[nodiscard]] unsigned name() const { return framebuffer_; }

private:
    unsigned framebuffer_ = 0;
    unsigned color_ = 0;
    unsigned depth_ = 0;
};

/// The input, and what wakes the loop.
class InputQueue
{
public:
    void push(InputEvent event)
    {
        {
            const MutexLock lock(mutex_);
            events_.push_back(std::move(event));
        }
        changed_.notify_all();
    }

    void wake()
    {
        {
            const MutexLock lock(mutex_);
            woken_ = true;
        }
        changed_.notify_all();
    }

    void wait(std::optional<double> timeoutSeconds)
    {
        MutexLock lock(mutex_);
        if (timeoutSeconds)
        {
            const auto end =
                std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                                       std::chrono::duration<double>(*timeoutSeconds));
            while (!woken_ && events_.empty() && changed_.wait_until(lock, end) == std::cv_status::no_timeout)
            {
            }
        }
        else
        {
            while (!woken_ && events_.empty())
                changed_.wait(lock);
        }
        woken_ = false;
    }

    [[nodiscard]] std::vector<InputEvent> take()
    {
        const MutexLock lock(mutex_);
        return std::exchange(events_, {});
    }

    [[nodiscard]] bool isEmpty() const
    {
        const MutexLock lock(mutex_);
        return events_.empty();
    }

private:
    mutable Mutex mutex_;
    std::condition_variable_any changed_;
    std::vector<InputEvent> events_ VX_GUARDED_BY(mutex_);
    bool woken_ VX_GUARDED_BY(mutex_) = false;
};

} // namespace

struct OffscreenWindow::State
{
    State(std::unique_ptr<EglContext> eglContext, PixelSize framebufferSize, float contentScale)
        : context(std::move(eglContext))
        , size(framebufferSize)
        , scale(contentScale)
    {
        target.resize(size);
    }

    std::unique_ptr<EglContext> context;
    ColorTarget target;
    InputQueue input;
    PixelSize size;
    float scale;
    std::string title;
    std::string clipboard;
    CursorShape cursor = CursorShape::Arrow;
    bool closeRequested = false;
};

tl::expected<std::unique_ptr<OffscreenWindow>, std::string> OffscreenWindow::create(PixelSize size, float contentScale)
{
    auto context = EglContext::create();
    if (!context)
        return tl::make_unexpected("OpenGL 3.3 is not available without a display: " + context.error());
    auto state = std::make_unique<State>(std::move(*context), size, contentScale);
    return std::unique_ptr<OffscreenWindow>(new OffscreenWindow(std::move(state)));
}

OffscreenWindow::OffscreenWindow(std::unique_ptr<State> state)
    : state_(std::move(state))
{
}

OffscreenWindow::~OffscreenWindow()
{
    state_->context->makeCurrent();
}

void OffscreenWindow::inject(InputEvent event)
{
    state_->input.push(std::move(event));
}

const std::string& OffscreenWindow::title() const
{
    return state_->title;
}

CursorShape OffscreenWindow::cursor() const
{
    return state_->cursor;
}

void OffscreenWindow::makeCurrent()
{
    state_->context->makeCurrent();
}

void OffscreenWindow::swapBuffers()
{
    glFlush();
}

unsigned OffscreenWindow::defaultFramebuffer() const
{
    return state_->target.name();
}

PixelSize OffscreenWindow::framebufferSize() const
{
    return state_->size;
}

void OffscreenWindow::setFramebufferSize(PixelSize size)
{
    state_->size = size;
    state_->target.resize(size);
    state_->input.push(ResizeEvent{});
}

float OffscreenWindow::contentScale() const
{
    return state_->scale;
}

void OffscreenWindow::setContentScale(float scale)
{
    state_->scale = scale;
    state_->input.push(ResizeEvent{});
}

void OffscreenWindow::setTitle(const std::string& title)
{
    state_->title = title;
}

std::optional<PixelRect> OffscreenWindow::placement() const
{
    return {};
}

void OffscreenWindow::setPlacement(const PixelRect& rect)
{
    setFramebufferSize({rect.width, rect.height});
}

bool OffscreenWindow::isMaximized() const
{
    return false;
}

void OffscreenWindow::maximize() {}

void OffscreenWindow::show() {}

void OffscreenWindow::focus()
{
    state_->input.push(FocusEvent{true});
}

bool OffscreenWindow::isCloseRequested() const
{
    return state_->closeRequested;
}

void OffscreenWindow::requestClose(bool requested)
{
    state_->closeRequested = requested;
    state_->input.wake();
}

void OffscreenWindow::waitEvents(std::optional<double> timeoutSeconds)
{
    state_->input.wait(timeoutSeconds);
}

void OffscreenWindow::wake()
{
    state_->input.wake();
}

std::vector<InputEvent> OffscreenWindow::takeEvents()
{
    return state_->input.take();
}

bool OffscreenWindow::hasEvents() const
{
    return !state_->input.isEmpty();
}

void OffscreenWindow::setCursor(CursorShape shape)
{
    state_->cursor = shape;
}

std::string OffscreenWindow::clipboard()
{
    return state_->clipboard;
}

void OffscreenWindow::setClipboard(const std::string& text)
{
    state_->clipboard = text;
}

MonitorFacts OffscreenWindow::monitors() const
{
    return {};
}

} // namespace VX
