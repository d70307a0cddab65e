#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/show/scenes/EyeDomeLighting.h"
#include "vireo/textures/GLTexture.h"

namespace tavo {
namespace {

using View = EyeDomeLighting::View;

constexpr Pixel COLOUR{200, 100, 50, 77};
constexpr double STEEPEST = 10;

// Depths of OpenGL's from 0 to 1.
struct Depths
{
    int width = 0;
    int height = 0;
    std::vector<double> values;

    Depths(int w, int h, const std::function<double(int x, int y)>& depth)
        : width(w)
        , height(h)
    {
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                values.push_back(depth(x, y));
    }

    // Beyond the edges are those at the edges.
    double at(double x, double y) const
    {
        const int column = std::clamp(static_cast<int>(std::floor(x)), 0, width - 1);
        const int row = std::clamp(static_cast<int>(std::floor(y)), 0, height - 1);
        return values[static_cast<std::size_t>(row * width + column)];
    }
};

// In front of the eye.
double distanceOf(double depth, const View& view)
{
    if (view.isOrthographic)
        return view.nearest + depth * (view.farthest - view.nearest);
    return 1 / (1 / view.nearest + depth * (1 / view.farthest - 1 / view.nearest));
}

double depthOf(double distance, const View& view)
{
    if (view.isOrthographic)
        return (distance - view.nearest) / (view.farthest - view.nearest);
    return (1 / view.nearest - 1 / distance) / (1 / view.nearest - 1 / view.farthest);
}

// By the formula, from distances.
double shadeAt(const Depths& depths, int x, int y, const View& view, double radius)
{
    const double here = depths.at(x, y);
    if (here >= 1)
        return 1;
    const double z = distanceOf(here, view);
    double sum = 0;
    for (int i = 0; i < 8; ++i) {
        const double angle = i * std::acos(-1.0) / 4;
        const double zj =
            distanceOf(depths.at(x + 0.5 + radius * std::cos(angle), y + 0.5 + radius * std::sin(angle)), view);
        const double nearer = view.isOrthographic ? z - zj : z / zj - 1;
        sum += std::clamp(nearer * depths.height / (view.heightSeen * radius), 0.0, STEEPEST);
    }
    return std::exp(-EyeDomeLighting::STRENGTH * sum / 8);
}

class EyeDomeLightingGLTest : public ContextTest
{
protected:
    void SetUp() override
    {
        ContextTest::SetUp();
        if (IsSkipped())
            return;
        NEEDS_EXTENSION("GL_ARB_vertex_program");
        NEEDS_EXTENSION("GL_ARB_fragment_program");
        m_Lighting = EyeDomeLighting::make(*context());
        ASSERT_NE(m_Lighting, nullptr);
    }

    void TearDown() override
    {
        m_Lighting.reset();
        ContextTest::TearDown();
    }

    // A target of COLOUR with those depths.
    std::unique_ptr<GLRenderTargetFBO> drawn(const Depths& depths)
    {
        auto target = std::make_unique<GLRenderTargetFBO>(context());
        EXPECT_TRUE(target->create(static_cast<unsigned int>(depths.width), static_cast<unsigned int>(depths.height)));
        target->activate();
        glClearColor(COLOUR[0] / 255.f, COLOUR[1] / 255.f, COLOUR[2] / 255.f, COLOUR[3] / 255.f);
        glClear(GL_COLOR_BUFFER_BIT);
        glEnable(GL_SCISSOR_TEST);
        for (int y = 0; y < depths.height; ++y)
            for (int x = 0; x < depths.width; ++x) {
                glScissor(x, y, 1, 1);
                glClearDepth(depths.at(x, y));
                glClear(GL_DEPTH_BUFFER_BIT);
            }
        glDisable(GL_SCISSOR_TEST);
        target->deactivate();
        return target;
    }

    // What the lighting makes of it.
    Picture lit(const Depths& depths, const View& view, double pixelRatio = 1)
    {
        const auto source = drawn(depths);
        GLRenderTargetFBO result(context());
        EXPECT_TRUE(result.create(source->getWidth(), source->getHeight()));
        result.activate();
        m_Lighting->draw(*source, {depths.width, depths.height}, view, pixelRatio);
        Picture picture = readPixels(source->getWidth(), source->getHeight());
        result.deactivate();
        return picture;
    }

    static void expectShade(const Picture& picture, int x, int y, double shade, int tolerance = 1)
    {
        const Pixel& pixel = picture.at(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(pixel[i], COLOUR[i] * shade, tolerance) << x << ", " << y;
        EXPECT_EQ(pixel[3], COLOUR[3]) << x << ", " << y;
    }

    void expectFormula(const Depths& depths, const View& view, double pixelRatio)
    {
        const Picture picture = lit(depths, view, pixelRatio);
        for (int y = 0; y < depths.height; ++y)
            for (int x = 0; x < depths.width; ++x)
                expectShade(picture, x, y, shadeAt(depths, x, y, view, EyeDomeLighting::RADIUS * pixelRatio), 2);
    }

    std::unique_ptr<EyeDomeLighting> m_Lighting;
};

const View PERSPECTIVE{false, 0.5, 50, 1.15};
const View ORTHOGRAPHIC{true, -3, 7, 12};

TEST_F(EyeDomeLightingGLTest, LeavesWhatFacesTheEyeAsItIs)
{
    for (const View& view : {PERSPECTIVE, ORTHOGRAPHIC})
        for (const double depth : {0.0, 0.3, 0.9, 0.9999, 1.0}) {
            const Depths plane(9, 7, [&](int, int) { return depth; });
            const Picture picture = lit(plane, view);
            for (const Pixel& pixel : picture.pixels)
                EXPECT_EQ(pixel, COLOUR) << depth;
        }
}

// Three of the eight neighbours of the pixels at the edge lie on the near side.
TEST_F(EyeDomeLightingGLTest, DarkensTheFarSideOfAnEdge)
{
    constexpr int HEIGHT = 7;
    for (const bool isOrthographic : {false, true}) {
        const View view{isOrthographic, 1, 3, 4.0};
        const Depths edge(10, HEIGHT, [&](int x, int) { return depthOf(x < 5 ? 2 : 2.3, view); });
        const Picture picture = lit(edge, view);
        const double slope = (isOrthographic ? 0.3 : 2.3 / 2 - 1) * HEIGHT / (4.0 * 1.4);
        const double dark = std::exp(-0.28 * 3 * slope / 8);
        EXPECT_LT(dark, isOrthographic ? 0.97 : 0.985) << "it is seen";
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < 10; ++x)
                expectShade(picture, x, y, x == 5 ? dark : 1);
    }
}

TEST_F(EyeDomeLightingGLTest, KnowsNoDeeperAbyssThanTen)
{
    const View view{false, 0.001, 1000, 1};
    const Depths edge(10, 64, [&](int x, int) { return depthOf(x < 5 ? 0.01 : 900, view); });
    const Picture picture = lit(edge, view);
    for (int x = 0; x < 10; ++x)
        expectShade(picture, x, 30, x == 5 ? std::exp(-0.28 * 3 * 10 / 8) : 1);
}

TEST_F(EyeDomeLightingGLTest, LeavesTheBackgroundAsItIs)
{
    const Depths island(9, 9, [](int x, int y) { return std::abs(x - 4) < 2 && std::abs(y - 4) < 2 ? 0.2 : 1; });
    for (const View& view : {PERSPECTIVE, ORTHOGRAPHIC})
        for (const Pixel& pixel : lit(island, view).pixels)
            EXPECT_EQ(pixel, COLOUR);
}

TEST_F(EyeDomeLightingGLTest, FollowsTheFormula)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> anywhere(0, 1);
    for (const View& view : {PERSPECTIVE, ORTHOGRAPHIC, View{false, 1, 2000, 1.15}})
        for (const double pixelRatio : {1.0, 2.0}) {
            const auto distance = [&] { return view.nearest + anywhere(random) * (view.farthest - view.nearest); };
            const Depths rough(24, 17, [&](int, int) { return depthOf(distance(), view); });
            expectFormula(rough, view, pixelRatio);
        }
}

// A plane that rises by `rise` for every unit to the left.
TEST_F(EyeDomeLightingGLTest, LooksTheSameAtEveryScaleAndSize)
{
    constexpr double RISE = 0.8;
    const double shade = std::exp(-0.28 * 3 * (RISE / 1.4) / 8);
    EXPECT_LT(shade, 0.95);
    for (const double scale : {1e-6, 1.0, 1e7})
        for (const int height : {16, 64, 256}) {
            const View view{true, 0, 10 * scale, 2 * scale};
            const double pixel = view.heightSeen / height;
            const Depths plane(10, height, [&](int x, int) { return depthOf(scale + RISE * pixel * x, view); });
            const Picture picture = lit(plane, view);
            for (int x = 1; x < 9; ++x)
                expectShade(picture, x, height / 2, shade);
        }
}

// In perspective a pixel shows the more the farther away it is.
TEST_F(EyeDomeLightingGLTest, LooksTheSameAtEveryDistance)
{
    constexpr int HEIGHT = 400;
    constexpr double RISE = 0.8;
    const double shade = std::exp(-0.28 * 3 * (RISE / 1.4) / 8);
    for (const double distance : {2.0, 20.0, 150.0}) {
        const View view{false, distance / 2, 4 * distance, 1.15};
        const double pixel = view.heightSeen / HEIGHT * distance;
        const Depths plane(10, HEIGHT, [&](int x, int) { return depthOf(distance + RISE * pixel * x, view); });
        const Picture picture = lit(plane, view);
        for (int x = 1; x < 9; ++x)
            expectShade(picture, x, HEIGHT / 2, shade);
    }
}

TEST_F(EyeDomeLightingGLTest, TakesThePictureFromTheCornerOfALargerTarget)
{
    const Depths edge(40, 20, [](int x, int y) { return x < 5 || y >= 9 ? 0.1 : 0.8; });
    const auto source = drawn(edge);
    GLRenderTargetFBO result(context());
    EXPECT_TRUE(result.create(10, 8));
    result.activate();
    m_Lighting->draw(*source, {10, 8}, ORTHOGRAPHIC);
    const Picture picture = readPixels(10, 8);
    result.deactivate();
    for (int x = 0; x < 10; ++x)
        EXPECT_EQ(picture.at(static_cast<unsigned int>(x), 3)[0] < COLOUR[0], x == 5) << x;
}

TEST_F(EyeDomeLightingGLTest, LeavesStateAndDepths)
{
    const auto source = drawn(Depths(8, 8, [](int, int) { return 0.5; }));
    glEnable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT_AND_BACK);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glScalef(2, 3, 4);
    source->getColourTexture()->bind(0);
    GLTexture::setStage(3);
    GLRenderTargetFBO result(context());
    EXPECT_TRUE(result.create(8, 8));
    GLTexture::setStage(3);
    result.activate();
    glClearDepth(0.25);
    glClear(GL_DEPTH_BUFFER_BIT);
    m_Lighting->draw(*source, {8, 8}, PERSPECTIVE);
    EXPECT_EQ(readPixels(8, 8), Picture(8, 8, COLOUR)) << "whatever state it finds";
    float depth = 0;
    glReadPixels(3, 3, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_NEAR(depth, 0.25f, 1e-6f);
    result.deactivate();

    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    EXPECT_FALSE(glIsEnabled(GL_FRAGMENT_PROGRAM_ARB));
    EXPECT_EQ(getInteger(GL_MATRIX_MODE), GL_PROJECTION);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE3);
    std::array<float, 16> projection{};
    glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
    EXPECT_EQ(projection[5], 3);
}

} // namespace
} // namespace tavo
