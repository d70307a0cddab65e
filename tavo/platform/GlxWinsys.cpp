#include "tavo/platform/GlxWinsys.h"

#include <memory>

#include "tavo/platform/XErrorTrap.h"
#include "tavo/platform/displayWatch.h"

#include <GL/glx.h>

namespace tavo {

namespace {

PROC getEntryPoint(const char* name)
{
    return glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name));
}

// The X id that the client side gave to the context; no round trip. 0 if the context has been destroyed.
GLXContextID getSerial(GLXContext context)
{
    static const auto getContextID = reinterpret_cast<PFNGLXGETCONTEXTIDEXTPROC>(getEntryPoint("glXGetContextIDEXT"));
    return getContextID ? getContextID(context) : 0;
}

int query(const NativeContext& context, int attribute)
{
    int value = 0;
    glXQueryContext(
        static_cast<Display*>(context.display), static_cast<GLXContext>(context.context), attribute, &value);
    return value;
}

bool makeContextCurrent(Display* display, GLXDrawable draw, GLXDrawable read, GLXContext context)
{
    XErrorTrap trap(display);
    if (!glXMakeContextCurrent(display, draw, read, context))
        return false;
    if (!trap.hasErrorOn(draw) && !trap.hasErrorOn(read))
        return true;
    // The driver took a drawable that does not exist (any more). It must let go of what it made for that now, while the
    // trap is there, and not when it next sees the context: Mesa does so when the context is current without a
    // drawable.
    glXMakeContextCurrent(display, None, None, context);
    glXMakeContextCurrent(display, None, None, nullptr);
    return false;
}

} // namespace

const GlxWinsys& GlxWinsys::instance()
{
    static const GlxWinsys winsys;
    return winsys;
}

NativeContext GlxWinsys::makeNative(Display* display, GLXContext context) const
{
    return {this, display, context, getSerial(context)};
}

NativeDrawable GlxWinsys::makeNative(Display* display, GLXDrawable draw, GLXDrawable read) const
{
    return {this, display, draw, read};
}

std::optional<NativeContext> GlxWinsys::getCurrentContext() const
{
    const GLXContext context = glXGetCurrentContext();
    return context ? std::optional(makeNative(glXGetCurrentDisplay(), context)) : std::nullopt;
}

NativeDrawable GlxWinsys::getCurrentDrawable() const
{
    return makeNative(glXGetCurrentDisplay(), glXGetCurrentDrawable(), glXGetCurrentReadDrawable());
}

bool GlxWinsys::makeCurrent(const NativeDrawable& drawable, const NativeContext& context) const
{
    const auto native = static_cast<GLXContext>(context.context);
    if (getSerial(native) != context.serial)
        return false;
    return makeContextCurrent(static_cast<Display*>(context.display), drawable.draw, drawable.read, native);
}

bool GlxWinsys::release() const
{
    return makeContextCurrent(glXGetCurrentDisplay(), None, None, nullptr);
}

PROC GlxWinsys::getProcAddress(const char* name) const
{
    return getEntryPoint(name);
}

int GlxWinsys::getConfig(const NativeContext& context) const
{
    return query(context, GLX_FBCONFIG_ID);
}

std::optional<NativeDrawable> GlxWinsys::makePbuffer(const NativeContext& context, int width, int height) const
{
    auto* const display = static_cast<Display*>(context.display);
    XErrorTrap trap(display);
    const int wanted[] = {GLX_FBCONFIG_ID, getConfig(context), None};
    int count = 0;
    const std::unique_ptr<GLXFBConfig, int (*)(void*)> configs(
        glXChooseFBConfig(display, query(context, GLX_SCREEN), wanted, &count), XFree);
    if (!configs || count == 0)
        return std::nullopt;
    const int attributes[] = {GLX_PBUFFER_WIDTH, width, GLX_PBUFFER_HEIGHT, height, None};
    const GLXPbuffer pbuffer = glXCreatePbuffer(display, *configs, attributes);
    // There is a name for one that the server refuses, too, but it has no size.
    unsigned int madeWidth = 0;
    glXQueryDrawable(display, pbuffer, GLX_WIDTH, &madeWidth);
    return madeWidth == static_cast<unsigned int>(width) ? std::optional(makeNative(display, pbuffer, pbuffer))
                                                         : std::nullopt;
}

void GlxWinsys::destroyPbuffer(const NativeDrawable& pbuffer) const
{
    auto* const display = static_cast<Display*>(pbuffer.display);
    const XErrorTrap trap(display);
    glXDestroyPbuffer(display, pbuffer.draw);
}

void GlxWinsys::watchDisplay(void* display) const
{
    watchXDisplay(static_cast<Display*>(display));
}

} // namespace tavo
