#pragma once

#include <optional>

#include "tavo/platform/Winsys.h"

namespace tavo {

// The handles of this process.
HGLRC getHandle(const NativeContext& context);
HDC getHandle(const NativeDrawable& drawable);

// Nothing for a null or unknown handle, and for one whose display has been closed.
std::optional<NativeContext> getNative(HGLRC handle);
std::optional<NativeDrawable> getNative(HDC handle);

void forgetHandle(HGLRC handle);
void forgetHandle(HDC handle);
void forgetHandlesOf(const void* display);

} // namespace tavo
