#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <stdexcept>

#include "tests/support/WindowSystem.h"

namespace tavo {

namespace {

class EGLTestContext : public TestContext
{
public:
    EGLTestContext(EGLDisplay display, EGLConfig config, EGLContext shared)
        : m_Display(display)
    {
        const EGLint size[] = {
            EGL_WIDTH, WindowSystem::DRAWABLE_SIZE, EGL_HEIGHT, WindowSystem::DRAWABLE_SIZE, EGL_NONE};
        m_Surface = eglCreatePbufferSurface(m_Display, config, size);
        eglBindAPI(EGL_OPENGL_API);
        m_Context = eglCreateContext(m_Display, config, shared, nullptr);
        if (m_Surface == EGL_NO_SURFACE || m_Context == EGL_NO_CONTEXT)
            throw std::runtime_error("EGLTestContext::EGLTestContext() - the driver makes no context or no pbuffer");
        findHandles();
    }

    ~EGLTestContext() override
    {
        if (eglGetCurrentContext() == m_Context)
            release();
        eglDestroyContext(m_Display, m_Context);
        eglDestroySurface(m_Display, m_Surface);
    }

    void makeCurrent() override
    {
        eglBindAPI(EGL_OPENGL_API);
        if (!eglMakeCurrent(m_Display, m_Surface, m_Surface, m_Context))
            throw std::runtime_error("EGLTestContext::makeCurrent() - the driver refuses");
    }

    void release() override { eglMakeCurrent(m_Display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT); }

    EGLContext getContext() const { return m_Context; }

private:
    EGLDisplay m_Display;
    EGLSurface m_Surface = EGL_NO_SURFACE;
    EGLContext m_Context = EGL_NO_CONTEXT;
};

// The display stays initialised until the program ends: EGL hands out the same one every time.
class EGLWindowSystem : public WindowSystem
{
public:
    EGLWindowSystem(EGLDisplay display, EGLConfig config)
        : m_Display(display)
        , m_Config(config)
    {}

    std::unique_ptr<TestContext> makeContext(TestContext* shared) override
    {
        auto* sharedContext = static_cast<EGLTestContext*>(shared);
        return std::make_unique<EGLTestContext>(
            m_Display, m_Config, sharedContext ? sharedContext->getContext() : EGL_NO_CONTEXT);
    }

private:
    EGLDisplay m_Display;
    EGLConfig m_Config;
};

EGLConfig chooseConfig(EGLDisplay display)
{
    const EGLint attributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_RED_SIZE,
        8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8, EGL_DEPTH_SIZE, 24, EGL_STENCIL_SIZE, 8,
        EGL_SAMPLE_BUFFERS, 0, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, attributes, &config, 1, &count);
    return count > 0 ? config : nullptr;
}

} // namespace

std::unique_ptr<WindowSystem> openEGL(std::string& reason)
{
    const EGLDisplay display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) {
        reason = "EGL has no surfaceless display";
        return nullptr;
    }
    const EGLConfig config = chooseConfig(display);
    if (!config) {
        reason = "the surfaceless EGL display has no RGBA pbuffers with depth and stencil for OpenGL";
        return nullptr;
    }
    return std::make_unique<EGLWindowSystem>(display, config);
}

} // namespace tavo
