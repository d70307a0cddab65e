#include "tavo/platform/EglWinsys.h"

#include <EGL/egl.h>
#include <bit>

namespace tavo {

const EglWinsys& EglWinsys::instance()
{
    static const EglWinsys winsys;
    return winsys;
}

NativeContext EglWinsys::makeNative(EGLDisplay display, EGLContext context) const
{
    return {this, display, context};
}

NativeDrawable EglWinsys::makeNative(EGLDisplay display, EGLSurface draw, EGLSurface read) const
{
    return {this, display, std::bit_cast<std::uintptr_t>(draw), std::bit_cast<std::uintptr_t>(read)};
}

std::optional<NativeContext> EglWinsys::getCurrentContext() const
{
    const EGLContext context = eglGetCurrentContext();
    return context ? std::optional(makeNative(eglGetCurrentDisplay(), context)) : std::nullopt;
}

NativeDrawable EglWinsys::getCurrentDrawable() const
{
    return makeNative(eglGetCurrentDisplay(), eglGetCurrentSurface(EGL_DRAW), eglGetCurrentSurface(EGL_READ));
}

bool EglWinsys::makeCurrent(const NativeDrawable& drawable, const NativeContext& context) const
{
    return eglMakeCurrent(context.display, std::bit_cast<EGLSurface>(drawable.draw),
        std::bit_cast<EGLSurface>(drawable.read), context.context);
}

bool EglWinsys::release() const
{
    return eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

PROC EglWinsys::getProcAddress(const char* name) const
{
    return eglGetProcAddress(name);
}

} // namespace tavo
