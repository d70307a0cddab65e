#pragma once

#include <memory>
#include <string>

#include "tavo/platform/wgl.h"

namespace tavo {

// A GL compatibility context with a 64x64 RGBA drawable (depth and stencil included) of its own.
class TestContext
{
public:
    virtual ~TestContext() = default;

    virtual void makeCurrent() = 0;
    // Leaves this thread without a current context.
    virtual void release() = 0;

    HDC getDC() const { return m_DC; }
    HGLRC getRC() const { return m_RC; }

protected:
    // Makes the context current for a moment to learn its handles.
    void findHandles();

private:
    HDC m_DC = nullptr;
    HGLRC m_RC = nullptr;
};

// A connection that contexts are made on.
class WindowSystem
{
public:
    static constexpr int DRAWABLE_SIZE = 64;

    virtual ~WindowSystem() = default;

    // Shares names with `shared`, a context of the same window system, unless that is null. What is current stays
    // current.
    virtual std::unique_ptr<TestContext> makeContext(TestContext* shared) = 0;

    // The window system that VIREO_TEST_WINSYS names: "glx" or "egl" (the default), on Windows "wgl". Null if this
    // machine has none; then `reason` says what is missing. Throws std::runtime_error for another name.
    static std::unique_ptr<WindowSystem> open(std::string& reason);
};

std::unique_ptr<WindowSystem> openGLX(std::string& reason);
std::unique_ptr<WindowSystem> openEGL(std::string& reason);

} // namespace tavo
