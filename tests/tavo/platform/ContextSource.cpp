#include "tests/tavo/platform/ContextSource.h"

#include <EGL/egl.h>

#include <GL/glx.h>

namespace tavo {

const void* getNativeCurrentContext()
{
    if (const GLXContext context = glXGetCurrentContext())
        return context;
    return eglGetCurrentContext();
}

bool hasXServer()
{
    Display* display = XOpenDisplay(nullptr);
    if (display)
        XCloseDisplay(display);
    return display != nullptr;
}

} // namespace tavo
