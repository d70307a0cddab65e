// What docs/shaders.md says about drivers that lack a kind of program.
#include <gmock/gmock.h>

#include "tests/vireo/context/GLExtensionTest.h"
#include "tests/vireo/shaders/hasARBPrograms.h"
#include "vireo/shaders/GLShaderARB.h"

#ifdef VIREO_HAVE_CG
#include "vireo/shaders/GLShaderCG.h"

#include <Cg/cgGL.h>
#endif

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int VERTEX = GL_VERTEX_PROGRAM_ARB;
constexpr unsigned int FRAGMENT = GL_FRAGMENT_PROGRAM_ARB;

class ProgramKindsGLTest : public GLExtensionContextTest
{};

TEST_F(ProgramKindsGLTest, HasBothARBKindsWhereBothExtensionsAre)
{
    if (!wrapContextWithExtensions("+GL_ARB_vertex_program +GL_ARB_fragment_program"))
        return;
    EXPECT_TRUE(hasARBPrograms(VERTEX));
    EXPECT_TRUE(hasARBPrograms(FRAGMENT));
}

using ProgramKindsGLDeathTest = ProgramKindsGLTest;

TEST_F(ProgramKindsGLDeathTest, CannotMakeARBProgramsWithoutTheExtension)
{
    if (!wrapContextWithExtensions("-GL_ARB_vertex_program"))
        return;
    EXPECT_FALSE(hasARBPrograms(VERTEX));
    EXPECT_FALSE(hasARBPrograms(FRAGMENT)) << "the entry points come with the other extension";
    EXPECT_EQ(glGenProgramsARB, nullptr);
    EXPECT_DEATH(GLShaderARB(context(), VERTEX), "");
}

TEST_F(ProgramKindsGLTest, TakesAnythingForAGoodProgramOfATargetThatTheDriverLacks)
{
    if (!wrapContextWithExtensions("-GL_ARB_fragment_program"))
        return;
    EXPECT_TRUE(hasARBPrograms(VERTEX));
    EXPECT_FALSE(hasARBPrograms(FRAGMENT));
    GLShaderARB shader(context(), FRAGMENT);
    EXPECT_TRUE(shader.compile("anything"));
    EXPECT_THAT(drainErrors(), IsEmpty());
    shader.bind();
    EXPECT_THAT(drainErrors(), ElementsAre(GL_INVALID_ENUM));
}

// A context of the core profile has no ARB programs. Here its refusals stand for a driver that finds a program wrong
// and has nothing to say about it.
TEST_F(ProgramKindsGLTest, KeepsThePreviousErrorTextInTheCoreProfile)
{
    class ShaderWithText : public GLShaderARB
    {
    public:
        using GLShaderARB::GLShaderARB;
        using GLShaderARB::lastError;
    };
    setDriverVariable("MESA_GL_VERSION_OVERRIDE", "3.3FC");
    if (!makeMainContext())
        return;
    if (glGetString(GL_EXTENSIONS))
        GTEST_SKIP() << "this driver does not give a context of the core profile, or not any more in this process";
    wrapContext();
    EXPECT_FALSE(hasARBPrograms(VERTEX));
    EXPECT_EQ(glGenProgramsARB, nullptr);

    const auto fetch = [](auto& entryPoint, const char* name) {
        const auto address = reinterpret_cast<void (*)()>(wglGetProcAddress(name));
        entryPoint = reinterpret_cast<std::decay_t<decltype(entryPoint)>>(address);
    };
    fetch(glGenProgramsARB, "glGenProgramsARB");
    fetch(glBindProgramARB, "glBindProgramARB");
    fetch(glProgramStringARB, "glProgramStringARB");
    ShaderWithText shader(context(), VERTEX);
    shader.lastError = "what was there";
    EXPECT_FALSE(shader.compile("anything"));
    EXPECT_EQ(shader.getLastError(), "what was there");
    EXPECT_EQ(shader.getLastErrorPosition(), -1);
    drainErrors(); // of all that this profile does not know
}

#ifdef VIREO_HAVE_CG

bool hasCgPrograms(CGprofile profile)
{
    return cgGLIsProfileSupported(profile) == CG_TRUE;
}

TEST_F(ProgramKindsGLTest, HasCgProgramsInContextsMadeThroughGLXAlone)
{
    if (!wrapContextWithExtensions("+GL_ARB_vertex_program +GL_ARB_fragment_program"))
        return;
    const char* const winsys = getenv("VIREO_TEST_WINSYS");
    const bool isGLX = winsys && std::string(winsys) == "glx";
    EXPECT_EQ(hasCgPrograms(CG_PROFILE_ARBVP1), isGLX);
    EXPECT_EQ(hasCgPrograms(CG_PROFILE_ARBFP1), isGLX);
    if (!isGLX) {
        EXPECT_EQ(GLShaderCG::getLatestVSProfile(), CG_PROFILE_UNKNOWN);
        EXPECT_EQ(GLShaderCG::getLatestPSProfile(), CG_PROFILE_UNKNOWN);
    }
}

TEST_F(ProgramKindsGLTest, HasNoCgProgramsWithoutTheExtensionsEither)
{
    if (!wrapContextWithExtensions("-GL_ARB_vertex_program -GL_ARB_fragment_program"))
        return;
    EXPECT_FALSE(hasCgPrograms(CG_PROFILE_ARBVP1));
    EXPECT_FALSE(hasCgPrograms(CG_PROFILE_ARBFP1));
    EXPECT_EQ(GLShaderCG::getLatestVSProfile(), CG_PROFILE_UNKNOWN);
    EXPECT_EQ(GLShaderCG::getLatestPSProfile(), CG_PROFILE_UNKNOWN);
}

TEST_F(ProgramKindsGLTest, CompilesForACgProfileThatTheDriverLacks)
{
    if (!wrapContextWithExtensions("-GL_ARB_fragment_program"))
        return;
    cgGetError();
    GLShaderCG shader(context(), CG_PROFILE_ARBFP1);
    EXPECT_FALSE(hasCgPrograms(CG_PROFILE_ARBFP1));
    EXPECT_TRUE(shader.compile("float4 main() : COLOR { return float4(1, 0, 0, 1); }"));
    EXPECT_EQ(cgGetError(), CG_INVALID_PROFILE_ERROR);
    EXPECT_FALSE(cgGLIsProgramLoaded(cgGetFirstProgram(context()->getCGContext())));
}

#endif

} // namespace
} // namespace tavo
