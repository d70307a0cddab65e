#pragma once

// The WGL calls that vireo makes. On Windows they are the system's own. Elsewhere this library supplies them over GLX and
// over EGL, so that the same sources see, activate and release a context whichever of the two made it: Qt through GLX, Qt
// through EGL, or an application itself, with a window, a pbuffer or no surface at all.
//
// A handle stands for one native context or drawable: asking again for the same one yields the same handle, so handles may
// be compared. Handles are never freed by the caller and own nothing.

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

struct HDC__;
struct HGLRC__;
using HDC = HDC__*;
using HGLRC = HGLRC__*;
using PROC = void (*)();

extern "C" {

// The rendering context that is current on this thread, through GLX or EGL; null if none is.
TAVO_WGL_EXPORT HGLRC wglGetCurrentContext();

// The drawable (and display) that the current context draws to; null if no context is current. A context that is current
// without a surface has a device context too.
TAVO_WGL_EXPORT HDC wglGetCurrentDC();

// Makes a context current on this thread, releasing what was current before, or with two nulls only releases. Non-zero on
// success. On failure what was current before need not be so any more.
TAVO_WGL_EXPORT int wglMakeCurrent(HDC deviceContext, HGLRC renderingContext);

// The entry point of that name for the current context's driver; null if there is none. Answers for every GL function
// and for "wglGetExtensionsStringARB", the one WGL extension function that exists here.
TAVO_WGL_EXPORT PROC wglGetProcAddress(const char* name);
}

#endif
