#include "tavo/platform/glxContext.h"

#include <cstdlib>
#include <memory>

#include "tavo/platform/XErrorTrap.h"
#include "tavo/platform/nativeHandles.h"
#include "tavo/platform/windowlessContext.h"

#include <GL/glx.h>

namespace tavo {

namespace {

struct CloseDisplay
{
    void operator()(Display* display) const { XCloseDisplay(display); }
};

using OpenDisplay = std::unique_ptr<Display, CloseDisplay>;

std::string noServer()
{
    const char* const name = std::getenv("DISPLAY");
    return name && *name ? std::string("no X server answers at DISPLAY=") + name : "DISPLAY names no X server";
}

// What windows are drawn with, and pbuffers too.
GLXFBConfig chooseConfig(Display* display)
{
    constexpr int WANTED[] = {GLX_DRAWABLE_TYPE, GLX_WINDOW_BIT | GLX_PBUFFER_BIT, GLX_RENDER_TYPE, GLX_RGBA_BIT,
        GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8, GLX_ALPHA_SIZE, 8, GLX_DEPTH_SIZE, 24, GLX_STENCIL_SIZE,
        8, None};
    int count = 0;
    const std::unique_ptr<GLXFBConfig, int (*)(void*)> configs(
        glXChooseFBConfig(display, DefaultScreen(display), WANTED, &count), XFree);
    return configs && count > 0 ? *configs : nullptr;
}

} // namespace

WindowlessContext makeWindowlessGlxContext(std::string& refusal)
{
    OpenDisplay display(XOpenDisplay(nullptr));
    if (!display) {
        refusal = noServer();
        return {};
    }
    const XErrorTrap trap(display.get());
    const GLXFBConfig config = chooseConfig(display.get());
    if (!config) {
        refusal = "the X server has no GLX, or none with colours, depth and stencil";
        return {};
    }
    const GLXContext context = glXCreateNewContext(display.get(), config, GLX_RGBA_TYPE, nullptr, True);
    if (!context) {
        refusal = "the driver makes no context on the X server";
        return {};
    }
    constexpr int SIZE[] = {GLX_PBUFFER_WIDTH, 1, GLX_PBUFFER_HEIGHT, 1, None};
    const GLXPbuffer pbuffer = glXCreatePbuffer(display.get(), config, SIZE);
    const WindowlessContext made{wrapGlxDrawable(display.get(), pbuffer), wrapGlxContext(display.get(), context)};
    display.release(); // until destroyGlxContext()
    return made;
}

void destroyGlxContext(const NativeContext& context)
{
    auto* const display = static_cast<Display*>(context.display);
    glXDestroyContext(display, static_cast<GLXContext>(context.context));
    XCloseDisplay(display);
}

} // namespace tavo
