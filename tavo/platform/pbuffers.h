#pragma once

#include "tavo/platform/Winsys.h"

struct HPBUFFERARB__; // NOLINT(bugprone-reserved-identifier): the name on Windows

namespace tavo {

// The functions of WGL_ARB_pbuffer. A pbuffer is made for contexts of the configuration that the current context has,
// and for no others; it takes no attributes. Handles that are unknown are refused.

HPBUFFERARB__* createPbuffer(HDC deviceContext, int format, int width, int height, const int* attributes);
HDC getPbufferDC(HPBUFFERARB__* pbuffer);
int releasePbufferDC(HPBUFFERARB__* pbuffer, HDC deviceContext);
// The pbuffer must not be current; its device context is forgotten.
int destroyPbuffer(HPBUFFERARB__* pbuffer);
int queryPbuffer(HPBUFFERARB__* pbuffer, int attribute, int* value);

} // namespace tavo
