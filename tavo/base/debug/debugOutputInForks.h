#pragma once

#include "tavo/base/Export.h"

namespace tavo {

// For libraries that watch forks: in front of a fork, so that nobody writes to debugOutput meanwhile, and behind it. A
// child has no window: it writes to the standard error stream, and drops events.
TAVO_BASE_EXPORT void lockDebugOutputForFork();
TAVO_BASE_EXPORT void unlockDebugOutputInParent();
TAVO_BASE_EXPORT void unlockDebugOutputInChild();

} // namespace tavo
