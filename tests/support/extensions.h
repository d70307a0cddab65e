#pragma once

#include <gtest/gtest.h>

// Ends a test as skipped where the driver lacks an extension that it needs. A context must be current. Such a driver
// is what "scripts/test --lean" makes of this machine's.
#define NEEDS_EXTENSION(name)                                                                                          \
    do {                                                                                                               \
        if (!tavo::hasExtension(name))                                                                                 \
            GTEST_SKIP() << "the driver has no " << (name);                                                            \
    } while (false)

namespace tavo {

// Whether the driver lists an extension for the current context. Unseen by recorders.
bool hasExtension(const char* name);

} // namespace tavo
