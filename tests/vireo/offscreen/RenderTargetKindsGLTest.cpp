// Drivers that cannot make a target of textures.
#include <gmock/gmock.h>

#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"

namespace tavo {
namespace {

using testing::IsEmpty;

class RenderTargetKindsGLTest : public GLExtensionContextTest
{
protected:
    void expectRefusalWithout(const char* extension)
    {
        if (!wrapContextWithExtensions((std::string("-") + extension).c_str()))
            return;
        EXPECT_FALSE(GLRenderTargetFBO::isSupported());
        GLRenderTargetFBO target(context());
        EXPECT_THAT(callsOf([&] { EXPECT_FALSE(target.create(8, 8)); }), IsEmpty());
        EXPECT_FALSE(target.isCreated());
    }
};

TEST_F(RenderTargetKindsGLTest, NeedsRectangles)
{
    expectRefusalWithout("GL_ARB_texture_rectangle");
}

TEST_F(RenderTargetKindsGLTest, NeedsTexturesOfDepths)
{
    expectRefusalWithout("GL_ARB_depth_texture");
}

} // namespace
} // namespace tavo
