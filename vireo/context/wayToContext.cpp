#include "vireo/context/wayToContext.h"

#include "tavo/platform/nativeHandles.h"

namespace tavo {

std::string wayToContext(HGLRC__* context)
{
    const char* const name = getWindowSystemName(context);
    return name ? name : "";
}

} // namespace tavo
