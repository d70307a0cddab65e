#pragma once

#include <memory>

namespace tavo {

// An EGL display without a window system, and what is made on it. All of it goes with the object; the native display,
// of which there is one per process, remains and can be opened again.
class EglHeadlessDisplay
{
public:
    // Null if EGL offers no such display, or no OpenGL on it.
    static std::unique_ptr<EglHeadlessDisplay> open();
    ~EglHeadlessDisplay();
    EglHeadlessDisplay(const EglHeadlessDisplay&) = delete;
    EglHeadlessDisplay& operator=(const EglHeadlessDisplay&) = delete;

    // The EGLDisplay, EGLSurfaces and EGLContexts.
    void* getNative() const { return m_Display; }
    void* makePbuffer();
    void* makeContext(void* sharing = nullptr);

private:
    EglHeadlessDisplay(void* display, void* config);

    void* m_Display;
    void* m_Config;
};

} // namespace tavo
