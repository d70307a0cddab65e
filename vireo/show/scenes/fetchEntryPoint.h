#pragma once

#include "vireo/context/GLExtensions.h"

namespace tavo {

// For entry points that libvireo does not ask for. Each context of a driver may have its own, so the context must be
// current. Returns whether the driver has it.
template <typename Function>
bool fetchEntryPoint(Function& function, const char* name)
{
    function = reinterpret_cast<Function>(reinterpret_cast<void (*)()>(wglGetProcAddress(name)));
    return function != nullptr;
}

} // namespace tavo
