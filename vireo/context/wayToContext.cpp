#include "vireo/context/wayToContext.h"

#include "tavo/platform/nativeHandles.h"

namespace tavo {

std::string wayOfCurrentContext()
{
    const char* const name = getWindowSystemName(wglGetCurrentContext());
    return name ? name : "";
}

} // namespace tavo
