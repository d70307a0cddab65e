#pragma once

#include "tavo/platform/Winsys.h"

namespace tavo {

// Destroys a context of makeWindowlessGlxContext() and closes its connection to the X server, with which its drawable
// and the handles of both go.
void destroyGlxContext(const NativeContext& context);

} // namespace tavo
