#include "tests/support/WindowSystem.h"

#include "tests/support/CallRecorder.h"

namespace tavo {

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

} // namespace tavo
