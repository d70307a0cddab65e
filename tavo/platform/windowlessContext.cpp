#include "tavo/platform/windowlessContext.h"

#include <bit>

#include "tavo/platform/EglWinsys.h"
#include "tavo/platform/GlxWinsys.h"
#include "tavo/platform/glxContext.h"
#include "tavo/platform/handles.h"
#include "tavo/platform/nativeHandles.h"

#define EGL_NO_X11 // whose macros get in everybody's way
#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace tavo {

namespace {

// The display lives as long as the process, as all of EGL's do.
EGLDisplay surfacelessDisplay()
{
    static const EGLDisplay display = [] {
        const EGLDisplay opened = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        return opened && eglInitialize(opened, nullptr, nullptr) ? opened : EGL_NO_DISPLAY;
    }();
    return display;
}

EGLConfig chooseConfig(EGLDisplay display)
{
    constexpr EGLint WANTED[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_RED_SIZE,
        8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_STENCIL_SIZE, 8, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    return eglChooseConfig(display, WANTED, &config, 1, &count) && count > 0 ? config : nullptr;
}

// Which interface this thread's contexts are made for is the program's affair.
class OpenGLIsBound
{
public:
    OpenGLIsBound()
        : m_Before(eglQueryAPI())
    {
        eglBindAPI(EGL_OPENGL_API);
    }
    ~OpenGLIsBound() { eglBindAPI(m_Before); }
    OpenGLIsBound(const OpenGLIsBound&) = delete;
    OpenGLIsBound& operator=(const OpenGLIsBound&) = delete;

private:
    EGLenum m_Before;
};

} // namespace

WindowlessContext makeWindowlessContext()
{
    const EGLDisplay display = surfacelessDisplay();
    const EGLConfig config = display ? chooseConfig(display) : nullptr;
    if (!config)
        return {};
    const OpenGLIsBound openGLIsBound;
    const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    if (!context)
        return {};
    constexpr EGLint SIZE[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    const EGLSurface surface = eglCreatePbufferSurface(display, config, SIZE);
    return {wrapEglSurface(display, surface), wrapEglContext(display, context)};
}

void destroyWindowlessContext(const WindowlessContext& windowless)
{
    const auto context = getNative(windowless.renderingContext);
    if (!context)
        return;
    if (wglGetCurrentContext() == windowless.renderingContext)
        wglMakeCurrent(nullptr, nullptr);
    if (context->winsys == &GlxWinsys::instance()) {
        destroyGlxContext(*context);
        return;
    }
    forgetContext(windowless.renderingContext);
    eglDestroyContext(context->display, context->context);
    if (const auto surface = getNative(windowless.deviceContext); surface && surface->draw)
        eglDestroySurface(surface->display, std::bit_cast<EGLSurface>(surface->draw));
    forgetHandle(windowless.deviceContext);
}

} // namespace tavo
