#include "tavo/platform/wgl.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "tavo/platform/EglWinsys.h"
#include "tavo/platform/GlxWinsys.h"
#include "tavo/platform/handles.h"
#include "tavo/platform/pbuffers.h"

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
    return tavo::getNative(deviceContext) ? "WGL_ARB_extensions_string WGL_ARB_pbuffer" : nullptr;
}

PROC getWglProcAddress(std::string_view name)
{
    const std::pair<std::string_view, PROC> known[] = {
        {"wglGetExtensionsStringARB", reinterpret_cast<PROC>(getExtensionsString)},
        {"wglCreatePbufferARB", reinterpret_cast<PROC>(tavo::createPbuffer)},
        {"wglGetPbufferDCARB", reinterpret_cast<PROC>(tavo::getPbufferDC)},
        {"wglReleasePbufferDCARB", reinterpret_cast<PROC>(tavo::releasePbufferDC)},
        {"wglDestroyPbufferARB", reinterpret_cast<PROC>(tavo::destroyPbuffer)},
        {"wglQueryPbufferARB", reinterpret_cast<PROC>(tavo::queryPbuffer)},
    };
    const auto found =
        std::find_if(std::begin(known), std::end(known), [name](const auto& entry) { return entry.first == name; });
    return found != std::end(known) ? found->second : nullptr;
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

int GetPixelFormat(HDC deviceContext)
{
    const auto context = getCurrentNative();
    return context && deviceContext == wglGetCurrentDC() ? context->winsys->getConfig(*context) : 0;
}

PROC wglGetProcAddress(const char* name)
{
    const auto context = getCurrentNative();
    if (!name || !context)
        return nullptr;
    return std::string_view(name).starts_with("wgl") ? getWglProcAddress(name) : context->winsys->getProcAddress(name);
}
