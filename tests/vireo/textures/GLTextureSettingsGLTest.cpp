#include <gmock/gmock.h>
#include <string>
#include <vector>

#include "tavo/base/objects/Card32.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {
namespace {

using testing::ElementsAre;

constexpr GLenum TARGETS[] = {GL_TEXTURE_2D, GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP};

// Settings of the fields that set reads.
GLTextureSettings makeSettings(Card32 minFilter, Card32 mipmapFilter, Card32 wrapS, Card32 wrapT)
{
    GLTextureSettings settings;
    settings.m_MinFilter = minFilter;
    settings.m_MipmapFilter = mipmapFilter;
    settings.m_WrapS = wrapS;
    settings.m_WrapT = wrapT;
    return settings;
}

// Starts with a texture bound to every target.
class GLTextureSettingsGLTest : public GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (IsSkipped())
            return;
        GLuint texture = 0;
        for (const GLenum target : TARGETS) {
            glGenTextures(1, &texture);
            glBindTexture(target, texture);
        }
    }

    // What the driver holds of the texture that is bound to the target.
    static GLenum getParameter(GLenum target, GLenum parameter)
    {
        GLint value = 0;
        glGetTexParameteriv(target, parameter, &value);
        return static_cast<GLenum>(value);
    }

    static std::vector<GLenum> getParameters(GLenum target)
    {
        return {getParameter(target, GL_TEXTURE_MAG_FILTER), getParameter(target, GL_TEXTURE_MIN_FILTER),
            getParameter(target, GL_TEXTURE_WRAP_S), getParameter(target, GL_TEXTURE_WRAP_T),
            getParameter(target, GL_TEXTURE_WRAP_R)};
    }

    // What set makes of the settings: the magnification filter, the minification filter, the wrap modes along S and T.
    static std::vector<GLenum> getEffect(const GLTextureSettings& settings, bool mipmapped)
    {
        settings.set(GL_TEXTURE_2D, mipmapped);
        std::vector<GLenum> parameters = getParameters(GL_TEXTURE_2D);
        parameters.pop_back();
        return parameters;
    }
};

TEST_F(GLTextureSettingsGLTest, SetsFiltersAndTwoWrapModes)
{
    EXPECT_EQ(callsOf([] { GLTextureSettings().set(GL_TEXTURE_2D, false); }),
        (Calls{"glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)"}));
    EXPECT_THAT(getEffect(GLTextureSettings(), false), ElementsAre(GL_LINEAR, GL_LINEAR, GL_REPEAT, GL_REPEAT));
}

TEST_F(GLTextureSettingsGLTest, SetsEachFieldAtItsPlace)
{
    EXPECT_EQ(callsOf([] { makeSettings(2, 1, 3, 4).set(GL_TEXTURE_3D, true); }),
        (Calls{"glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_NEAREST_MIPMAP_LINEAR)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER)"}));
    EXPECT_THAT(getParameters(GL_TEXTURE_3D),
        ElementsAre(GL_NEAREST, GL_NEAREST_MIPMAP_LINEAR, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_BORDER, GL_REPEAT));
}

// Deliberate: m_MagFilter is kept with the settings, but magnification follows m_MinFilter.
TEST_F(GLTextureSettingsGLTest, MagnifiesByTheFilterForMinification)
{
    GLTextureSettings settings;
    settings.m_MinFilter = GLTextureSettings::FILTER_NEAREST;
    settings.m_MagFilter = GLTextureSettings::FILTER_LINEAR;
    EXPECT_EQ(getEffect(settings, false)[0], static_cast<GLenum>(GL_NEAREST));
    settings.m_MinFilter = GLTextureSettings::FILTER_LINEAR;
    settings.m_MagFilter = GLTextureSettings::FILTER_NEAREST;
    EXPECT_EQ(getEffect(settings, false)[0], static_cast<GLenum>(GL_LINEAR));
}

// Deliberate: m_WrapR is kept with the settings, but never set.
TEST_F(GLTextureSettingsGLTest, NeverSetsTheWrapModeAlongR)
{
    GLTextureSettings settings;
    for (const Card32 wrap : {1u, 2u, 3u, 4u, 0u}) {
        settings.m_WrapR = wrap;
        for (const GLenum target : {GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP}) {
            glTexParameteri(target, GL_TEXTURE_WRAP_R, GL_MIRRORED_REPEAT);
            settings.set(target, false);
            EXPECT_EQ(getParameter(target, GL_TEXTURE_WRAP_R), static_cast<GLenum>(GL_MIRRORED_REPEAT));
        }
    }
}

TEST_F(GLTextureSettingsGLTest, FiltersWithinAndBetweenLevels)
{
    const auto minFilter = [](Card32 within, Card32 between, bool mipmapped) {
        return getEffect(makeSettings(within, between, 1, 1), mipmapped)[1];
    };
    EXPECT_EQ(minFilter(1, 1, true), static_cast<GLenum>(GL_LINEAR_MIPMAP_LINEAR));
    EXPECT_EQ(minFilter(1, 2, true), static_cast<GLenum>(GL_LINEAR_MIPMAP_NEAREST));
    EXPECT_EQ(minFilter(2, 1, true), static_cast<GLenum>(GL_NEAREST_MIPMAP_LINEAR));
    EXPECT_EQ(minFilter(2, 2, true), static_cast<GLenum>(GL_NEAREST_MIPMAP_NEAREST));
    for (const Card32 between : {1u, 2u}) {
        EXPECT_EQ(minFilter(1, between, false), static_cast<GLenum>(GL_LINEAR));
        EXPECT_EQ(minFilter(2, between, false), static_cast<GLenum>(GL_NEAREST));
    }
}

TEST_F(GLTextureSettingsGLTest, TakesUnknownFiltersForNearest)
{
    for (const Card32 filter : {0u, 3u, 0x2601u, 0xFFFFFFFFu}) {
        EXPECT_THAT(getEffect(makeSettings(filter, filter, 1, 1), true),
            ElementsAre(GL_NEAREST, GL_NEAREST_MIPMAP_NEAREST, GL_REPEAT, GL_REPEAT));
        EXPECT_EQ(getEffect(makeSettings(filter, filter, 1, 1), false)[1], static_cast<GLenum>(GL_NEAREST));
    }
}

TEST_F(GLTextureSettingsGLTest, HasFourWrapModes)
{
    const auto wraps = [](Card32 wrapS, Card32 wrapT) {
        const std::vector<GLenum> effect = getEffect(makeSettings(1, 1, wrapS, wrapT), false);
        return std::vector<GLenum>{effect[2], effect[3]};
    };
    EXPECT_THAT(wraps(2, 1), ElementsAre(GL_CLAMP, GL_REPEAT));
    EXPECT_THAT(wraps(1, 2), ElementsAre(GL_REPEAT, GL_CLAMP));
    EXPECT_THAT(wraps(3, 4), ElementsAre(GL_CLAMP_TO_EDGE, GL_CLAMP_TO_BORDER));
    EXPECT_THAT(wraps(4, 3), ElementsAre(GL_CLAMP_TO_BORDER, GL_CLAMP_TO_EDGE));
}

TEST_F(GLTextureSettingsGLTest, TakesUnknownWrapModesForRepeat)
{
    for (const Card32 wrap : {0u, 5u, 0xFFFFFFFFu})
        EXPECT_THAT(
            getEffect(makeSettings(1, 1, wrap, wrap), false), ElementsAre(GL_LINEAR, GL_LINEAR, GL_REPEAT, GL_REPEAT));
}

TEST_F(GLTextureSettingsGLTest, LeavesGLErrorsPending)
{
    GLTextureSettings().set(GL_TEXTURE_RECTANGLE_ARB, true); // Rectangles have no levels and cannot repeat.
    EXPECT_THAT(drainErrors(), testing::Contains(GL_INVALID_ENUM));
}

TEST_F(GLTextureSettingsGLTest, HasDefaultsForColourTextures)
{
    EXPECT_EQ(callsOf([] { GLTextureSettings::setDefaults(GL_TEXTURE_2D, true); }),
        (Calls{"glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)"}));
    GLTextureSettings::setDefaults(GL_TEXTURE_3D, false);
    EXPECT_THAT(getParameters(GL_TEXTURE_3D), ElementsAre(GL_LINEAR, GL_LINEAR, GL_REPEAT, GL_REPEAT, GL_REPEAT));
}

TEST_F(GLTextureSettingsGLTest, HasDefaultsForRectanglesThatEndAtTheirEdges)
{
    EXPECT_EQ(callsOf([] { GLTextureSettings::setDefaults(GL_TEXTURE_RECTANGLE_ARB, false); }),
        (Calls{"glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)"}));
}

TEST_F(GLTextureSettingsGLTest, HasDefaultsForExactValuesOnEveryTarget)
{
    EXPECT_EQ(callsOf([] { GLTextureSettings::setFloatDefaults(GL_TEXTURE_2D); }),
        (Calls{"glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE)"}));
    for (const GLenum target : TARGETS) {
        GLTextureSettings::setFloatDefaults(target);
        EXPECT_THAT(getParameters(target),
            ElementsAre(GL_NEAREST, GL_NEAREST, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE));
    }
}

TEST_F(GLTextureSettingsGLTest, HasDefaultsForCubeMaps)
{
    EXPECT_EQ(callsOf([] { GLTextureSettings::setCubeDefaults(); }),
        (Calls{"glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
            "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
            "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)",
            "glTexParameteri(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_WRAP_R, GL_CLAMP_TO_EDGE)"}));
    EXPECT_THAT(getParameters(GL_TEXTURE_CUBE_MAP),
        ElementsAre(GL_NEAREST, GL_NEAREST, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE, GL_CLAMP_TO_EDGE));
}

TEST_F(GLTextureSettingsGLTest, BindsNothing)
{
    GLint before = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &before);
    GLTextureSettings().set(GL_TEXTURE_2D, true);
    GLTextureSettings::setDefaults(GL_TEXTURE_2D, true);
    GLTextureSettings::setFloatDefaults(GL_TEXTURE_2D);
    GLint after = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &after);
    EXPECT_EQ(after, before);
}

} // namespace
} // namespace tavo
