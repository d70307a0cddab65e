#include <cmath>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/works.h"
#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/show/scenes/EyeDomeLighting.h"
#include "vireo/textures/GLTexture.h"

namespace vireo_bench {

namespace {

using Target = tavo::GLRenderTargetFBO;

// Makes no more of the texels that the lighting fetches than that none can be left out.
std::string programOfFetches()
{
    return std::string(R"(!!ARBfp1.0
PARAM right = { 1.4, 0, 0, 0 };
PARAM up = { 0, 1.4, 0, 0 };
PARAM rightUp = { 1, 1, 0, 0 };
PARAM rightDown = { 1, -1, 0, 0 };
)") + tavo::EyeDomeLighting::FETCHES +
           R"(ADD ones, ones, others;
DP4 ones.x, ones, here;
MUL result.color, colour, ones.x;
END)";
}

std::unique_ptr<Target> makeTarget(int side)
{
    auto target = std::make_unique<Target>(&View::context());
    if (!target->create(static_cast<unsigned int>(side), static_cast<unsigned int>(side)))
        throw tavo::PException("the driver has no targets of depths");
    return target;
}

// Hills, with holes that show the ground behind them.
std::vector<float> depthsOf(int side)
{
    std::vector<float> depths;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const float hill =
                0.5f + 0.4f * std::sin(static_cast<float>(x) / 20) * std::sin(static_cast<float>(y) / 30);
            depths.push_back((x * 7 + y * 13) % 5 == 0 ? 1 : hill);
        }
    return depths;
}

class Pass : public Contestant
{
public:
    explicit Pass(int side)
        : m_Side(side)
        , m_Source(makeTarget(side))
        , m_Result(makeTarget(side))
    {
        m_Source->activate();
        glClearColor(0.8f, 0.7f, 0.6f, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_ALWAYS);
        glRasterPos2i(-1, -1);
        glDrawPixels(side, side, GL_DEPTH_COMPONENT, GL_FLOAT, depthsOf(side).data());
        glDepthFunc(GL_LESS);
        glDisable(GL_DEPTH_TEST);
        m_Source->deactivate();
    }
    void prepare() override
    {
        View::context();
        m_Result->activate();
    }
    void run() override
    {
        draw();
        glFinish();
    }
    void cleanUp() override { m_Result->deactivate(); }

protected:
    virtual void draw() = 0;

    int side() const { return m_Side; }
    const Target& source() const { return *m_Source; }

private:
    int m_Side;
    std::unique_ptr<Target> m_Source;
    std::unique_ptr<Target> m_Result;
};

class Lighting : public Pass
{
public:
    explicit Lighting(int side)
        : Pass(side)
        , m_Lighting(tavo::EyeDomeLighting::make(View::context()))
    {
        if (!m_Lighting)
            throw tavo::PException("the driver has no ARB programs");
    }

protected:
    void draw() override { m_Lighting->draw(source(), {side(), side()}, {false, 1, 100, 1.15}); }

private:
    std::unique_ptr<tavo::EyeDomeLighting> m_Lighting;
};

class Fetches : public Pass
{
public:
    explicit Fetches(int side)
        : Pass(side)
        , m_Program(&View::context(), GL_FRAGMENT_PROGRAM_ARB)
    {
        if (!m_Program.compile(programOfFetches()))
            throw tavo::PException(m_Program.getLastError());
    }

protected:
    void draw() override
    {
        source().getDepthTexture()->bind(1);
        source().getColourTexture()->bind(0);
        m_Program.bind();
        glBegin(GL_QUADS);
        for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
            glTexCoord2i(x * side(), y * side());
            glVertex2i(2 * x - 1, 2 * y - 1);
        }
        glEnd();
        m_Program.unbind();
    }

private:
    tavo::GLShaderARB m_Program;
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> ofSide(int side)
{
    return [side] { return std::make_unique<Kind>(side); };
}

} // namespace

Comparison lightByDepths(int side)
{
    const std::string size = std::to_string(side) + " x " + std::to_string(side);
    return {"eye-dome lighting, " + size,
        {{"vireo", ofSide<Lighting>(side)}, {"the same fetches", ofSide<Fetches>(side), 1.5, anyResult}}};
}

void addLightingWorks()
{
    add(lightByDepths(512));
    add(lightByDepths(1024));
}

} // namespace vireo_bench
