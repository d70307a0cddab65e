#pragma once

// Handles for contexts and drawables that an application made itself, through GLX or EGL, so that it can hand them to
// what asks for WGL handles without making them current first. Not for Windows, where the handles are the system's own.
//
// A handle is the one that wglGetCurrentContext() and wglGetCurrentDC() yield when the context is current. It owns
// nothing: contexts, drawables and displays remain the caller's, and whoever makes a context current by a handle whose
// context or drawable was destroyed, or whose X display was closed, is refused.
//
// The native types appear here by their own names but without their headers, whose macros (None, Bool, Status ...)
// would reach everything that includes this one.

#if !defined(_WIN32)

#include "tavo/platform/wgl.h"

struct _XDisplay;       // NOLINT(bugprone-reserved-identifier): Xlib's Display
struct __GLXcontextRec; // NOLINT(bugprone-reserved-identifier): what a GLXContext points to

namespace tavo {

// The handle of a GLX context. Null if the display (a Display*, open) or the context is.
TAVO_WGL_EXPORT HGLRC wrapGlxContext(_XDisplay* display, __GLXcontextRec* context);

// The handle of the GLX drawables to draw to and to read from: XIDs of windows, GLXWindows, GLXPbuffers or GLXPixmaps;
// both 0 for a context that needs none. Null if the display is.
TAVO_WGL_EXPORT HDC wrapGlxDrawables(_XDisplay* display, unsigned long draw, unsigned long read);

// The same with one drawable to draw to and to read from.
TAVO_WGL_EXPORT HDC wrapGlxDrawable(_XDisplay* display, unsigned long drawable);

// The handle of an EGL context. Null if the display (an EGLDisplay) or the context (an EGLContext) is.
TAVO_WGL_EXPORT HGLRC wrapEglContext(void* display, void* context);

// The handle of the EGLSurfaces to draw to and to read from; both null (EGL_NO_SURFACE) for a context that is made
// current without a surface. Null if the display is.
TAVO_WGL_EXPORT HDC wrapEglSurfaces(void* display, void* draw, void* read);

// The same with one surface to draw to and to read from.
TAVO_WGL_EXPORT HDC wrapEglSurface(void* display, void* surface);

// To be called when a context with a handle has been destroyed. From then on the handle is refused, and a new context
// at the same address gets a handle of its own. GLX tells a new context from an old one, EGL does not: there, without
// this call, the new context takes over the handle. An unknown handle is ignored.
TAVO_WGL_EXPORT void forgetContext(HGLRC renderingContext);

} // namespace tavo

#endif
