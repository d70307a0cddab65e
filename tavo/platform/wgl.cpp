#include "tavo/platform/wgl.h"

#include <string_view>

#include "tavo/platform/EglWinsys.h"
#include "tavo/platform/GlxWinsys.h"
#include "tavo/platform/handles.h"

namespace {

using tavo::NativeContext;
using tavo::NativeDrawable;
using tavo::Winsys;

// A context is current through one of the window systems at most: both libraries see to that.
std::optional<NativeContext> getCurrentNative()
{
    if (const auto context = tavo::GlxWinsys::instance().getCurrentContext())
        return context;
    return tavo::EglWinsys::instance().getCurrentContext();
}

bool isOnDisplayOf(const NativeContext& context, const std::optional<NativeContext>& other)
{
    return other && other->winsys == context.winsys && other->display == context.display;
}

// GLX and EGL make nothing current over each other's contexts, and GLX not reliably over those of another display.
bool makeRoomFor(const NativeContext& context)
{
    const auto current = getCurrentNative();
    return !current || isOnDisplayOf(context, current) || current->winsys->release();
}

const char* getExtensionsString(HDC deviceContext)
{
    return tavo::getNative(deviceContext) ? "WGL_ARB_extensions_string" : nullptr;
}

PROC getWglProcAddress(std::string_view name)
{
    return name == "wglGetExtensionsStringARB" ? reinterpret_cast<PROC>(getExtensionsString) : nullptr;
}

} // namespace

HGLRC wglGetCurrentContext()
{
    const auto context = getCurrentNative();
    return context ? tavo::getHandle(*context) : nullptr;
}

HDC wglGetCurrentDC()
{
    const auto context = getCurrentNative();
    return context ? tavo::getHandle(context->winsys->getCurrentDrawable()) : nullptr;
}

int wglMakeCurrent(HDC deviceContext, HGLRC renderingContext)
{
    if (!renderingContext) {
        const auto current = getCurrentNative();
        return !current || current->winsys->release();
    }
    const auto context = tavo::getNative(renderingContext);
    const auto drawable = tavo::getNative(deviceContext);
    if (!context || !drawable || drawable->winsys != context->winsys || drawable->display != context->display)
        return 0;
    return makeRoomFor(*context) && context->winsys->makeCurrent(*drawable, *context);
}

PROC wglGetProcAddress(const char* name)
{
    const auto context = getCurrentNative();
    if (!name || !context)
        return nullptr;
    return std::string_view(name).starts_with("wgl") ? getWglProcAddress(name) : context->winsys->getProcAddress(name);
}
