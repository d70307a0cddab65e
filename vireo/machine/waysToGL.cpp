#include "vireo/machine/waysToGL.h"

#include "tavo/platform/windowlessContext.h"

namespace tavo {

namespace {

class WindowlessTrialContext : public TrialContext
{
public:
    explicit WindowlessTrialContext(const WindowlessContext& context)
        : m_Context(context)
    {
        m_DC = context.deviceContext;
        m_RC = context.renderingContext;
    }
    ~WindowlessTrialContext() override { destroyWindowlessContext(m_Context); }

private:
    WindowlessContext m_Context;
};

std::unique_ptr<TrialContext> wrapped(const WindowlessContext& context)
{
    return context.renderingContext ? std::make_unique<WindowlessTrialContext>(context) : nullptr;
}

std::unique_ptr<TrialContext> makeByGlx(std::string& refusal)
{
    return wrapped(makeWindowlessGlxContext(refusal));
}

std::unique_ptr<TrialContext> makeByEgl(std::string& refusal)
{
    refusal = "EGL makes no context of desktop OpenGL without a display";
    return wrapped(makeWindowlessContext());
}

} // namespace

const std::vector<WayToGL>& waysToGL()
{
    static const std::vector<WayToGL> ways = {
        {"GLX", makeByGlx,
            "start an X server with GLX and set DISPLAY to it (xvfb-run does both), and install its driver "
            "(libgl1-mesa-dri); without one, pictures are drawn through EGL"},
        {"EGL", makeByEgl, "install libegl1 and a driver with surfaceless EGL displays (libgl1-mesa-dri)"},
    };
    return ways;
}

const char* const GET_CG = "install libcg, libcggl and nvidia-cg-dev, and build the library anew";

} // namespace tavo
