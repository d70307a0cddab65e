// Float rectangles on drivers that list other extensions than the one at hand.
#include <gmock/gmock.h>
#include <string>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/objects/PException.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {
namespace {

class FloatFormatsGLTest : public GLExtensionContextTest
{
protected:
    // What a float rectangle of that many components is uploaded by.
    std::string upload(unsigned int components, bool use32Bit)
    {
        GLTextureRect texture(context());
        return callsOf([&] { texture.createFloatTextureFromMemory(2, 1, components, nullptr, use32Bit); }).back();
    }

    static std::string uploadOf(const std::string& internalFormat, const std::string& clientFormat)
    {
        return "glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, " + internalFormat + ", 2, 1, 0, " + clientFormat +
               ", GL_FLOAT, null)";
    }
};

TEST_F(FloatFormatsGLTest, AreThoseOfNVIDIAWhereTheDriverListsThem)
{
    if (!wrapContextWithExtensions("+GL_NV_float_buffer +GL_ARB_texture_float"))
        return;
    EXPECT_EQ(upload(1, false), uploadOf("GL_FLOAT_R16_NV", "GL_LUMINANCE"));
    EXPECT_EQ(upload(2, false), uploadOf("GL_FLOAT_RG16_NV", "GL_LUMINANCE_ALPHA"));
    EXPECT_EQ(upload(3, false), uploadOf("GL_FLOAT_RGB16_NV", "GL_RGB"));
    EXPECT_EQ(upload(4, false), uploadOf("GL_FLOAT_RGBA16_NV", "GL_RGBA"));
    EXPECT_EQ(upload(1, true), uploadOf("GL_FLOAT_R32_NV", "GL_LUMINANCE"));
    EXPECT_EQ(upload(2, true), uploadOf("GL_FLOAT_RG32_NV", "GL_LUMINANCE_ALPHA"));
    EXPECT_EQ(upload(3, true), uploadOf("GL_FLOAT_RGB32_NV", "GL_RGB"));
    EXPECT_EQ(upload(4, true), uploadOf("GL_FLOAT_RGBA32_NV", "GL_RGBA"));
    drainErrors(); // of a driver that only says that it has them
}

TEST_F(FloatFormatsGLTest, AreMissedByImagesWhereTheDriverListsNone)
{
    if (!wrapContextWithExtensions("-GL_NV_float_buffer -GL_ARB_texture_float"))
        return;
    context()->activate();
    RGBAFloat32Image picture(7, 5);
    GLRenderTextureCache cache(context());
    for (const bool float32 : {false, true}) {
        GLImage image;
        EXPECT_THAT([&] { image.setup(&cache, &picture, float32); },
            testing::ThrowsMessage<PException>(
                "GLImage::setup() - the driver refused a render texture of 7 x 5 texels of floats: it lists neither "
                "GL_ARB_texture_float nor GL_NV_float_buffer"));
        EXPECT_EQ(image.getRenderTexture(), nullptr);
    }
    drainErrors(); // of the formats
}

} // namespace
} // namespace tavo
