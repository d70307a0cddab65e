#pragma once

/// @file
/// GL contexts for programs without a window, on machines without a display too. EGL makes them. There are none on
/// Windows, where a hidden window serves.
///
///     WindowlessContext pictures = makeWindowlessContext();
///     if (pictures.renderingContext && wglMakeCurrent(pictures.deviceContext, pictures.renderingContext))
///         compute();
///     destroyWindowlessContext(pictures);

#include <string>

#include "tavo/platform/Export.h"
#include "tavo/platform/wgl.h"

namespace tavo {

/// A context, and what it draws to: a buffer of one pixel, which stands in for a window. Pictures are drawn into
/// pbuffers or framebuffer objects.
struct WindowlessContext
{
    HDC deviceContext = nullptr;
    HGLRC renderingContext = nullptr;
};

#if defined(_WIN32)

inline WindowlessContext makeWindowlessContext()
{
    return {};
}

inline void destroyWindowlessContext(const WindowlessContext&) {}

#else

/// Makes a context of the compatibility profile, with colours of 8 bits, depth of 24 and stencil of 8. It is not made
/// current. It is the caller's, who destroys it. Both handles are null where the driver makes none.
TAVO_WGL_EXPORT WindowlessContext makeWindowlessContext();

/// Makes one through GLX, as windows get theirs, on a connection of its own to the X server that DISPLAY names. If
/// there is none, `refusal` says why.
TAVO_WGL_EXPORT WindowlessContext makeWindowlessGlxContext(std::string& refusal);

/// Destroys such a context, and releases it first if it is current in this thread. Null handles are ignored.
TAVO_WGL_EXPORT void destroyWindowlessContext(const WindowlessContext& context);

#endif

} // namespace tavo
