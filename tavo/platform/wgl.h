#pragma once

// The WGL calls that vireo makes. On Windows they are the system's own. Elsewhere this library supplies them over GLX
// and over EGL, so that the same sources see, activate and release a context whichever of the two made it: Qt through
// GLX, Qt through EGL, or an application itself, with a window, a pbuffer or no surface at all.
//
// A handle stands for one native context or drawable: asking again for the same one yields the same handle, so handles
// may be compared. Handles own nothing and are not freed. All functions may be called from several threads; what is
// current is so on the calling thread.

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

// The rendering context that is current on this thread, through GLX or EGL; null if none is.
TAVO_WGL_EXPORT HGLRC wglGetCurrentContext();

// The drawable (and display) that the current context draws to; null if no context is current. A context that is
// current without a surface has a device context too.
TAVO_WGL_EXPORT HDC wglGetCurrentDC();

// Makes a context current on this thread, or with a null context releases what is current, whatever the device context.
// Non-zero on success. Handles that are null or unknown, or that are not of one window system and display, are refused
// and what was current remains so; after any other failure nothing need be current. Of a window that has been destroyed
// the driver decides: some go on drawing to what they have of one that was drawn to before.
TAVO_WGL_EXPORT int wglMakeCurrent(HDC deviceContext, HGLRC renderingContext);

// The number of the pixel format, GLX's and EGL's configuration, of the current context's device context; 0 for any
// other.
TAVO_WGL_EXPORT int GetPixelFormat(HDC deviceContext);

// The entry point of that name for the current context's window system and driver; null if there is none, or if no
// context is current. Of the names that begin with "wgl" it knows "wglGetExtensionsStringARB", whose function
// (const char* (HDC)) answers null for an unknown handle, and those of WGL_ARB_pbuffer: a pbuffer is made with the
// current context's device context and its format, and without attributes. GLX and EGL answer with some address for any
// name that looks like a GL function's: whether the driver has the function, its extension string says.
TAVO_WGL_EXPORT PROC wglGetProcAddress(const char* name);
}

#endif
