#include "GlfwNative.h"

#include <dlfcn.h>

namespace VX
{

unsigned long x11WindowOf(GLFWwindow* window)
{
    // GLFW has the function only where it is built for X11, which is known when it is loaded.
    using Function = unsigned long (*)(GLFWwindow*);
    const auto function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "glfwGetX11Window"));
    return function ? function(window) : 0;
}

} // namespace VX
