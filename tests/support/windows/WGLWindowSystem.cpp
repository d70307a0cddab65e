#include <cstdlib>
#include <stdexcept>

#include "tests/support/WindowSystem.h"

namespace tavo {

namespace {

// The class of the windows that contexts draw to; each has a device context of its own, for as long as it lives.
LPCSTR windowClass()
{
    static const ATOM registered = [] {
        WNDCLASSA description{};
        description.style = CS_OWNDC;
        description.lpfnWndProc = DefWindowProcA;
        description.hInstance = GetModuleHandleA(nullptr);
        description.lpszClassName = "vireo_test";
        return RegisterClassA(&description);
    }();
    return MAKEINTATOM(registered);
}

PIXELFORMATDESCRIPTOR wantedFormat()
{
    PIXELFORMATDESCRIPTOR format{};
    format.nSize = sizeof format;
    format.nVersion = 1;
    format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    format.iPixelType = PFD_TYPE_RGBA;
    format.cColorBits = 32;
    format.cAlphaBits = 8;
    format.cDepthBits = 24;
    format.cStencilBits = 8;
    return format;
}

// A visible window: what covers an invisible one is undefined. It does not become the active window, so that no window
// manager is waited for.
class TestWindow
{
public:
    TestWindow()
        : m_Window(CreateWindowA(windowClass(), "", WS_POPUP, 0, 0, WindowSystem::DRAWABLE_SIZE,
              WindowSystem::DRAWABLE_SIZE, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr))
    {
        if (m_Window)
            ShowWindow(m_Window, SW_SHOWNOACTIVATE);
    }
    ~TestWindow()
    {
        if (m_Window)
            DestroyWindow(m_Window);
    }
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    // Null if there is no window, or none that GL can draw to.
    HDC prepareForGL() const
    {
        if (!m_Window)
            return nullptr;
        const HDC deviceContext = GetDC(m_Window);
        const PIXELFORMATDESCRIPTOR wanted = wantedFormat();
        const int format = ChoosePixelFormat(deviceContext, &wanted);
        PIXELFORMATDESCRIPTOR chosen{};
        const bool suits = format != 0 && DescribePixelFormat(deviceContext, format, sizeof chosen, &chosen) != 0 &&
                           chosen.cAlphaBits >= 8 && chosen.cDepthBits >= 24 && chosen.cStencilBits >= 8;
        return suits && SetPixelFormat(deviceContext, format, &chosen) ? deviceContext : nullptr;
    }

private:
    HWND m_Window;
};

class WGLTestContext : public TestContext
{
public:
    explicit WGLTestContext(HGLRC shared)
        : m_DeviceContext(m_Window.prepareForGL())
        , m_Context(m_DeviceContext ? wglCreateContext(m_DeviceContext) : nullptr)
    {
        if (!m_Context)
            throw std::runtime_error("WGLTestContext::WGLTestContext() - the driver makes no context");
        if (shared && !wglShareLists(shared, m_Context)) {
            wglDeleteContext(m_Context);
            throw std::runtime_error("WGLTestContext::WGLTestContext() - the driver shares no names");
        }
        findHandles();
    }

    ~WGLTestContext() override
    {
        if (wglGetCurrentContext() == m_Context)
            release();
        wglDeleteContext(m_Context);
    }

    void makeCurrent() override
    {
        if (!wglMakeCurrent(m_DeviceContext, m_Context))
            throw std::runtime_error("WGLTestContext::makeCurrent() - the driver refuses");
    }

    void release() override { wglMakeCurrent(nullptr, nullptr); }

private:
    TestWindow m_Window;
    HDC m_DeviceContext;
    HGLRC m_Context;
};

class WGLWindowSystem : public WindowSystem
{
public:
    std::unique_ptr<TestContext> makeContext(TestContext* shared) override
    {
        return std::make_unique<WGLTestContext>(shared ? shared->getRC() : nullptr);
    }
};

} // namespace

std::unique_ptr<WindowSystem> WindowSystem::open(std::string& reason)
{
    const char* variable = std::getenv("VIREO_TEST_WINSYS");
    const std::string name = variable ? variable : "wgl";
    if (name != "wgl")
        throw std::runtime_error("WindowSystem::open() - VIREO_TEST_WINSYS is not wgl: " + name);
    if (!TestWindow().prepareForGL()) {
        reason =
            "there is no window with a double-buffered RGBA pixel format with depth and stencil; Wine has none where "
            "the driver makes contexts of the core profile alone";
        return nullptr;
    }
    return std::make_unique<WGLWindowSystem>();
}

} // namespace tavo
