// Classes that cannot do their work here say so, once, in the words of the machine report.
#include <gmock/gmock.h>

#include "tavo/base/objects/PException.h"
#include "tests/vireo/DebugText.h"
#include "tests/vireo/context/GLExtensionTest.h"
#include "tests/vireo/volume/VolumeTest.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/machine/MachineReport.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureRect.h"
#include "vireo/volume/SliceVolumeRenderer.h"

#ifdef VIREO_HAVE_CG
#include "vireo/shaders/GLShaderCG.h"
#endif

namespace tavo {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

class MissingExtensionsGLTest : public GLExtensionContextTest
{
protected:
    // What the class should say, as the report has it of the driver that is current.
    static std::string wordsOf(const std::string& className)
    {
        const MachineReport report = MachineReport::ofCurrentContext();
        for (const MachineReport::Line& line : report.getLines())
            if (line.subject == className && line.answer == MachineReport::Answer::NO)
                return className + ": " + line.finding + ". To do: " + line.advice + "; vireo-info says more.\n";
        return "the report says nothing of " + className;
    }
};

TEST_F(MissingExtensionsGLTest, NothingIsSaidWhereNothingIsMissing)
{
    if (!wrapContextWithExtensions("+GL_ARB_fragment_program"))
        return;
    const DebugText text;
    GLTexture2D texture(context());
    GLTextureRect rectangle(context());
    GLTemplatedIndexBuffer<unsigned int> buffer(context());
    GLShaderARB shader(context(), GL_FRAGMENT_PROGRAM_ARB);
    GLRenderTargetFBO target(context());
    target.create(4, 4);
    EXPECT_EQ(text.text(), "");
}

TEST_F(MissingExtensionsGLTest, AFragmentProgramSaysSoOnce)
{
    if (!wrapContextWithExtensions("-GL_ARB_fragment_program"))
        return;
    const DebugText text;
    GLShaderARB first(context(), GL_FRAGMENT_PROGRAM_ARB);
    EXPECT_EQ(text.text(), wordsOf("GLShaderARB for fragments"));
    EXPECT_THAT(text.text(), HasSubstr("the driver has no GL_ARB_fragment_program: it takes any text"));
    GLShaderARB second(context(), GL_FRAGMENT_PROGRAM_ARB);
    GLShaderARB forVertices(context(), GL_VERTEX_PROGRAM_ARB);
    EXPECT_EQ(text.text(), wordsOf("GLShaderARB for fragments"));
}

TEST_F(MissingExtensionsGLTest, ATargetOfTexturesSaysSoOnce)
{
    if (!wrapContextWithExtensions("-GL_ARB_texture_rectangle"))
        return;
    const DebugText text;
    GLRenderTargetFBO target(context());
    EXPECT_EQ(text.text(), "") << "before it is needed";
    EXPECT_FALSE(target.create(8, 8));
    EXPECT_FALSE(target.create(8, 8));
    EXPECT_EQ(text.text(), wordsOf("GLRenderTargetFBO"));
}

TEST_F(MissingExtensionsGLTest, ARectangleSaysSo)
{
    if (!wrapContextWithExtensions("-GL_ARB_texture_rectangle"))
        return;
    const DebugText text;
    GLTextureRect rectangle(context());
    EXPECT_EQ(text.text(), wordsOf("GLTextureRect"));
}

TEST_F(MissingExtensionsGLTest, AVolumeSaysSoBesidesItsException)
{
    if (!wrapContextWithExtensions("-GL_ARB_multitexture"))
        return;
    RegularVolume volume = makeCodedVolume({2, 2, 2});
    SliceVolumeRenderer renderer;
    const DebugText text;
    const auto draw = [&] { renderer.drawVolume(&volume, Vector3f(0, 0, -1), "density", nullptr, nullptr); };
    for (int i = 0; i < 2; ++i)
        EXPECT_THAT(draw, ThrowsMessage<PException>("SliceVolumeRenderer::drawVolume - GL_ARB_multitexture is missing: "
                                                    "there is no glActiveTextureARB"));
    EXPECT_EQ(text.text(), wordsOf("SliceVolumeRenderer"));
}

using MissingExtensionsGLDeathTest = MissingExtensionsGLTest;

TEST_F(MissingExtensionsGLDeathTest, ABufferSaysWhyTheProcessEnds)
{
    if (!wrapContextWithExtensions("-GL_ARB_vertex_buffer_object"))
        return;
    EXPECT_DEATH(GLTemplatedIndexBuffer<unsigned int> buffer(context()),
        "GLBuffer: the driver has no GL_ARB_vertex_buffer_object: making one ends the process. To do: ");
}

TEST_F(MissingExtensionsGLDeathTest, AVertexProgramSaysWhyTheProcessEnds)
{
    if (!wrapContextWithExtensions("-GL_ARB_vertex_program"))
        return;
    EXPECT_DEATH(GLShaderARB(context(), GL_VERTEX_PROGRAM_ARB),
        "GLShaderARB for vertices: the driver has no GL_ARB_vertex_program: making one ends the process. To do: ");
}

TEST_F(MissingExtensionsGLDeathTest, ThatNoContextWasCurrentIsTheReason)
{
    if (!makeMainContext())
        return;
    mainContext().release();
    wrapContext();
    mainContext().makeCurrent();
    EXPECT_DEATH(GLShaderARB(context(), GL_VERTEX_PROGRAM_ARB),
        "To do: make the first GLContext while a context of the "
        "compatibility profile is current; vireo-info says more");
}

#ifdef VIREO_HAVE_CG

TEST_F(MissingExtensionsGLTest, ACgProgramSaysThatItsRuntimeSeesNoContextOfEGL)
{
    if (!wrapContextWithExtensions("+GL_ARB_fragment_program"))
        return;
    const DebugText text;
    const GLShaderCG first(context(), CG_PROFILE_ARBFP1);
    const GLShaderCG second(context(), CG_PROFILE_ARBFP1);
    const char* const winsys = getenv("VIREO_TEST_WINSYS");
    if (winsys && std::string(winsys) == "glx")
        EXPECT_EQ(text.text(), "");
    else
        EXPECT_EQ(text.text(),
            "GLShaderCG for fragments: the Cg runtime does not see this context. To do: use a context of the "
            "compatibility profile that is made through GLX: under X, without QT_XCB_GL_INTEGRATION; under Wayland, "
            "with "
            "QT_QPA_PLATFORM=xcb; vireo-info says more.\n");
}

#endif

} // namespace
} // namespace tavo
