#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/PictureComparison.h"
#include "tests/support/blurPass.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/offscreen/targetPictures.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/shaders/GLShaderARB.h"

namespace tavo {
namespace {

const std::vector<double> WEIGHTS{1 / 16., 4 / 16., 6 / 16., 4 / 16., 1 / 16.};

// One direction of a blur, that of the local parameter 0.
const char* const BLUR = R"(!!ARBfp1.0
PARAM step = program.local[0];
TEMP place, texel, sum;
TEX texel, fragment.texcoord[0], texture[0], RECT;
MUL sum, texel, 0.375;
ADD place, fragment.texcoord[0], step;
TEX texel, place, texture[0], RECT;
MAD sum, texel, 0.25, sum;
SUB place, fragment.texcoord[0], step;
TEX texel, place, texture[0], RECT;
MAD sum, texel, 0.25, sum;
MAD place, step, 2, fragment.texcoord[0];
TEX texel, place, texture[0], RECT;
MAD sum, texel, 0.0625, sum;
MAD place, step, -2, fragment.texcoord[0];
TEX texel, place, texture[0], RECT;
MAD result.color, texel, 0.0625, sum;
END)";

// Adds to a picture what a blur has taken away.
const char* const SHARPEN = R"(!!ARBfp1.0
TEMP picture, blurred;
TEX blurred, fragment.texcoord[0], texture[0], RECT;
TEX picture, fragment.texcoord[0], texture[1], RECT;
MAD result.color, picture, 2, -blurred;
END)";

Picture sharpen(const Picture& picture, const Picture& blurred)
{
    Picture result = picture;
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        for (std::size_t channel = 0; channel < 4; ++channel)
            result.pixels[i][channel] = static_cast<unsigned char>(
                std::clamp(2 * picture.pixels[i][channel] - blurred.pixels[i][channel], 0, 255));
    return result;
}

class ImageProcessingGLTest : public ContextTest
{
protected:
    std::unique_ptr<GLShaderARB> makeProgram(const std::string& source)
    {
        auto program = std::make_unique<GLShaderARB>(context(), GL_FRAGMENT_PROGRAM_ARB);
        EXPECT_TRUE(program->compile(source)) << program->getLastError();
        return program;
    }

    static void pass(GLImage& from, GLImage& to)
    {
        to.activate();
        from.drawToScreen();
        to.deactivate();
    }

    static Picture pictureOfImage(GLImage& image)
    {
        return pictureOf(std::unique_ptr<RGBAImage>(image.getRGBAImage()));
    }

    // Each pass may round otherwise than the computation does.
    static void expectAlike(const Picture& picture, const Picture& computed, int tolerance)
    {
        ASSERT_EQ(picture.pixels.size(), computed.pixels.size());
        int largest = 0;
        for (std::size_t i = 0; i < picture.pixels.size(); ++i)
            for (std::size_t channel = 0; channel < 4; ++channel)
                largest = std::max(largest, std::abs(picture.pixels[i][channel] - computed.pixels[i][channel]));
        EXPECT_LE(largest, tolerance);
    }
};

TEST_F(ImageProcessingGLTest, SharpensAPictureInThreePasses)
{
    NEEDS_EXTENSION("GL_ARB_fragment_program");
    GLRenderTextureCache cache(context());
    RGBAImage source = RGBAImage::fromQImage(QImage(VIREO_PICTURE).copy(40, 20, 250, 200));
    ASSERT_EQ(source.getHeight(), 200u);
    const Picture original = pictureOf(source);
    GLImage picture;
    GLImage rows;
    GLImage blurred;
    GLImage sharpened;
    picture.setup(&cache, &source);
    for (GLImage* const image : {&rows, &blurred, &sharpened})
        image->setup(&cache, &picture);
    const auto blur = makeProgram(BLUR);
    const auto sharper = makeProgram(SHARPEN);

    blur->bind();
    blur->setLocalParameter4f(0, 1, 0, 0, 0);
    pass(picture, rows);
    blur->setLocalParameter4f(0, 0, 1, 0, 0);
    pass(rows, blurred);
    sharper->bind();
    picture.bind(1);
    pass(blurred, sharpened);
    picture.unbind();
    sharper->unbind();

    const Picture computedRows = blurPass(original, WEIGHTS, 1, 0);
    const Picture computed = blurPass(computedRows, WEIGHTS, 0, 1);
    expectAlike(pictureOfImage(rows), computedRows, 1);
    expectAlike(pictureOfImage(blurred), computed, 2);
    expectAlike(pictureOfImage(sharpened), sharpen(original, computed), 3);
    EXPECT_NE(computedRows, original);
    EXPECT_NE(computed, computedRows);
    EXPECT_NE(sharpen(original, computed), original);
    EXPECT_EQ(pictureOfImage(picture), original) << "what is only read stays as it is";
}

} // namespace
} // namespace tavo
