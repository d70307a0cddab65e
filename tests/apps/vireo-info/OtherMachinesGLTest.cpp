// Machines without this and that. Mesa's variables make them.
#include <gmock/gmock.h>
#include <ostream>

#include "tests/apps/vireo-info/VireoInfoTest.h"

namespace tavo {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using OtherMachinesGLTest = VireoInfoTest;

TEST_F(OtherMachinesGLTest, WindowsOfThisOneAreDrawnThroughGLX)
{
    const Outcome outcome = run();
    EXPECT_EQ(answerOn("GLX", outcome.output), "yes");
    EXPECT_EQ(answerOn("EGL", outcome.output), "yes");
    EXPECT_THAT(lineOn("context", outcome.output), HasSubstr("made through GLX"));
}

TEST_F(OtherMachinesGLTest, WithoutADisplayThereIsEGL)
{
    m_Environment.remove("DISPLAY");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(lineOn("GLX", outcome.output), AllOf(HasSubstr(" NO "), HasSubstr("DISPLAY names no X server")));
    EXPECT_THAT(lineOn("context", outcome.output), HasSubstr("made through EGL"));
    EXPECT_EQ(answerOn("GLRenderTextureFBO", outcome.output), "yes");
    EXPECT_EQ(answerOn("GLShaderCG for vertices", outcome.output), "NO") << "the Cg runtime sees contexts of GLX only";
}

TEST_F(OtherMachinesGLTest, SaysThatTheDisplayDoesNotAnswer)
{
    m_Environment.insert("DISPLAY", ":47110");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(lineOn("GLX", outcome.output), HasSubstr("no X server answers at DISPLAY=:47110. To do: "));
}

TEST_F(OtherMachinesGLTest, TheCoreProfileHasNothingForTheLibrary)
{
    m_Environment.insert("MESA_GL_VERSION_OVERRIDE", "3.3FC");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(answerOn("compatibility profile", outcome.output), "NO");
    EXPECT_EQ(answerOn("ARB vertex programs", outcome.output), "NO");
    EXPECT_THAT(lineOn("GLGraphDisplayer", outcome.output),
        HasSubstr("the core profile lacks the functions that it draws with. To do: ask for the compatibility profile"));
    const std::string classes = outcome.output.substr(outcome.output.find("\nClasses\n"));
    EXPECT_THAT(classes, Not(HasSubstr(" yes ")));
}

TEST_F(OtherMachinesGLTest, WithoutADriverThereIsNothing)
{
    m_Environment.insert("LIBGL_DRIVERS_PATH", "/nonexistent");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(lineOn("GLX", outcome.output), HasSubstr("the driver makes no context on the X server. To do: "));
    EXPECT_EQ(answerOn("EGL", outcome.output), "NO");
    EXPECT_THAT(lineOn("GLTexture2D", outcome.output), HasSubstr("there is no OpenGL context. To do: "));
    EXPECT_THAT(outcome.output, Not(HasSubstr(" yes ")));
    EXPECT_EQ(run({"--json"}).exitStatus, 1);
}

TEST_F(OtherMachinesGLTest, WithoutEGLThereIsNothingOnASystemWithoutADisplay)
{
    m_Environment.remove("DISPLAY");
    m_Environment.insert("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, IsEmpty());
    EXPECT_EQ(answerOn("EGL", outcome.output), "NO");
}

TEST_F(OtherMachinesGLTest, SaysThatTheReportCannotBeWritten)
{
    const Outcome outcome = runProgram("sh", {"-c", "exec '" VIREO_INFO "' > /dev/full"}, ".", m_Environment);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("vireo-info: standard output: "));
}

// An extension that the driver hides, and the classes that work no longer.
struct Hidden
{
    const char* extension;
    std::vector<const char*> classes;
};

void PrintTo(const Hidden& hidden, std::ostream* stream)
{
    *stream << hidden.extension;
}

class LeanMachinesGLTest : public VireoInfoTest, public testing::WithParamInterface<Hidden>
{};

const Hidden EXTENSIONS[] = {
    {"GL_ARB_multitexture", {"GLTexture2D", "GLTexture3D", "GLTextureCube", "GLTextureRect", "GLRenderTextureFBO",
                                "GLRenderTargetFBO", "GLImage", "SliceVolumeRenderer", "Tex2dVolumeRenderer"}},
    {"GL_ARB_texture_rectangle", {"GLTextureRect", "GLRenderTargetFBO", "GLImage", "scenes of libvireoshow"}},
    {"GL_EXT_texture3D", {"GLTexture3D"}},
    {"GL_ARB_texture_cube_map", {"GLTextureCube"}},
    {"GL_ARB_vertex_buffer_object",
        {"GLVertexBuffer", "GLTemplatedIndexBuffer", "GLGeometryList", "scenes of libvireoshow"}},
    {"GL_ARB_vertex_program", {"GLShaderARB for vertices", "GLShaderARB for fragments"}},
    {"GL_ARB_fragment_program", {"GLShaderARB for fragments"}},
    {"GL_ARB_depth_texture", {"GLRenderTargetFBO", "scenes of libvireoshow"}},
    {"GL_ARB_texture_float", {"rectangle, 16 bits, ARB's format", "2D, 32 bits, ARB's format"}},
};

INSTANTIATE_TEST_SUITE_P(Hidden, LeanMachinesGLTest, testing::ValuesIn(EXTENSIONS),
    [](const auto& hidden) { return std::string(hidden.param.extension); });

TEST_P(LeanMachinesGLTest, SaysWhichClassesMissIt)
{
    const std::string whole = run().output;
    const std::string extension = GetParam().extension;
    m_Environment.insert("MESA_EXTENSION_OVERRIDE", QString::fromStdString('-' + extension));
    const Outcome lean = run();
    EXPECT_EQ(lean.exitStatus, 0);
    for (const char* const name : GetParam().classes) {
        if (answerOn(name, whole) == "NO")
            GTEST_SKIP() << "the driver has no " << extension << " anyway";
        EXPECT_EQ(answerOn(name, lean.output), "NO") << name;
        EXPECT_THAT(lineOn(name, lean.output), AllOf(HasSubstr("the driver has no "), HasSubstr("no " + extension)))
            << name;
    }
    EXPECT_THAT(lean.output, HasSubstr("To do: unset MESA_EXTENSION_OVERRIDE, which hides extensions"));
    EXPECT_EQ(answerOn("GLHelper", lean.output), "yes") << "which needs none";
}

} // namespace
} // namespace tavo
