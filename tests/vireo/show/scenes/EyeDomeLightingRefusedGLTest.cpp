// Drivers that cannot do eye-dome lighting.
#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/show/scenes/EyeDomeLighting.h"

namespace tavo {
namespace {

class EyeDomeLightingRefusedGLTest : public GLExtensionContextTest
{
protected:
    void expectRefusalWithout(const char* extension)
    {
        if (!wrapContextWithExtensions((std::string("-") + extension).c_str()))
            return;
        EXPECT_EQ(EyeDomeLighting::make(*context()), nullptr);
    }
};

TEST_F(EyeDomeLightingRefusedGLTest, NeedsTargetsOfDepths)
{
    expectRefusalWithout("GL_ARB_texture_rectangle");
}

TEST_F(EyeDomeLightingRefusedGLTest, NeedsTheFunctionsOfPrograms)
{
    expectRefusalWithout("GL_ARB_vertex_program");
}

TEST_F(EyeDomeLightingRefusedGLTest, NeedsProgramsForFragments)
{
    expectRefusalWithout("GL_ARB_fragment_program");
}

} // namespace
} // namespace tavo
