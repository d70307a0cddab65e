#include "tests/tavo/platform/EglHeadlessDisplay.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

namespace tavo {

std::unique_ptr<EglHeadlessDisplay> EglHeadlessDisplay::open()
{
    const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!display || !eglInitialize(display, nullptr, nullptr))
        return nullptr;
    const EGLint attributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_RED_SIZE,
        8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, attributes, &config, 1, &count);
    if (count == 0 || !eglBindAPI(EGL_OPENGL_API)) {
        eglTerminate(display);
        return nullptr;
    }
    return std::unique_ptr<EglHeadlessDisplay>(new EglHeadlessDisplay(display, config));
}

EglHeadlessDisplay::EglHeadlessDisplay(EGLDisplay display, EGLConfig config)
    : m_Display(display)
    , m_Config(config)
{}

EglHeadlessDisplay::~EglHeadlessDisplay()
{
    eglTerminate(m_Display);
}

EGLSurface EglHeadlessDisplay::makePbuffer()
{
    const EGLint attributes[] = {EGL_WIDTH, 16, EGL_HEIGHT, 16, EGL_NONE};
    return eglCreatePbufferSurface(m_Display, m_Config, attributes);
}

EGLContext EglHeadlessDisplay::makeContext(EGLContext sharing)
{
    return eglCreateContext(m_Display, m_Config, sharing, nullptr);
}

} // namespace tavo
