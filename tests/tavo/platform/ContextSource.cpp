#include "tests/tavo/platform/ContextSource.h"

#include <EGL/egl.h>

#include <GL/glx.h>

namespace vireo_test {

const void* getNativeCurrentContext()
{
    if (const GLXContext context = glXGetCurrentContext())
        return context;
    return eglGetCurrentContext();
}

} // namespace vireo_test
