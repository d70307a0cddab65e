#include "tests/support/WindowSystem.h"

#include <cstdlib>
#include <stdexcept>

#include "tests/support/CallRecorder.h"

namespace vireo_test {

void TestContext::findHandles()
{
    const CallRecorder::Pause ownCalls;
    const HDC previousDC = wglGetCurrentDC();
    const HGLRC previousRC = wglGetCurrentContext();
    makeCurrent();
    m_DC = wglGetCurrentDC();
    m_RC = wglGetCurrentContext();
    release();
    if (previousRC)
        wglMakeCurrent(previousDC, previousRC);
}

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

} // namespace vireo_test
