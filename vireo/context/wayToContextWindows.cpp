#include "tavo/platform/wgl.h"
#include "vireo/context/wayToContext.h"

namespace tavo {

std::string wayOfCurrentContext()
{
    return wglGetCurrentContext() ? "WGL" : "";
}

} // namespace tavo
