#include "vireo/context/hasFixedFunctions.h"

#include <cstdio>

#include "vireo/context/GLExtensions.h"

namespace tavo {

bool hasFixedFunctions()
{
    const auto* const version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    int major = 0;
    int minor = 0;
    if (!version || std::sscanf(version, "%d.%d", &major, &minor) < 2 || major < 3)
        return true;
    GLint flags = 0;
    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    if (major > 3 || minor >= 2)
        glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    return (flags & GL_CONTEXT_FLAG_FORWARD_COMPATIBLE_BIT) == 0 && (profile & GL_CONTEXT_CORE_PROFILE_BIT) == 0;
}

} // namespace tavo
