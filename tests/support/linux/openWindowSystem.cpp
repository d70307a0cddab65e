#include <cstdlib>
#include <stdexcept>

#include "tests/support/WindowSystem.h"

namespace tavo {

std::unique_ptr<WindowSystem> WindowSystem::open(std::string& reason)
{
    const char* variable = std::getenv("VIREO_TEST_WINSYS");
    const std::string name = variable ? variable : "egl";
    if (name == "glx")
        return openGLX(reason);
    if (name == "egl")
        return openEGL(reason);
    throw std::runtime_error("WindowSystem::open() - VIREO_TEST_WINSYS is neither glx nor egl: " + name);
}

} // namespace tavo
