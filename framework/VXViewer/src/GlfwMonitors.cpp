#include "GlfwMonitors.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <cstdint>
#include <span>

namespace VX
{

namespace
{

std::span<GLFWmonitor*> monitors()
{
    int count = 0;
    GLFWmonitor** found = glfwGetMonitors(&count);
    return {found, static_cast<std::size_t>(count)};
}

/// Without what panels take up.
PixelRect areaOf(GLFWmonitor* monitor)
{
    PixelRect area;
    glfwGetMonitorWorkarea(monitor, &area.x, &area.y, &area.width, &area.height);
    return area;
}

std::int64_t overlap(const PixelRect& a, const PixelRect& b)
{
    const int width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const int height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return std::int64_t{std::max(0, width)} * std::max(0, height);
}

} // namespace

bool overlapsAMonitor(const PixelRect& rect)
{
    return std::ranges::any_of(monitors(),
                               [&](GLFWmonitor* monitor)
                               {
                                   const PixelRect area = areaOf(monitor);
                                   return rect.x < area.x + area.width && area.x < rect.x + rect.width &&
                                          rect.y < area.y + area.height && area.y <= rect.y;
                               });
}

GLFWmonitor* monitorUnder(const PixelRect& rect)
{
    const std::span<GLFWmonitor*> all = monitors();
    const auto found =
        std::ranges::max_element(all, {}, [&](GLFWmonitor* monitor) { return overlap(rect, areaOf(monitor)); });
    return found == all.end() ? nullptr : *found;
}

void shrinkToMonitor(GLFWwindow* window)
{
    PixelRect rect;
    glfwGetWindowPos(window, &rect.x, &rect.y);
    glfwGetWindowSize(window, &rect.width, &rect.height);
    GLFWmonitor* monitor = monitorUnder(rect);
    if (!monitor)
        return;
    const PixelRect area = areaOf(monitor);
    const PixelSize size{std::min(rect.width, area.width), std::min(rect.height, area.height)};
    if (size.width < rect.width || size.height < rect.height)
        glfwSetWindowSize(window, size.width, size.height);
}

} // namespace VX
