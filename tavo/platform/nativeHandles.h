#pragma once

/// @file
/// Handles for contexts and drawables that an application made itself through GLX or EGL. With them it can pass a
/// context to whatever asks for WGL handles without making the context current first. On Windows the handles are the
/// system's own, and this header is empty.
///
/// A handle is the one that wglGetCurrentContext() or wglGetCurrentDC() returns when the context is current. Handles
/// own nothing: contexts, drawables and displays remain the caller's. A handle whose context or drawable was destroyed,
/// or whose X display was closed, is refused.
///
///     HGLRC wrapSurfaceless(void* eglDisplay, void* eglContext)
///     {
///         const HDC none = wrapEglSurface(eglDisplay, nullptr);
///         const HGLRC handle = wrapEglContext(eglDisplay, eglContext);
///         return wglMakeCurrent(none, handle) ? handle : nullptr;
///     }
///
/// The native types appear without their headers, whose macros (None, Bool, Status, ...) would otherwise reach
/// everything that includes this one.

#if !defined(_WIN32)

#include "tavo/platform/wgl.h"

struct _XDisplay;       // NOLINT(bugprone-reserved-identifier): Xlib's Display
struct __GLXcontextRec; // NOLINT(bugprone-reserved-identifier): what a GLXContext points to

namespace tavo {

/// The handle of a GLX context on an open display (a Display*). Null if either is null.
TAVO_WGL_EXPORT HGLRC wrapGlxContext(_XDisplay* display, __GLXcontextRec* context);

/// The handle of the GLX drawables to draw to and to read from. They are XIDs of windows, GLXWindows, GLXPbuffers or
/// GLXPixmaps; both are 0 for a context that needs none. Null if the display is null.
TAVO_WGL_EXPORT HDC wrapGlxDrawables(_XDisplay* display, unsigned long draw, unsigned long read);

/// The handle of one drawable, both to draw to and to read from.
TAVO_WGL_EXPORT HDC wrapGlxDrawable(_XDisplay* display, unsigned long drawable);

/// The handle of an EGL context on an EGLDisplay. Null if either is null.
TAVO_WGL_EXPORT HGLRC wrapEglContext(void* display, void* context);

/// The handle of the EGLSurfaces to draw to and to read from. Both are null (EGL_NO_SURFACE) for a context that is
/// current without a surface. Null if the display is null.
TAVO_WGL_EXPORT HDC wrapEglSurfaces(void* display, void* draw, void* read);

/// The handle of one surface, both to draw to and to read from.
TAVO_WGL_EXPORT HDC wrapEglSurface(void* display, void* surface);

/// How that context was made: "GLX" or "EGL"; null for an unknown handle.
TAVO_WGL_EXPORT const char* getWindowSystemName(HGLRC renderingContext);

/// Call this when a context with a handle has been destroyed. From then on the handle is refused, and a new context at
/// the same address gets a handle of its own. GLX can tell a new context from an old one. EGL cannot: without this
/// call, the new context takes over the handle. An unknown handle is ignored.
TAVO_WGL_EXPORT void forgetContext(HGLRC renderingContext);

} // namespace tavo

#endif
