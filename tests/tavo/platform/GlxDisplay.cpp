#include "tests/tavo/platform/GlxDisplay.h"

#include <utility>

#include <GL/glx.h>

namespace tavo {

namespace {

struct CloseDisplay
{
    void operator()(Display* display) const { XCloseDisplay(display); }
};

struct Free
{
    void operator()(void* memory) const { XFree(memory); }
};

} // namespace

struct GlxDisplay::Native
{
    std::unique_ptr<Display, CloseDisplay> display;
    std::unique_ptr<GLXFBConfig, Free> configs;
    std::unique_ptr<XVisualInfo, Free> visual;

    GLXFBConfig config() const { return configs.get()[0]; }
};

std::unique_ptr<GlxDisplay> GlxDisplay::open()
{
    auto native = std::make_unique<Native>();
    native->display.reset(XOpenDisplay(nullptr));
    Display* display = native->display.get();
    if (!display || !glXQueryExtension(display, nullptr, nullptr))
        return nullptr;
    const int attributes[] = {GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT | GLX_PBUFFER_BIT, GLX_RENDER_TYPE, GLX_RGBA_BIT,
        GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_DOUBLEBUFFER, True, GLX_X_RENDERABLE, True, None};
    int count = 0;
    native->configs.reset(glXChooseFBConfig(display, DefaultScreen(display), attributes, &count));
    if (count == 0)
        return nullptr;
    native->visual.reset(glXGetVisualFromFBConfig(display, native->config()));
    return std::unique_ptr<GlxDisplay>(new GlxDisplay(std::move(native)));
}

GlxDisplay::GlxDisplay(std::unique_ptr<Native> native)
    : m_Native(std::move(native))
{}

GlxDisplay::~GlxDisplay()
{
    for (const GLXContext context : m_Contexts)
        glXDestroyContext(getNative(), context);
    for (const GLXPbuffer pbuffer : m_Pbuffers)
        glXDestroyPbuffer(getNative(), pbuffer);
}

Display* GlxDisplay::getNative() const
{
    return m_Native->display.get();
}

Window GlxDisplay::makeWindow()
{
    const Window root = DefaultRootWindow(getNative());
    XSetWindowAttributes attributes{};
    attributes.colormap = XCreateColormap(getNative(), root, m_Native->visual->visual, AllocNone);
    const Window window = XCreateWindow(getNative(), root, 0, 0, 16, 16, 0, m_Native->visual->depth, InputOutput,
        m_Native->visual->visual, CWBorderPixel | CWColormap, &attributes);
    XSync(getNative(), False);
    return window;
}

GLXPbuffer GlxDisplay::makePbuffer()
{
    const int attributes[] = {GLX_PBUFFER_WIDTH, 16, GLX_PBUFFER_HEIGHT, 16, None};
    return m_Pbuffers.emplace_back(glXCreatePbuffer(getNative(), m_Native->config(), attributes));
}

GLXContext GlxDisplay::makeContext(GLXContext sharing)
{
    const auto create = reinterpret_cast<PFNGLXCREATECONTEXTATTRIBSARBPROC>(
        glXGetProcAddressARB(reinterpret_cast<const GLubyte*>("glXCreateContextAttribsARB")));
    const int attributes[] = {GLX_CONTEXT_MAJOR_VERSION_ARB, 3, GLX_CONTEXT_MINOR_VERSION_ARB, 0, None};
    return m_Contexts.emplace_back(create(getNative(), m_Native->config(), sharing, True, attributes));
}

void GlxDisplay::destroyWindow(Window window)
{
    XDestroyWindow(getNative(), window);
    XSync(getNative(), False);
}

void GlxDisplay::destroyContext(GLXContext context)
{
    std::erase(m_Contexts, context);
    glXDestroyContext(getNative(), context);
    XSync(getNative(), False);
}

} // namespace tavo
