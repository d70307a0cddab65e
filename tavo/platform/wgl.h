#pragma once

/// @file
/// The WGL calls that vireo makes. On Windows they are the system's own. Elsewhere this library supplies them over GLX
/// and EGL, so that the same sources see, activate and release a context however it was made: by Qt through GLX or EGL,
/// or by an application itself, with a window, a pbuffer or no surface at all.
///
///     const HDC drawable = wglGetCurrentDC();
///     const HGLRC context = wglGetCurrentContext();
///     wglMakeCurrent(nullptr, nullptr);   // releases it
///     wglMakeCurrent(drawable, context);  // and makes it current again
///
/// A handle stands for one native context or drawable. Asking again gives the same handle, so handles may be compared.
/// They own nothing and are not freed. All functions may be called from several threads; "current" means current on the
/// calling thread.

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#else

#include "tavo/platform/Export.h"

struct HDC__;   // NOLINT(bugprone-reserved-identifier): Windows' name
struct HGLRC__; // NOLINT(bugprone-reserved-identifier): Windows' name
using HDC = HDC__*;
using HGLRC = HGLRC__*;
using PROC = void (*)();

extern "C" {

/// The rendering context that is current, through GLX or EGL; null if there is none.
TAVO_WGL_EXPORT HGLRC wglGetCurrentContext();

/// The drawable, with its display, that the current context draws to; null if no context is current. A context that is
/// current without a surface has a device context too.
TAVO_WGL_EXPORT HDC wglGetCurrentDC();

/// Makes a context current. With a null context, releases the current one, whatever the device context. Returns
/// non-zero on success. Handles that are null, unknown, or not of one window system and display are refused, and the
/// current context stays; after any other failure, none may be current. If a window has been destroyed, the driver
/// decides: some go on drawing to what they have kept of it.
TAVO_WGL_EXPORT int wglMakeCurrent(HDC deviceContext, HGLRC renderingContext);

/// The number of the pixel format (the configuration of GLX or EGL) of the current context's device context; 0 for any
/// other device context.
TAVO_WGL_EXPORT int GetPixelFormat(HDC deviceContext);

/// The entry point of that name in the current context's driver; null if there is none, or no context is current. Any
/// name that looks like a GL function's gets an address from GLX and EGL; only the extension string says whether the
/// driver has the function.
///
/// Of the names that begin with "wgl" it knows "wglGetExtensionsStringARB" (a `const char* (HDC)` that returns null for
/// an unknown handle) and those of WGL_ARB_pbuffer. A pbuffer is made with the current context's device context and
/// format, and takes no attributes.
TAVO_WGL_EXPORT PROC wglGetProcAddress(const char* name);
}

#endif
