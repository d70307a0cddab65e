#include "tavo/platform/nativeHandles.h"

#include "tavo/platform/EglWinsys.h"
#include "tavo/platform/GlxWinsys.h"
#include "tavo/platform/handles.h"

namespace tavo {

HGLRC wrapGlxContext(_XDisplay* display, __GLXcontextRec* context)
{
    return display && context ? getHandle(GlxWinsys::instance().makeNative(display, context)) : nullptr;
}

HDC wrapGlxDrawables(_XDisplay* display, unsigned long draw, unsigned long read)
{
    return display ? getHandle(GlxWinsys::instance().makeNative(display, draw, read)) : nullptr;
}

HDC wrapGlxDrawable(_XDisplay* display, unsigned long drawable)
{
    return wrapGlxDrawables(display, drawable, drawable);
}

HGLRC wrapEglContext(void* display, void* context)
{
    return display && context ? getHandle(EglWinsys::instance().makeNative(display, context)) : nullptr;
}

HDC wrapEglSurfaces(void* display, void* draw, void* read)
{
    return display ? getHandle(EglWinsys::instance().makeNative(display, draw, read)) : nullptr;
}

HDC wrapEglSurface(void* display, void* surface)
{
    return wrapEglSurfaces(display, surface, surface);
}

const char* getWindowSystemName(HGLRC renderingContext)
{
    const auto context = getNative(renderingContext);
    if (!context)
        return nullptr;
    return context->winsys == &GlxWinsys::instance() ? "GLX" : "EGL";
}

void forgetContext(HGLRC renderingContext)
{
    forgetHandle(renderingContext);
}

} // namespace tavo
