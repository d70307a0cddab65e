#include <array>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/images/RGBACubeMap.h"
#include "tavo/base/images/RGBAImage.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/Picture.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/textures/texels.h"
#include "tests/vireo/textures/textureCalls.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"
#include "vireo/textures/GLTextureCube.h"

#include <GL/glu.h>

namespace tavo {
namespace {

using testing::ElementsAre;

// A texture with its protected parts in reach.
class OpenTextureCube : public GLTextureCube
{
public:
    using GLTextureCube::format;
    using GLTextureCube::GLTextureCube;
    using GLTextureCube::m_NumComponents;
    using GLTextureCube::numComponents;
    using GLTextureCube::reserved;
    using GLTextureCube::size;
};

Calls creationCalls(const GLTexture& texture, const Calls& uploads)
{
    return callsAfterBinding(texture, "GL_TEXTURE_CUBE_MAP", NEAREST, uploads);
}

// Of size x size texels without data.
Calls emptyUploadCalls(const std::string& format, const std::string& size)
{
    Calls calls;
    for (const char* face : {"POSITIVE_X", "POSITIVE_Y", "POSITIVE_Z", "NEGATIVE_X", "NEGATIVE_Y", "NEGATIVE_Z"})
        calls.push_back(std::string("glTexImage2D(GL_TEXTURE_CUBE_MAP_") + face + ", 0, " + format + ", " + size +
                        ", " + size + ", 0, " + format + ", GL_UNSIGNED_BYTE, null)");
    return calls;
}

// A face as one sees it from the middle of the cube: where one looks, and what is up there so that the face's first row
// is at the bottom and its first column on the left.
struct Face
{
    RGBACubeMap::Face image;
    GLenum target;
    const char* targetName;
    void (GLTextureCube::*set)(char*, bool);
    std::array<double, 3> direction;
    std::array<double, 3> up;
};

const Face FACES[] = {
    {RGBACubeMap::POSITIVE_X, GL_TEXTURE_CUBE_MAP_POSITIVE_X, "GL_TEXTURE_CUBE_MAP_POSITIVE_X",
        &GLTextureCube::setPositiveX, {1, 0, 0}, {0, -1, 0}},
    {RGBACubeMap::NEGATIVE_X, GL_TEXTURE_CUBE_MAP_NEGATIVE_X, "GL_TEXTURE_CUBE_MAP_NEGATIVE_X",
        &GLTextureCube::setNegativeX, {-1, 0, 0}, {0, -1, 0}},
    {RGBACubeMap::POSITIVE_Y, GL_TEXTURE_CUBE_MAP_POSITIVE_Y, "GL_TEXTURE_CUBE_MAP_POSITIVE_Y",
        &GLTextureCube::setPositiveY, {0, 1, 0}, {0, 0, 1}},
    {RGBACubeMap::NEGATIVE_Y, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, "GL_TEXTURE_CUBE_MAP_NEGATIVE_Y",
        &GLTextureCube::setNegativeY, {0, -1, 0}, {0, 0, -1}},
    {RGBACubeMap::POSITIVE_Z, GL_TEXTURE_CUBE_MAP_POSITIVE_Z, "GL_TEXTURE_CUBE_MAP_POSITIVE_Z",
        &GLTextureCube::setPositiveZ, {0, 0, 1}, {0, -1, 0}},
    {RGBACubeMap::NEGATIVE_Z, GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, "GL_TEXTURE_CUBE_MAP_NEGATIVE_Z",
        &GLTextureCube::setNegativeZ, {0, 0, -1}, {0, -1, 0}},
};

constexpr unsigned int SIZE = 16;

// A picture of its own for each face: blue tells the face, red the column, green the row.
RGBAImage makeFaceImage(RGBACubeMap::Face face, unsigned int size = SIZE)
{
    RGBAImage image(size, size);
    for (unsigned int y = 0; y < size; ++y)
        for (unsigned int x = 0; x < size; ++x)
            image.at(x, y) = RGBAImage::Pixel(5 * x, 7 * y, 40 * face + 20, 200 + face);
    return image;
}

RGBACubeMap makeCubeMap(unsigned int size = SIZE)
{
    RGBACubeMap cubeMap;
    for (const Face& face : FACES)
        cubeMap.getImage(face.image) = makeFaceImage(face.image, size);
    return cubeMap;
}

unsigned char* bytesOf(RGBAImage& image)
{
    return image.getPixels().data()->data();
}

class GLTextureCubeGLTest : public ContextTest
{
protected:
    // The environment as it is seen from its middle, a right angle wide: just one face of it.
    Picture lookAt(const Face& face)
    {
        glViewport(0, 0, SIZE, SIZE);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(90, 1, 0.1, 10);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(0, 0, 0, face.direction[0], face.direction[1], face.direction[2], face.up[0], face.up[1], face.up[2]);
        drawEnvironment();
        return readPixels(SIZE, SIZE);
    }

    Picture imageOf(RGBACubeMap::Face face)
    {
        RGBAImage image = makeFaceImage(face);
        return pictureOf(bytesOf(image), SIZE, SIZE, 4);
    }

private:
    // A cube around the origin, whose positions are the directions in which the texture is looked up.
    static void drawEnvironment()
    {
        constexpr int quads[6][4][3] = {
            {{1, -1, -1}, {1, 1, -1}, {1, 1, 1}, {1, -1, 1}},
            {{-1, -1, -1}, {-1, 1, -1}, {-1, 1, 1}, {-1, -1, 1}},
            {{-1, 1, -1}, {1, 1, -1}, {1, 1, 1}, {-1, 1, 1}},
            {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}},
            {{-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}},
            {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1}},
        };
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glColor4ubv(FRAGMENT.data());
        glEnable(GL_TEXTURE_CUBE_MAP);
        glBegin(GL_QUADS);
        for (const auto& quad : quads)
            for (const auto& corner : quad) {
                glTexCoord3i(corner[0], corner[1], corner[2]);
                glVertex3i(corner[0], corner[1], corner[2]);
            }
        glEnd();
        glDisable(GL_TEXTURE_CUBE_MAP);
    }
};

TEST_F(GLTextureCubeGLTest, StartsEmpty)
{
    std::unique_ptr<OpenTextureCube> texture;
    EXPECT_THAT(
        callsOf([&] { texture = std::make_unique<OpenTextureCube>(context()); }), ElementsAre("glGenTextures(1, ptr)"));
    EXPECT_EQ(texture->getTextureTarget(), 0x8513u);
    EXPECT_EQ(texture->size, 0u);
    EXPECT_EQ(texture->reserved, 0u);
    EXPECT_EQ(texture->numComponents, 0u);
    EXPECT_EQ(texture->format, 0u);
    EXPECT_EQ(texture->getSizeInBytes(), 0u);
    EXPECT_EQ(texture->getFormat(), 0u);
}

TEST_F(GLTextureCubeGLTest, IsCreatedWithUndefinedFaces)
{
    OpenTextureCube texture(context());
    EXPECT_EQ(callsOf([&] { texture.create(256, 4); }), creationCalls(texture, emptyUploadCalls("GL_RGBA", "256")));
    EXPECT_EQ(texture.size, 256u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 0u);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 1572864u);
    EXPECT_EQ(texture.getFormat(), 0u) << "the base's format is not this texture's";
    for (const Face& face : FACES)
        EXPECT_EQ(getLevelParameter(face.target, GL_TEXTURE_WIDTH), 256) << face.targetName;
}

TEST_F(GLTextureCubeGLTest, HasAFormatForEachNumberOfComponents)
{
    const std::vector<std::pair<unsigned int, std::string>> formats{{1, "GL_LUMINANCE"}, {2, "GL_LUMINANCE_ALPHA"},
        {3, "GL_RGB"}, {4, "GL_RGBA"}, {0, "GL_RGBA"}, {5, "GL_RGBA"}, {0xFFFFFFFF, "GL_RGBA"}};
    for (const auto& [components, format] : formats) {
        OpenTextureCube texture(context());
        EXPECT_EQ(callsOf([&, number = components] { texture.create(8, number); }),
            creationCalls(texture, emptyUploadCalls(format, "8")));
        EXPECT_EQ(texture.numComponents, components);
        EXPECT_EQ(texture.getSizeInBytes(), components * 384);
    }
}

// Deliberate: unlike other textures, a cube does not keep its former format.
TEST_F(GLTextureCubeGLTest, TakesTooManyComponentsForFour)
{
    GLTextureCube texture(context());
    texture.create(64, 1);
    EXPECT_EQ(callsOf([&] { texture.create(64, 5); }), creationCalls(texture, emptyUploadCalls("GL_RGBA", "64")));
    EXPECT_EQ(texture.getSizeInBytes(), 122880u);
}

TEST_F(GLTextureCubeGLTest, EstimatesItsSizeInThirtyTwoBits)
{
    GLTextureCube texture(context());
    texture.create(40000, 4);
    EXPECT_EQ(texture.getSizeInBytes(), 4040261632u) << "38400000000 modulo 2^32";
    EXPECT_THAT(drainErrors(), testing::Not(testing::IsEmpty())) << "no driver makes that";
}

TEST_F(GLTextureCubeGLTest, StaysBoundOnUnitZero)
{
    RGBACubeMap cubeMap = makeCubeMap();
    const auto expectBoundAfter = [this](auto create) {
        GLTextureCube texture(context());
        GLTexture::setStage(3);
        create(texture);
        EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
        EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_CUBE_MAP)), texture.getTextureID());
    };
    expectBoundAfter([](GLTextureCube& texture) { texture.create(1, 1); });
    expectBoundAfter([&](GLTextureCube& texture) { texture.createFromImage(cubeMap); });
}

TEST_F(GLTextureCubeGLTest, IsMadeFromACubeMap)
{
    RGBACubeMap cubeMap = makeCubeMap(128);
    OpenTextureCube texture(context());
    CallRecorder recorder;
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::POSITIVE_X)), "positive x");
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::NEGATIVE_X)), "negative x");
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::POSITIVE_Y)), "positive y");
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::NEGATIVE_Y)), "negative y");
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::POSITIVE_Z)), "positive z");
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::NEGATIVE_Z)), "negative z");
    texture.createFromImage(cubeMap);
    const auto upload = [](const std::string& face, const std::string& data) {
        return "glTexImage2D(GL_TEXTURE_CUBE_MAP_" + face + ", 0, GL_RGBA, 128, 128, 0, GL_RGBA, GL_UNSIGNED_BYTE, " +
               data + ")";
    };
    expectCalls(
        recorder, creationCalls(texture, {upload("POSITIVE_X", "positive x"), upload("POSITIVE_Y", "positive y"),
                                             upload("POSITIVE_Z", "positive z"), upload("NEGATIVE_X", "negative x"),
                                             upload("NEGATIVE_Y", "negative y"), upload("NEGATIVE_Z", "negative z")}));
    EXPECT_EQ(texture.size, 128u);
    EXPECT_EQ(texture.numComponents, 4u);
    EXPECT_EQ(texture.m_NumComponents, 0u);
    EXPECT_EQ(texture.format, static_cast<unsigned int>(GL_RGBA));
    EXPECT_EQ(texture.getSizeInBytes(), 393216u);
}

TEST_F(GLTextureCubeGLTest, TakesImagesAsTheyAre)
{
    RGBACubeMap cubeMap;
    for (const Face& face : FACES) {
        cubeMap.getImage(face.image).resize(1, 1);
        cubeMap.getImage(face.image).at(0, 0) = RGBAImage::Pixel(0x11 + face.image, 0x22, 0x33, 0x44);
    }
    GLTextureCube texture(context());
    texture.createFromImage(cubeMap);
    for (const Face& face : FACES)
        EXPECT_THAT(readTexels(face.target, GL_RGBA, 4), ElementsAre(0x11 + face.image, 0x22, 0x33, 0x44))
            << face.targetName;
}

TEST_F(GLTextureCubeGLTest, TakesItsSizeFromThePositiveX)
{
    RGBACubeMap cubeMap = makeCubeMap(8);
    cubeMap.getImage(RGBACubeMap::POSITIVE_X).resize(4, 4);
    OpenTextureCube texture(context());
    texture.createFromImage(cubeMap);
    EXPECT_EQ(texture.size, 4u);
    EXPECT_EQ(texture.getSizeInBytes(), 384u);
    for (const Face& face : FACES)
        EXPECT_EQ(getLevelParameter(face.target, GL_TEXTURE_WIDTH), 4) << face.targetName;
}

TEST_F(GLTextureCubeGLTest, TakesACubeMapWithoutPixels)
{
    RGBACubeMap cubeMap;
    GLTextureCube texture(context());
    EXPECT_EQ(
        callsOf([&] { texture.createFromImage(cubeMap); }), creationCalls(texture, emptyUploadCalls("GL_RGBA", "0")));
    EXPECT_EQ(texture.getSizeInBytes(), 0u);
}

TEST_F(GLTextureCubeGLTest, HandsOnNullForAFaceWithoutPixels)
{
    RGBACubeMap cubeMap;
    cubeMap.getImage(RGBACubeMap::POSITIVE_X) = makeFaceImage(RGBACubeMap::POSITIVE_X);
    GLTextureCube texture(context());
    CallRecorder recorder;
    recorder.namePointer(bytesOf(cubeMap.getImage(RGBACubeMap::POSITIVE_X)), "positive x");
    texture.createFromImage(cubeMap);
    Calls uploads = emptyUploadCalls("GL_RGBA", "16");
    uploads[0].replace(uploads[0].find("null"), 4, "positive x");
    expectCalls(recorder, creationCalls(texture, uploads));
}

// There may be no memory for so many zeros.
TEST_F(GLTextureCubeGLTest, HandsOnNullForTooFewPixelsOfASizeThatDriversRefuse)
{
    constexpr unsigned int HUGE_SIZE = 1u << 20;
    RGBACubeMap cubeMap = makeCubeMap();
    cubeMap.getImage(RGBACubeMap::POSITIVE_X).resize(HUGE_SIZE, 1);
    GLTextureCube texture(context());
    CallRecorder recorder;
    texture.createFromImage(cubeMap);
    EXPECT_EQ(recorder.calls().back(), "glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, 0, GL_RGBA, 1048576, 1048576, 0, "
                                       "GL_RGBA, GL_UNSIGNED_BYTE, null)");
    EXPECT_NE(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// Which has as many pixels as the face, and they are read as they lie there.
TEST_F(GLTextureCubeGLTest, TakesAnImageOfAnotherShapeAsItIs)
{
    RGBACubeMap cubeMap = makeCubeMap(2);
    RGBAImage& wide = cubeMap.getImage(RGBACubeMap::NEGATIVE_Z);
    wide.resize(4, 1);
    for (unsigned int x = 0; x < 4; ++x)
        wide.at(x, 0) = RGBAImage::Pixel(x, 0, 0, 0);
    GLTextureCube texture(context());
    CallRecorder recorder;
    recorder.namePointer(bytesOf(wide), "wide");
    texture.createFromImage(cubeMap);
    EXPECT_EQ(recorder.calls().back(),
        "glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, wide)");
    EXPECT_THAT(readTexels(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, GL_RGBA, 16),
        ElementsAre(0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0));
}

TEST_F(GLTextureCubeGLTest, HasZerosWhereAnImageHasTooFewPixels)
{
    RGBACubeMap cubeMap = makeCubeMap(2);
    for (const RGBACubeMap::Face face : {RGBACubeMap::NEGATIVE_Y, RGBACubeMap::NEGATIVE_Z}) {
        cubeMap.getImage(face).resize(3, 1);
        for (unsigned int x = 0; x < 3; ++x)
            cubeMap.getImage(face).at(x, 0) = RGBAImage::Pixel(face, x, 2, 3);
    }
    const RGBACubeMap before = cubeMap;
    GLTextureCube texture(context());
    texture.createFromImage(cubeMap);
    EXPECT_THAT(readTexels(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, GL_RGBA, 16),
        ElementsAre(3, 0, 2, 3, 3, 1, 2, 3, 3, 2, 2, 3, 0, 0, 0, 0));
    EXPECT_THAT(readTexels(GL_TEXTURE_CUBE_MAP_NEGATIVE_Z, GL_RGBA, 16),
        ElementsAre(5, 0, 2, 3, 5, 1, 2, 3, 5, 2, 2, 3, 0, 0, 0, 0));
    EXPECT_EQ(
        cubeMap.getImage(RGBACubeMap::NEGATIVE_Y).getPixels(), before.getImage(RGBACubeMap::NEGATIVE_Y).getPixels());
}

// Its width alone counts: a strip makes faces of which it fills the first rows.
TEST_F(GLTextureCubeGLTest, TakesAPositiveXThatIsTooWide)
{
    RGBACubeMap cubeMap = makeCubeMap();
    cubeMap.getImage(RGBACubeMap::POSITIVE_X).resize(2 * SIZE, SIZE);
    OpenTextureCube texture(context());
    texture.createFromImage(cubeMap);
    EXPECT_EQ(texture.size, 2 * SIZE);
    Bytes expected(4 * SIZE * SIZE * 4);
    const RGBAImage image = makeFaceImage(RGBACubeMap::NEGATIVE_X);
    std::memcpy(expected.data(), image.getPixels().data(), SIZE * SIZE * 4);
    EXPECT_EQ(readTexels(GL_TEXTURE_CUBE_MAP_NEGATIVE_X, GL_RGBA, expected.size()), expected);
}

TEST_F(GLTextureCubeGLTest, IsDrawnAsAnEnvironmentWithEachFaceAtItsPlace)
{
    RGBACubeMap cubeMap = makeCubeMap();
    GLTextureCube texture(context());
    texture.createFromImage(cubeMap);
    for (const Face& face : FACES)
        EXPECT_EQ(lookAt(face), imageOf(face.image)) << face.targetName;
}

TEST_F(GLTextureCubeGLTest, DrawsWhatEachNumberOfComponentsMeans)
{
    for (unsigned int components = 1; components <= 4; ++components) {
        GLTextureCube texture(context());
        texture.create(SIZE, components);
        Bytes texels = makeBytes(SIZE * SIZE * components);
        for (const Face& face : FACES) {
            texels[0] = static_cast<unsigned char>(40 * face.image);
            (texture.*face.set)(asChars(texels), false);
            EXPECT_EQ(lookAt(face), pictureOf(texels.data(), SIZE, SIZE, components))
                << components << " components, " << face.targetName;
        }
    }
}

TEST_F(GLTextureCubeGLTest, ReplacesAFaceByOneCall)
{
    GLTextureCube texture(context());
    texture.create(1, 4);
    for (const Face& face : FACES) {
        const std::string upload = std::string("glTexImage2D(") + face.targetName + ", 0, GL_RGBA, 1, 1, 0, ";
        EXPECT_THAT(callsWithData([&] { (texture.*face.set)(DATA, false); }),
            ElementsAre(upload + "GL_RGBA, GL_UNSIGNED_BYTE, data)"));
        EXPECT_THAT(callsWithData([&] { (texture.*face.set)(DATA, true); }),
            ElementsAre(upload + "GL_BGRA, GL_UNSIGNED_BYTE, data)"));
    }
}

TEST_F(GLTextureCubeGLTest, ReplacesAFaceInItsOwnFormat)
{
    GLTextureCube texture(context());
    texture.create(64, 1);
    EXPECT_THAT(callsOf([&] { texture.setPositiveZ(nullptr, false); }),
        ElementsAre("glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_Z, 0, GL_LUMINANCE, 64, 64, 0, GL_LUMINANCE, "
                    "GL_UNSIGNED_BYTE, null)"));
    EXPECT_THAT(callsOf([&] { texture.setNegativeY(nullptr, true); }),
        ElementsAre("glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, 0, GL_LUMINANCE, 64, 64, 0, GL_BGRA, "
                    "GL_UNSIGNED_BYTE, null)"));
}

TEST_F(GLTextureCubeGLTest, ReplacesAFaceOfWhateverIsBound)
{
    GLTextureCube texture(context());
    GLTextureCube bound(context());
    texture.create(1, 4);
    bound.create(1, 4);
    Bytes texel{1, 2, 3, 4};
    texture.setPositiveX(asChars(texel), false);
    EXPECT_EQ(readTexels(GL_TEXTURE_CUBE_MAP_POSITIVE_X, GL_RGBA, 4), texel) << "the other one, which is bound";
}

TEST_F(GLTextureCubeGLTest, ReplacesFacesInBothByteOrders)
{
    RGBACubeMap blank;
    for (const Face& face : FACES)
        blank.getImage(face.image).resize(SIZE, SIZE);
    for (const bool bgra : {false, true}) {
        GLTextureCube texture(context());
        texture.createFromImage(blank);
        for (const Face& face : FACES) {
            RGBAImage image = makeFaceImage(face.image);
            if (bgra)
                for (RGBAImage::Pixel& pixel : image.getPixels())
                    std::swap(pixel[0], pixel[2]);
            (texture.*face.set)(reinterpret_cast<char*>(bytesOf(image)), bgra);
            EXPECT_EQ(lookAt(face), imageOf(face.image)) << face.targetName;
        }
        for (const Face& face : FACES)
            EXPECT_EQ(lookAt(face), imageOf(face.image)) << face.targetName << ", with all faces replaced";
    }
}

TEST_F(GLTextureCubeGLTest, LeavesTheOtherFacesWhenOneIsReplaced)
{
    RGBACubeMap cubeMap = makeCubeMap();
    GLTextureCube texture(context());
    texture.createFromImage(cubeMap);
    Bytes black(SIZE * SIZE * 4);
    texture.setNegativeX(asChars(black), true);
    for (const Face& face : FACES)
        EXPECT_EQ(lookAt(face), face.image == RGBACubeMap::NEGATIVE_X ? Picture(SIZE, SIZE) : imageOf(face.image))
            << face.targetName;
}

TEST_F(GLTextureCubeGLTest, IsCopiedFieldByField)
{
    auto inactive = makeContext();
    OpenTextureCube original(inactive.get());
    original.create(4, 2);
    original.reserved = 7;
    Undestroyed<OpenTextureCube> copy(original);
    Undestroyed<OpenTextureCube> assigned(inactive.get());
    *assigned = original;
    for (const OpenTextureCube* texture : {&*copy, &*assigned}) {
        EXPECT_EQ(texture->getTextureID(), original.getTextureID());
        EXPECT_EQ(texture->getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_CUBE_MAP));
        EXPECT_EQ(texture->getSizeInBytes(), 192u);
        EXPECT_EQ(texture->size, 4u);
        EXPECT_EQ(texture->reserved, 7u);
        EXPECT_EQ(texture->numComponents, 2u);
        EXPECT_EQ(texture->format, static_cast<unsigned int>(GL_LUMINANCE_ALPHA));
    }
    inactive.reset(); // tells both that were registered
}

} // namespace
} // namespace tavo
