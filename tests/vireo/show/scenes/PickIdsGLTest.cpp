#include <array>
#include <gtest/gtest.h>
#include <vector>

#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/show/scenes/pickIds.h"

namespace tavo {
namespace {

constexpr int SIDE = 256; // of a square with a pixel for each place

class PickIdsGLTest : public ContextTest
{
protected:
    // One point in the middle of each pixel.
    static std::vector<Vector2f> points()
    {
        std::vector<Vector2f> points;
        for (int i = 0; i < SIDE * SIDE; ++i)
            points.emplace_back(
                (2 * static_cast<float>(i % SIDE) + 1) / SIDE - 1, (2 * static_cast<float>(i / SIDE) + 1) / SIDE - 1);
        return points;
    }
};

// All places of some chunks, drawn as they are to pick.
TEST_F(PickIdsGLTest, AreExactAtEveryPlace)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    GLShaderARB program(context(), GL_VERTEX_PROGRAM_ARB);
    ASSERT_TRUE(program.compile(PICK_PROGRAM));
    GLRenderTargetFBO target(context());
    ASSERT_TRUE(target.create(SIDE, SIDE));
    target.activate();
    const std::vector<Vector2f> where = points();
    const std::vector<RGBA8> colours = coloursOfPlaces();
    glDisable(GL_DITHER);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, where.data());
    glColorPointer(4, GL_UNSIGNED_BYTE, 0, colours.data());
    program.bind();
    for (const std::uint32_t chunk : {0u, 255u, 256u, 33333u, PickId::MOST_CHUNKS - 1}) {
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        std::array<float, 4> constant = constantOfChunk(chunk);
        program.setLocalParameter4fv(0, constant.data());
        glDrawArrays(GL_POINTS, 0, SIDE * SIDE - 1);
        const Picture picture = readPixels(SIDE, SIDE);
        for (std::uint32_t place = 0; place + 1 < PickId::PLACES; ++place) {
            const Pixel& pixel = picture.pixels[place];
            ASSERT_EQ(idOfPixel(RGBA8(pixel[0], pixel[1], pixel[2], pixel[3])), (PickId{chunk, place}));
        }
        const Pixel& empty = picture.pixels.back();
        EXPECT_FALSE(idOfPixel(RGBA8(empty[0], empty[1], empty[2], empty[3])).has_value());
    }
    program.unbind();
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
    target.deactivate();
}

} // namespace
} // namespace tavo
