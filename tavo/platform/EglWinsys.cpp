#include "tavo/platform/EglWinsys.h"

#include <EGL/egl.h>
#include <bit>

namespace tavo {

namespace {

EGLint getAttribute(EGLDisplay display, EGLConfig config, EGLint attribute)
{
    EGLint value = 0;
    eglGetConfigAttrib(display, config, attribute, &value);
    return value;
}

} // namespace

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

int EglWinsys::getConfig(const NativeContext& context) const
{
    EGLint config = 0;
    return eglQueryContext(context.display, context.context, EGL_CONFIG_ID, &config) ? config : 0;
}

std::optional<NativeDrawable> EglWinsys::makePbuffer(const NativeContext& context, int width, int height) const
{
    const EGLint wanted[] = {EGL_CONFIG_ID, getConfig(context), EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(context.display, wanted, &config, 1, &count) || count == 0)
        return std::nullopt;
    // Not all drivers see to their own limits.
    if (width > getAttribute(context.display, config, EGL_MAX_PBUFFER_WIDTH) ||
        height > getAttribute(context.display, config, EGL_MAX_PBUFFER_HEIGHT))
        return std::nullopt;
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLSurface pbuffer = eglCreatePbufferSurface(context.display, config, size);
    return pbuffer ? std::optional(makeNative(context.display, pbuffer, pbuffer)) : std::nullopt;
}

void EglWinsys::destroyPbuffer(const NativeDrawable& pbuffer) const
{
    eglDestroySurface(pbuffer.display, std::bit_cast<EGLSurface>(pbuffer.draw));
}

} // namespace tavo
