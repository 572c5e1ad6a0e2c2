#include "WindowFacts.h"

#include <VXMesh/SystemInfo.h>
#include <VXViewer/Window.h>

#include <epoxy/gl.h>

#include <string>

namespace VX
{

namespace
{

std::string glText(GLenum name)
{
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

} // namespace

void contributeWindowFacts(const Window& window)
{
    Json::Value graphics;
    graphics["OpenGL Renderer"] = glText(GL_RENDERER);
    graphics["OpenGL Version"] = glText(GL_VERSION);
    const MonitorFacts monitors = window.monitors();
    Json::Value windowInfo;
    windowInfo["Number of monitors"] = monitors.count;
    windowInfo["BiggestMonitor"]["Width"] = monitors.biggest.width;
    windowInfo["BiggestMonitor"]["Height"] = monitors.biggest.height;
    windowInfo["BiggestMonitor"]["ScalingPercent"] = monitors.scalingPercent;
    // Asked for on any thread: the values are those of now.
    setSystemInfoContributor(
        [graphics, windowInfo](Json::Value& info)
        {
            info["Graphics Info"] = graphics;
            info["Window Info"] = windowInfo;
        });
}

void withdrawWindowFacts()
{
    setSystemInfoContributor({});
}

} // namespace VX
