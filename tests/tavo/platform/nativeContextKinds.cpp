#include <EGL/egl.h>
#include <array>
#include <utility>

#include "tests/tavo/platform/EglHeadlessDisplay.h"
#include "tests/tavo/platform/GlxDisplay.h"
#include "tests/tavo/platform/WglGLTest.h"

#include <GL/glx.h>

namespace tavo {

namespace {

class GlxContexts : public ContextSource
{
public:
    template <typename MakeDrawable>
    static std::unique_ptr<ContextSource> make(MakeDrawable makeDrawable)
    {
        auto display = GlxDisplay::open();
        if (!display)
            return nullptr;
        const std::array drawables = {makeDrawable(*display), makeDrawable(*display)};
        return std::make_unique<GlxContexts>(std::move(display), drawables);
    }

    GlxContexts(std::unique_ptr<GlxDisplay> display, const std::array<GLXDrawable, 2>& drawables)
        : m_Display(std::move(display))
        , m_Drawables(drawables)
    {
        for (GLXContext& context : m_Contexts)
            context = m_Display->makeContext(m_Contexts[0]);
    }

    bool makeCurrent(int index) override
    {
        return glXMakeContextCurrent(m_Display->getNative(), m_Drawables[index], m_Drawables[index], m_Contexts[index]);
    }

    bool hasSurfaces() const override { return m_Drawables[0] != None; }

private:
    std::unique_ptr<GlxDisplay> m_Display;
    std::array<GLXDrawable, 2> m_Drawables;
    std::array<GLXContext, 2> m_Contexts{};
};

class EglContexts : public ContextSource
{
public:
    template <typename MakeSurface>
    static std::unique_ptr<ContextSource> make(MakeSurface makeSurface)
    {
        auto display = EglHeadlessDisplay::open();
        if (!display)
            return nullptr;
        const std::array<EGLSurface, 2> surfaces = {makeSurface(*display), makeSurface(*display)};
        return std::make_unique<EglContexts>(std::move(display), surfaces);
    }

    EglContexts(std::unique_ptr<EglHeadlessDisplay> display, const std::array<EGLSurface, 2>& surfaces)
        : m_Display(std::move(display))
        , m_Surfaces(surfaces)
    {
        for (EGLContext& context : m_Contexts)
            context = m_Display->makeContext(m_Contexts[0]);
    }

    bool makeCurrent(int index) override
    {
        return eglMakeCurrent(m_Display->getNative(), m_Surfaces[index], m_Surfaces[index], m_Contexts[index]);
    }

    bool hasSurfaces() const override { return m_Surfaces[0] != EGL_NO_SURFACE; }

private:
    std::unique_ptr<EglHeadlessDisplay> m_Display;
    std::array<EGLSurface, 2> m_Surfaces;
    std::array<EGLContext, 2> m_Contexts{};
};

constexpr auto glx = "an X server with GLX";
constexpr auto egl = "a surfaceless EGL display with OpenGL";

const ContextKind kinds[] = {
    {"GlxWindow", glx, [] { return GlxContexts::make([](GlxDisplay& display) { return display.makeWindow(); }); }},
    {"GlxPbuffer", glx, [] { return GlxContexts::make([](GlxDisplay& display) { return display.makePbuffer(); }); }},
    {"GlxWithoutDrawable", glx, [] { return GlxContexts::make([](GlxDisplay&) { return GLXDrawable(None); }); }},
    {"EglPbuffer", egl,
        [] { return EglContexts::make([](EglHeadlessDisplay& display) { return display.makePbuffer(); }); }},
    {"EglWithoutSurface", egl, [] { return EglContexts::make([](EglHeadlessDisplay&) { return EGL_NO_SURFACE; }); }},
};

INSTANTIATE_TEST_SUITE_P(Native, WglGLTest, testing::ValuesIn(kinds), WglGLTest::nameOf);

} // namespace

} // namespace tavo
