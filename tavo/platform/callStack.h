#pragma once

#include <string>
#include <vector>

#include "tavo/platform/Export.h"

// Compiled into libvireo on Windows, where libtavowgl is headers only.
#if defined(_WIN32)
#define TAVO_CALL_STACK_EXPORT
#else
#define TAVO_CALL_STACK_EXPORT TAVO_WGL_EXPORT
#endif

namespace tavo {

// The addresses of the calls that have led here, the innermost first, without as many of the innermost as `skip` says.
TAVO_CALL_STACK_EXPORT std::vector<void*> captureCallStack(int skip);

// The function at such an address, as far as the program tells, and where in its file that is: for addr2line.
TAVO_CALL_STACK_EXPORT std::string describeCall(void* address);

} // namespace tavo
