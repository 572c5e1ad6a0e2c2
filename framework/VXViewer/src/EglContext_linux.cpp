#include "EglContext.h"

#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <array>

namespace VX
{

namespace
{

/// The software renderer's display first: it needs no device. A graphics card's own comes next.
EGLDisplay openDisplay()
{
    for (const EGLenum platform : {EGLenum{EGL_PLATFORM_SURFACELESS_MESA}, EGLenum{EGL_PLATFORM_DEVICE_EXT}})
    {
        void* native = EGL_DEFAULT_DISPLAY;
        if (platform == EGL_PLATFORM_DEVICE_EXT)
        {
            EGLDeviceEXT device = nullptr;
            EGLint count = 0;
            if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_device_enumeration") ||
                !eglQueryDevicesEXT(1, &device, &count) || count == 0)
                continue;
            native = device;
        }
        else if (!epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless"))
        {
            continue;
        }
        EGLDisplay display = eglGetPlatformDisplayEXT(platform, native, nullptr);
        if (display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr))
            return display;
    }
    return EGL_NO_DISPLAY;
}

} // namespace

tl::expected<std::unique_ptr<EglContext>, std::string> EglContext::create()
{
    EGLDisplay display = openDisplay();
    if (display == EGL_NO_DISPLAY)
        return tl::make_unexpected("EGL offers no display without a surface.");
    if (!eglBindAPI(EGL_OPENGL_API))
        return tl::make_unexpected("EGL does not offer OpenGL.");

    constexpr std::array<EGLint, 7> wanted{
        EGL_CONTEXT_MAJOR_VERSION,           3,       EGL_CONTEXT_MINOR_VERSION, 3, EGL_CONTEXT_OPENGL_PROFILE_MASK,
        EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT, EGL_NONE};
    EGLContext context = eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, wanted.data());
    if (context == EGL_NO_CONTEXT)
        return tl::make_unexpected("EGL cannot create an OpenGL 3.3 core context.");
    std::unique_ptr<EglContext> result(new EglContext(display, context));
    result->makeCurrent();
    if (eglGetCurrentContext() != context)
        return tl::make_unexpected("EGL cannot use a context without a surface.");
    return result;
}

EglContext::EglContext(void* display, void* context)
    : display_(display)
    , context_(context)
{
}

EglContext::~EglContext()
{
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    // The display stays: it is one for all contexts of the process.
    eglDestroyContext(display_, context_);
}

void EglContext::makeCurrent()
{
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_);
}

} // namespace VX
