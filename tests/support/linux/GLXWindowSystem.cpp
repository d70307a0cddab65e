#include <X11/Xlib.h>
#include <cstdlib>
#include <stdexcept>

#include "tests/support/WindowSystem.h"

#include <GL/glx.h>

namespace tavo {

namespace {

// One connection for the whole process, never closed, as with EGL displays: closing it would unload the driver, and
// with it all trace of what the driver has allocated.
Display* connection()
{
    static Display* const display = XOpenDisplay(nullptr);
    return display;
}

// A mapped window: what covers an unmapped one is undefined.
Window makeWindow(Display* display, GLXFBConfig config)
{
    const std::unique_ptr<XVisualInfo, int (*)(void*)> visual(glXGetVisualFromFBConfig(display, config), XFree);
    const Window root = RootWindow(display, visual->screen);
    XSetWindowAttributes attributes{};
    attributes.colormap = XCreateColormap(display, root, visual->visual, AllocNone);
    attributes.override_redirect = True;
    attributes.event_mask = StructureNotifyMask;
    const Window window = XCreateWindow(display, root, 0, 0, WindowSystem::DRAWABLE_SIZE, WindowSystem::DRAWABLE_SIZE,
        0, visual->depth, InputOutput, visual->visual, CWColormap | CWOverrideRedirect | CWEventMask, &attributes);
    XMapWindow(display, window);
    for (XEvent event{}; event.type != MapNotify;)
        XNextEvent(display, &event);
    return window;
}

class GLXTestContext : public TestContext
{
public:
    GLXTestContext(Display* display, GLXFBConfig config, GLXContext shared)
        : m_Display(display)
        , m_Window(makeWindow(display, config))
        , m_Context(glXCreateNewContext(display, config, GLX_RGBA_TYPE, shared, True))
    {
        if (!m_Context)
            throw std::runtime_error("GLXTestContext::GLXTestContext() - the driver makes no context");
        findHandles();
    }

    ~GLXTestContext() override
    {
        if (glXGetCurrentContext() == m_Context)
            release();
        glXDestroyContext(m_Display, m_Context);
        XDestroyWindow(m_Display, m_Window);
    }

    void makeCurrent() override
    {
        if (!glXMakeCurrent(m_Display, m_Window, m_Context))
            throw std::runtime_error("GLXTestContext::makeCurrent() - the driver refuses");
    }

    void release() override { glXMakeCurrent(m_Display, None, nullptr); }

    GLXContext getContext() const { return m_Context; }

private:
    Display* m_Display;
    Window m_Window;
    GLXContext m_Context;
};

class GLXWindowSystem : public WindowSystem
{
public:
    GLXWindowSystem(Display* display, GLXFBConfig config)
        : m_Display(display)
        , m_Config(config)
    {}

    std::unique_ptr<TestContext> makeContext(TestContext* shared) override
    {
        auto* sharedContext = static_cast<GLXTestContext*>(shared);
        return std::make_unique<GLXTestContext>(
            m_Display, m_Config, sharedContext ? sharedContext->getContext() : nullptr);
    }

private:
    Display* m_Display;
    GLXFBConfig m_Config;
};

GLXFBConfig chooseConfig(Display* display)
{
    const int attributes[] = {GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT, GLX_RENDER_TYPE, GLX_RGBA_BIT, GLX_DOUBLEBUFFER, True,
        GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_ALPHA_SIZE, 8, GLX_DEPTH_SIZE, 24, GLX_STENCIL_SIZE,
        8, GLX_SAMPLE_BUFFERS, 0, None};
    int count = 0;
    const std::unique_ptr<GLXFBConfig, int (*)(void*)> configs(
        glXChooseFBConfig(display, DefaultScreen(display), attributes, &count), XFree);
    return count > 0 ? *configs : nullptr;
}

} // namespace

std::unique_ptr<WindowSystem> openGLX(std::string& reason)
{
    Display* const display = connection();
    if (!display) {
        const char* name = std::getenv("DISPLAY");
        reason = std::string("no X server answers at DISPLAY='") + (name ? name : "") + "'";
        return nullptr;
    }
    const GLXFBConfig config = chooseConfig(display);
    if (!config) {
        reason = "the X server has no double-buffered RGBA visual with depth and stencil";
        return nullptr;
    }
    return std::make_unique<GLXWindowSystem>(display, config);
}

} // namespace tavo
