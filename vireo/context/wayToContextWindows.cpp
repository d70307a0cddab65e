#include "vireo/context/wayToContext.h"

namespace tavo {

std::string wayToContext(HGLRC__* context)
{
    return context ? "WGL" : "";
}

} // namespace tavo
