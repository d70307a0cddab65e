#include <gmock/gmock.h>
#include <ios>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/CallRecorder.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/Undestroyed.h"
#include "tests/vireo/textures/texels.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/textures/GLTexture.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A texture with its protected parts in reach.
class OpenTexture : public GLTexture
{
public:
    explicit OpenTexture(GLContext* context, unsigned int target = GL_TEXTURE_2D)
        : GLTexture(context)
    {
        m_TextureTarget = target;
    }

    using GLTexture::m_Format;
    using GLTexture::m_Mipmapped;
    using GLTexture::m_NumComponents;
    using GLTexture::m_SizeInBytes;
    using GLTexture::m_TextureTarget;
    using GLTexture::onDeleteContext;
};

std::string bindCall(const char* target, unsigned int name)
{
    return std::string("glBindTexture(") + target + ", " + std::to_string(name) + ")";
}

std::string deleteCall(const GLTexture& texture)
{
    return "glDeleteTextures(1, (" + std::to_string(texture.getTextureID()) + "))";
}

class GLTextureGLTest : public ContextTest
{
protected:
    // A texture that has been bound, without which GL does not know its name as a texture's.
    static std::unique_ptr<OpenTexture> makeTexture(GLContext* context)
    {
        auto texture = std::make_unique<OpenTexture>(context);
        texture->bind(0);
        texture->unbind(0);
        return texture;
    }
};

TEST_F(GLTextureGLTest, StartsWithANameAndNothingElse)
{
    std::unique_ptr<GLTexture> texture;
    EXPECT_THAT(
        callsOf([&] { texture = std::make_unique<GLTexture>(context()); }), ElementsAre("glGenTextures(1, ptr)"));
    EXPECT_EQ(texture->getContext(), context());
    EXPECT_NE(texture->getTextureID(), 0u);
    EXPECT_EQ(texture->getTextureTarget(), 0u);
    EXPECT_EQ(texture->getSizeInBytes(), 0u);
    EXPECT_EQ(texture->getFormat(), 0u);
    EXPECT_FALSE(texture->isFloatTexture());

    const OpenTexture other(context());
    EXPECT_NE(other.getTextureID(), texture->getTextureID());
    EXPECT_FALSE(other.m_Mipmapped);
    EXPECT_EQ(other.m_NumComponents, 0u);
}

TEST_F(GLTextureGLTest, HasGettersForItsFields)
{
    OpenTexture texture(context(), GL_TEXTURE_CUBE_MAP);
    texture.m_SizeInBytes = 12;
    texture.m_Format = GL_RGB;
    const OpenTexture& constant = texture;
    EXPECT_EQ(constant.getTextureTarget(), static_cast<unsigned int>(GL_TEXTURE_CUBE_MAP));
    EXPECT_EQ(constant.getSizeInBytes(), 12u);
    EXPECT_EQ(constant.getFormat(), static_cast<unsigned int>(GL_RGB));
}

TEST_F(GLTextureGLTest, BindsOnAUnitAndLeavesItActive)
{
    OpenTexture texture(context());
    EXPECT_THAT(callsOf([&] { texture.bind(3); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE3)", bindCall("GL_TEXTURE_2D", texture.getTextureID())));
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE3);
    EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_2D)), texture.getTextureID());
    GLTexture::setStage(0);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_2D), 0);
}

TEST_F(GLTextureGLTest, BindsToItsTarget)
{
    OpenTexture texture(context(), GL_TEXTURE_RECTANGLE_ARB);
    EXPECT_THAT(callsOf([&] { texture.bind(0); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE0)", bindCall("GL_TEXTURE_RECTANGLE_ARB", texture.getTextureID())));
    EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_RECTANGLE_ARB)), texture.getTextureID());
}

TEST_F(GLTextureGLTest, WritesSettingsWhenItIsBoundWithThem)
{
    OpenTexture texture(context());
    GLTextureSettings settings;
    settings.m_WrapS = GLTextureSettings::WRAP_CLAMP;
    EXPECT_THAT(callsOf([&] { texture.bind(settings, 3); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE3)", bindCall("GL_TEXTURE_2D", texture.getTextureID()),
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)"));
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE3);
}

TEST_F(GLTextureGLTest, AsksSettingsForMipmapFiltersWhenItIsMipmapped)
{
    OpenTexture texture(context(), GL_TEXTURE_3D);
    texture.m_Mipmapped = true;
    EXPECT_THAT(callsOf([&] { texture.bind(GLTextureSettings(), 1); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE1)", bindCall("GL_TEXTURE_3D", texture.getTextureID()),
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
            "glTexParameteri(GL_TEXTURE_3D, GL_TEXTURE_WRAP_T, GL_REPEAT)"));
}

TEST_F(GLTextureGLTest, UnbindsAndLeavesTheUnitActive)
{
    OpenTexture texture(context());
    texture.bind(2);
    texture.bind(1);
    EXPECT_THAT(callsOf([&] { texture.unbind(2); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE2)", "glBindTexture(GL_TEXTURE_2D, 0)"));
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE2);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_2D), 0);
    GLTexture::setStage(1);
    EXPECT_EQ(static_cast<unsigned int>(getInteger(GL_TEXTURE_BINDING_2D)), texture.getTextureID());
}

TEST_F(GLTextureGLTest, SelectsAUnit)
{
    EXPECT_THAT(callsOf([] { GLTexture::setStage(5); }), ElementsAre("glActiveTextureARB(GL_TEXTURE5)"));
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE5);
    EXPECT_THAT(callsOf([] { GLTexture::setStage(0); }), ElementsAre("glActiveTextureARB(GL_TEXTURE0)"));
}

TEST_F(GLTextureGLTest, KnowsTheFloatFormatsOfARB)
{
    OpenTexture texture(context());
    for (const unsigned int format : {0x881Eu, 0x8818u, 0x881Fu, 0x8819u, 0x881Bu, 0x8815u, 0x881Au, 0x8814u}) {
        texture.m_Format = format;
        EXPECT_TRUE(texture.isFloatTexture()) << std::hex << format;
    }
    const std::vector<unsigned int> others{0, GL_LUMINANCE, GL_RGBA, GL_RGBA8, GL_RGBA16, GL_ALPHA16F_ARB,
        GL_ALPHA32F_ARB, GL_INTENSITY16F_ARB, GL_INTENSITY32F_ARB, GL_FLOAT_R16_NV, GL_FLOAT_RG32_NV, GL_FLOAT_RGB16_NV,
        GL_FLOAT_RGBA16_NV, GL_FLOAT_RGBA32_NV};
    for (const unsigned int format : others) {
        texture.m_Format = format;
        EXPECT_FALSE(texture.isFloatTexture()) << std::hex << format;
    }
}

TEST_F(GLTextureGLTest, DeletesItsNameAtOnceWhileTheTreeIsActive)
{
    auto texture = makeTexture(context());
    const unsigned int name = texture->getTextureID();
    const std::string expected = deleteCall(*texture);
    EXPECT_TRUE(glIsTexture(name));
    EXPECT_THAT(callsOf([&] { texture.reset(); }), ElementsAre(expected));
    EXPECT_FALSE(glIsTexture(name));
}

TEST_F(GLTextureGLTest, QueuesItsNameWhileTheTreeIsNotActive)
{
    const auto inactive = makeContext();
    auto first = makeTexture(inactive.get());
    auto second = makeTexture(inactive.get());
    const unsigned int firstName = first->getTextureID();
    const unsigned int secondName = second->getTextureID();
    EXPECT_THAT(callsOf([&] {
        second.reset();
        first.reset();
    }),
        IsEmpty());
    EXPECT_TRUE(glIsTexture(firstName));
    EXPECT_THAT(callsOf([&] { inactive->activate(); }),
        ElementsAre("wglGetCurrentContext()",
            "glDeleteTextures(2, (" + std::to_string(secondName) + ", " + std::to_string(firstName) + "))"));
    EXPECT_FALSE(glIsTexture(firstName));
    EXPECT_FALSE(glIsTexture(secondName));
}

TEST_F(GLTextureGLTest, HandsItsNameOverOnceWhenTheContextDiesFirst)
{
    auto dying = makeContext();
    dying->activate();
    auto texture = makeTexture(dying.get());
    EXPECT_THAT(callsOf([&] { dying.reset(); }), ElementsAre(deleteCall(*texture)));
    EXPECT_FALSE(texture->isValid());
    EXPECT_FALSE(glIsTexture(texture->getTextureID()));
    EXPECT_THAT(callsOf([&] { texture.reset(); }), IsEmpty());
}

TEST_F(GLTextureGLTest, LosesItsNameWithAContextThatDiesInactive)
{
    auto dying = makeContext();
    auto texture = makeTexture(dying.get());
    const unsigned int name = texture->getTextureID();
    EXPECT_THAT(callsOf([&] {
        dying.reset();
        texture.reset();
    }),
        IsEmpty());
    EXPECT_TRUE(glIsTexture(name));
    glDeleteTextures(1, &name);
}

TEST_F(GLTextureGLTest, OutlivesTheChildContextItWasMadeIn)
{
    const auto native = makeSharedContext();
    auto child = std::make_unique<GLContext>(native->getDC(), native->getRC(), context(), nullptr);
    child->activate();
    auto texture = makeTexture(child.get());
    EXPECT_THAT(callsOf([&] { child.reset(); }), IsEmpty());
    EXPECT_TRUE(texture->isValid());

    context()->activate();
    const unsigned int name = texture->getTextureID();
    EXPECT_TRUE(glIsTexture(name));
    texture.reset();
    EXPECT_FALSE(glIsTexture(name));
}

TEST_F(GLTextureGLTest, OnlyHandsItsNameOverWhenItIsTold)
{
    const auto inactive = makeContext();
    OpenTexture texture(inactive.get());
    EXPECT_THAT(callsOf([&] { texture.onDeleteContext(); }), IsEmpty());
    EXPECT_TRUE(texture.isValid());
    EXPECT_THAT(callsOf([&] { inactive->activate(); }), ElementsAre("wglGetCurrentContext()", deleteCall(texture)));
}

TEST_F(GLTextureGLTest, DoesNotLookForItsContext)
{
    auto dying = makeContext();
    OpenTexture texture(dying.get());
    dying.reset();
    EXPECT_THAT(callsOf([&] { texture.bind(0); }),
        ElementsAre("glActiveTextureARB(GL_TEXTURE0)", bindCall("GL_TEXTURE_2D", texture.getTextureID())));
    EXPECT_THAT(callsOf([&] { texture.onDeleteContext(); }), IsEmpty());
    const unsigned int name = texture.getTextureID();
    glDeleteTextures(1, &name);
}

OpenTexture& withDistinctFields(OpenTexture& texture)
{
    texture.m_TextureTarget = GL_TEXTURE_3D;
    texture.m_Mipmapped = true;
    texture.m_SizeInBytes = 11;
    texture.m_NumComponents = 12;
    texture.m_Format = 13;
    return texture;
}

void expectSameFields(const OpenTexture& a, const OpenTexture& b)
{
    EXPECT_EQ(a.getContext(), b.getContext());
    EXPECT_EQ(a.m_TextureTarget, b.m_TextureTarget);
    EXPECT_EQ(a.getTextureID(), b.getTextureID());
    EXPECT_EQ(a.m_Mipmapped, b.m_Mipmapped);
    EXPECT_EQ(a.m_SizeInBytes, b.m_SizeInBytes);
    EXPECT_EQ(a.m_NumComponents, b.m_NumComponents);
    EXPECT_EQ(a.m_Format, b.m_Format);
}

TEST_F(GLTextureGLTest, IsCopiedFieldByFieldWithoutRegistering)
{
    auto dying = makeContext();
    dying->activate();
    OpenTexture original(dying.get());
    withDistinctFields(original);
    Undestroyed<OpenTexture> copy(original);
    expectSameFields(*copy, original);

    EXPECT_THAT(callsOf([&] { dying.reset(); }), ElementsAre(deleteCall(original)));
    EXPECT_FALSE(original.isValid());
    EXPECT_TRUE(copy->isValid()) << "nobody told the copy";
}

TEST_F(GLTextureGLTest, DeletesTheSharedNameWithTheFirstCopyThatDies)
{
    auto dying = makeContext();
    dying->activate();
    Undestroyed<OpenTexture> original(dying.get());
    auto copy = std::make_unique<OpenTexture>(*original);
    EXPECT_THAT(callsOf([&] { copy.reset(); }), ElementsAre(deleteCall(*original)));
    EXPECT_THAT(callsOf([&] { dying.reset(); }), IsEmpty()) << "the one registration went with the copy";
}

TEST_F(GLTextureGLTest, IsAssignedFieldByField)
{
    auto dying = makeContext();
    OpenTexture original(dying.get());
    withDistinctFields(original);
    OpenTexture assigned(dying.get());
    const unsigned int lostName = assigned.getTextureID();
    assigned = original;
    expectSameFields(assigned, original);

    dying.reset(); // The tree is not active: nothing is deleted, nor later, as nobody has a context any more.
    for (const unsigned int name : {lostName, original.getTextureID()})
        glDeleteTextures(1, &name);
}

} // namespace
} // namespace tavo
