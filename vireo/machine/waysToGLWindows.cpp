#include "vireo/machine/waysToGL.h"

namespace tavo {

namespace {

// A window of a class that the system has anyway, never shown.
class HiddenWindow : public TrialContext
{
public:
    HiddenWindow()
        : m_Window(
              CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 16, 16, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr))
    {
        m_DC = m_Window ? GetDC(m_Window) : nullptr;
        PIXELFORMATDESCRIPTOR wanted{};
        wanted.nSize = sizeof wanted;
        wanted.nVersion = 1;
        wanted.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
        wanted.iPixelType = PFD_TYPE_RGBA;
        wanted.cColorBits = 32;
        wanted.cAlphaBits = 8;
        wanted.cDepthBits = 24;
        wanted.cStencilBits = 8;
        const int format = m_DC ? ChoosePixelFormat(m_DC, &wanted) : 0;
        if (format != 0 && SetPixelFormat(m_DC, format, &wanted))
            m_RC = wglCreateContext(m_DC);
    }
    ~HiddenWindow() override
    {
        if (m_RC)
            wglDeleteContext(m_RC);
        if (m_DC)
            ReleaseDC(m_Window, m_DC);
        if (m_Window)
            DestroyWindow(m_Window);
    }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

private:
    HWND m_Window;
};

std::unique_ptr<TrialContext> makeByWgl(std::string& refusal)
{
    refusal = "Windows makes no context for a window";
    auto window = std::make_unique<HiddenWindow>();
    return window->getRC() ? std::move(window) : nullptr;
}

} // namespace

const std::vector<WayToGL>& waysToGL()
{
    static const std::vector<WayToGL> ways = {
        {"WGL", makeByWgl, "install the driver of the graphics card; remote desktops may hide it"},
    };
    return ways;
}

const char* const GET_CG = "use GLShaderARB; on Windows there is no Cg runtime for what this compiler makes";

} // namespace tavo
