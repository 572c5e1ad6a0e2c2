#include "GlfwWindow.h"

#include "GlfwMonitors.h"
#include "GlfwNative.h"

#include <VXMesh/StringConvert.h>

#include <epoxy/gl.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr double clickInterval = 0.4;
constexpr float clickDistance = 5;

std::string lastError()
{
    const char* text = nullptr;
    glfwGetError(&text);
    return text ? text : "unknown reason";
}

GlfwWindow& self(GLFWwindow* window)
{
    return *static_cast<GlfwWindow*>(glfwGetWindowUserPointer(window));
}

int modOfKey(int key)
{
    switch (key)
    {
    case GLFW_KEY_LEFT_SHIFT:
    case GLFW_KEY_RIGHT_SHIFT:
        return GLFW_MOD_SHIFT;
    case GLFW_KEY_LEFT_CONTROL:
    case GLFW_KEY_RIGHT_CONTROL:
        return GLFW_MOD_CONTROL;
    case GLFW_KEY_LEFT_ALT:
    case GLFW_KEY_RIGHT_ALT:
        return GLFW_MOD_ALT;
    case GLFW_KEY_LEFT_SUPER:
    case GLFW_KEY_RIGHT_SUPER:
        return GLFW_MOD_SUPER;
    default:
        return 0;
    }
}

int systemCursor(CursorShape shape)
{
    switch (shape)
    {
    case CursorShape::TextInput:
        return GLFW_IBEAM_CURSOR;
    case CursorShape::Hand:
        return GLFW_HAND_CURSOR;
    case CursorShape::ResizeHorizontal:
        return GLFW_HRESIZE_CURSOR;
    case CursorShape::ResizeVertical:
        return GLFW_VRESIZE_CURSOR;
    case CursorShape::Crosshair:
        return GLFW_CROSSHAIR_CURSOR;
    case CursorShape::Arrow:
        break;
    }
    return GLFW_ARROW_CURSOR;
}

} // namespace

int ClickCounter::press(int button, const Vector2f& position, double now, float tolerance)
{
    const bool follows =
        button == button_ && now - time_ <= clickInterval && (position - position_).norm() <= tolerance;
    clicks_ = follows ? clicks_ + 1 : 1;
    button_ = button;
    time_ = now;
    position_ = position;
    return clicks_;
}

tl::expected<std::unique_ptr<GlfwWindow>, std::string> GlfwWindow::create(PixelSize size, const std::string& title)
{
    if (!glfwInit())
        return tl::make_unexpected("There is no display: " + lastError());
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    glfwWindowHint(GLFW_OPENGL_FORWARD_COMPAT, GLFW_TRUE);
    glfwWindowHint(GLFW_SCALE_TO_MONITOR, GLFW_TRUE);
    // Shown with its first picture, so that it never flashes empty.
    glfwWindowHint(GLFW_VISIBLE, GLFW_FALSE);
    glfwWindowHintString(GLFW_X11_CLASS_NAME, title.c_str());
    glfwWindowHintString(GLFW_X11_INSTANCE_NAME, title.c_str());
    GLFWwindow* window = glfwCreateWindow(size.width, size.height, title.c_str(), nullptr, nullptr);
    if (!window)
    {
        std::string reason = lastError();
        glfwTerminate();
        return tl::make_unexpected("A window with OpenGL 3.3 cannot be created: " + reason);
    }
    std::unique_ptr<GlfwWindow> result(new GlfwWindow(window));
    shrinkToMonitor(window);
    result->makeCurrent();
    glfwSwapInterval(1);
    return result;
}

GlfwWindow::GlfwWindow(GLFWwindow* window)
    : window_(window)
{
    glfwSetWindowUserPointer(window_, this);
    connectCallbacks_();
}

GlfwWindow::~GlfwWindow()
{
    glfwDestroyWindow(window_);
    glfwTerminate();
}

void GlfwWindow::connectCallbacks_()
{
    glfwSetCursorPosCallback(window_,
                             [](GLFWwindow* w, double x, double y)
                             {
                                 GlfwWindow& s = self(w);
                                 s.mouse_ = Vector2f(static_cast<float>(x), static_cast<float>(y)) * s.pixelRatio_();
                                 s.events_.push_back(MouseMoveEvent{s.mouse_, s.mods_});
                             });
    glfwSetMouseButtonCallback(window_,
                               [](GLFWwindow* w, int button, int action, int mods)
                               {
                                   GlfwWindow& s = self(w);
                                   s.mods_ = mods;
                                   const bool pressed = action == GLFW_PRESS;
                                   const int clicks = pressed ? s.clicks_.press(button, s.mouse_, glfwGetTime(),
                                                                                clickDistance * s.contentScale())
                                                              : s.clicks_.current();
                                   s.events_.push_back(MouseButtonEvent{button, pressed, mods, s.mouse_, clicks});
                               });
    glfwSetScrollCallback(window_,
                          [](GLFWwindow* w, double x, double y)
                          {
                              GlfwWindow& s = self(w);
                              const Vector2f offset(static_cast<float>(x), static_cast<float>(y));
                              s.events_.push_back(ScrollEvent{offset, s.mods_, s.mouse_});
                          });
    glfwSetKeyCallback(window_,
                       [](GLFWwindow* w, int key, int scancode, int action, int mods)
                       {
                           GlfwWindow& s = self(w);
                           s.updateMods_(key, action, mods);
                           s.events_.push_back(KeyEvent{key, scancode, static_cast<KeyEvent::Action>(action), s.mods_});
                       });
    glfwSetCharCallback(window_, [](GLFWwindow* w, unsigned codepoint)
                        { self(w).events_.push_back(CharEvent{static_cast<char32_t>(codepoint)}); });
    glfwSetDropCallback(window_,
                        [](GLFWwindow* w, int count, const char** names)
                        {
                            GlfwWindow& s = self(w);
                            DropEvent drop;
                            drop.position = s.mouse_;
                            std::for_each(names, names + count,
                                          [&](const char* name) { drop.paths.push_back(pathFromUtf8(name)); });
                            s.events_.push_back(std::move(drop));
                        });
    glfwSetFramebufferSizeCallback(window_, [](GLFWwindow* w, int, int) { self(w).events_.push_back(ResizeEvent{}); });
    glfwSetWindowContentScaleCallback(window_,
                                      [](GLFWwindow* w, float, float) { self(w).events_.push_back(ResizeEvent{}); });
    // Also when what was shown is lost, as under another window without a compositor.
    glfwSetWindowRefreshCallback(window_, [](GLFWwindow* w) { self(w).events_.push_back(ResizeEvent{}); });
    glfwSetWindowFocusCallback(window_,
                               [](GLFWwindow* w, int focused)
                               {
                                   self(w).mods_ = 0;
                                   self(w).events_.push_back(FocusEvent{focused == GLFW_TRUE});
                               });
    glfwSetCursorEnterCallback(window_, [](GLFWwindow* w, int entered)
                               { self(w).events_.push_back(EnterEvent{entered == GLFW_TRUE}); });
}

/// X11 reports a modifier key with the state from before it.
void GlfwWindow::updateMods_(int key, int action, int mods)
{
    const int own = modOfKey(key);
    mods_ = action == GLFW_RELEASE ? mods & ~own : mods | own;
}

float GlfwWindow::pixelRatio_() const
{
    int width = 0;
    int height = 0;
    glfwGetWindowSize(window_, &width, &height);
    return width > 0 ? static_cast<float>(framebufferSize().width) / static_cast<float>(width) : 1;
}

void GlfwWindow::makeCurrent()
{
    glfwMakeContextCurrent(window_);
}

void GlfwWindow::swapBuffers()
{
    glfwSwapBuffers(window_);
}

PixelSize GlfwWindow::framebufferSize() const
{
    PixelSize size;
    glfwGetFramebufferSize(window_, &size.width, &size.height);
    return size;
}

void GlfwWindow::setFramebufferSize(PixelSize size)
{
    const float ratio = pixelRatio_();
    glfwSetWindowSize(window_, static_cast<int>(std::lround(static_cast<float>(size.width) / ratio)),
                      static_cast<int>(std::lround(static_cast<float>(size.height) / ratio)));
}

float GlfwWindow::contentScale() const
{
    float x = 1;
    float y = 1;
    glfwGetWindowContentScale(window_, &x, &y);
    return std::max(x, y);
}

void GlfwWindow::setTitle(const std::string& title)
{
    glfwSetWindowTitle(window_, title.c_str());
}

std::optional<PixelRect> GlfwWindow::placement() const
{
    if (isFullScreen())
        return windowed_;
    PixelRect rect;
    glfwGetWindowPos(window_, &rect.x, &rect.y);
    glfwGetWindowSize(window_, &rect.width, &rect.height);
    return rect;
}

void GlfwWindow::setPlacement(const PixelRect& rect)
{
    glfwSetWindowSize(window_, rect.width, rect.height);
    if (overlapsAMonitor(rect))
        glfwSetWindowPos(window_, rect.x, rect.y);
}

bool GlfwWindow::isMaximized() const
{
    return glfwGetWindowAttrib(window_, GLFW_MAXIMIZED) == GLFW_TRUE;
}

void GlfwWindow::maximize()
{
    glfwMaximizeWindow(window_);
}

bool GlfwWindow::isFullScreen() const
{
    return glfwGetWindowMonitor(window_) != nullptr;
}

void GlfwWindow::setFullScreen(bool full)
{
    if (full == isFullScreen())
        return;
    if (!full)
    {
        glfwSetWindowMonitor(window_, nullptr, windowed_.x, windowed_.y, windowed_.width, windowed_.height,
                             GLFW_DONT_CARE);
        return;
    }
    windowed_ = placement().value();
    GLFWmonitor* monitor = monitorUnder(windowed_);
    const GLFWvidmode* mode = monitor ? glfwGetVideoMode(monitor) : nullptr;
    if (!mode)
        return;
    // A file dialog in front must not send it away.
    glfwSetWindowAttrib(window_, GLFW_AUTO_ICONIFY, GLFW_FALSE);
    glfwSetWindowMonitor(window_, monitor, 0, 0, mode->width, mode->height, mode->refreshRate);
}

void GlfwWindow::show()
{
    glfwShowWindow(window_);
}

void GlfwWindow::focus()
{
    glfwFocusWindow(window_);
}

bool GlfwWindow::isCloseRequested() const
{
    return glfwWindowShouldClose(window_) == GLFW_TRUE;
}

void GlfwWindow::requestClose(bool requested)
{
    glfwSetWindowShouldClose(window_, requested ? GLFW_TRUE : GLFW_FALSE);
    wake();
}

void GlfwWindow::waitEvents(std::optional<double> timeoutSeconds)
{
    if (!timeoutSeconds)
        glfwWaitEvents();
    else if (*timeoutSeconds > 0)
        glfwWaitEventsTimeout(*timeoutSeconds);
    else
        glfwPollEvents();
}

void GlfwWindow::wake()
{
    glfwPostEmptyEvent();
}

std::vector<InputEvent> GlfwWindow::takeEvents()
{
    return std::exchange(events_, {});
}

bool GlfwWindow::hasEvents() const
{
    return !events_.empty();
}

void GlfwWindow::setCursor(CursorShape shape)
{
    if (shape == cursor_)
        return;
    cursor_ = shape;
    GLFWcursor*& cursor = cursors_.at(static_cast<std::size_t>(shape));
    if (!cursor)
        cursor = glfwCreateStandardCursor(systemCursor(shape));
    glfwSetCursor(window_, cursor);
}

std::string GlfwWindow::clipboard()
{
    const char* text = glfwGetClipboardString(window_);
    return text ? text : "";
}

void GlfwWindow::setClipboard(const std::string& text)
{
    glfwSetClipboardString(window_, text.c_str());
}

unsigned long GlfwWindow::systemId() const
{
    return x11WindowOf(window_);
}

MonitorFacts GlfwWindow::monitors() const
{
    MonitorFacts facts;
    GLFWmonitor** monitors = glfwGetMonitors(&facts.count);
    int mostPixels = 0;
    std::for_each(monitors, monitors + facts.count,
                  [&](GLFWmonitor* monitor)
                  {
                      const GLFWvidmode* mode = glfwGetVideoMode(monitor);
                      if (!mode || mode->width * mode->height <= mostPixels)
                          return;
                      mostPixels = mode->width * mode->height;
                      float x = 1;
                      float y = 1;
                      glfwGetMonitorContentScale(monitor, &x, &y);
                      facts.biggest = {mode->width, mode->height};
                      facts.scalingPercent = static_cast<int>(std::lround(x * 100));
                  });
    return facts;
}

} // namespace VX
