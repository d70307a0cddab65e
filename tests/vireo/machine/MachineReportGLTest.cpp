// In the process: what others have made stays as it is, and the report says what the classes then do.
#include <gmock/gmock.h>
#include <map>

#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/machine/MachineReport.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class MachineReportGLTest : public GLExtensionContextTest
{
protected:
    // False if the test is skipped instead.
    [[nodiscard]] bool makeContext()
    {
        if (!makeMainContext())
            return false;
        wrapContext();
        return true;
    }

    static std::map<unsigned int, int> bindings()
    {
        std::map<unsigned int, int> all;
        for (const unsigned int name : {GL_TEXTURE_BINDING_2D, GL_TEXTURE_BINDING_RECTANGLE_ARB, GL_TEXTURE_BINDING_3D,
                 GL_ARRAY_BUFFER_BINDING_ARB, GL_PIXEL_UNPACK_BUFFER_BINDING_ARB, GL_FRAMEBUFFER_BINDING_EXT,
                 GL_RENDERBUFFER_BINDING_EXT, GL_ACTIVE_TEXTURE_ARB, GL_DRAW_BUFFER, GL_READ_BUFFER, GL_MATRIX_MODE})
            glGetIntegerv(static_cast<GLenum>(name), &all[static_cast<unsigned int>(name)]);
        for (const unsigned int target : {GL_VERTEX_PROGRAM_ARB, GL_FRAGMENT_PROGRAM_ARB}) {
            glGetProgramivARB(target, GL_PROGRAM_BINDING_ARB, &all[target]);
            all[target] = all[target] * 2 + glIsEnabled(target);
        }
        return all;
    }

    static std::string findingOn(const std::string& subject, const MachineReport& report)
    {
        for (const MachineReport::Line& line : report.getLines())
            if (line.subject == subject)
                return line.finding;
        return "";
    }
};

TEST_F(MachineReportGLTest, LeavesAllBindingsAsTheyAre)
{
    if (!makeContext())
        return;
    GLTexture2D texture(context());
    texture.createFromMemory(4, 4, 4, nullptr, false);
    GLTextureRect rectangle(context());
    rectangle.createFromMemory(4, 4, 4, nullptr);
    GLRenderTextureFBO target(context());
    ASSERT_TRUE(target.create(8, 8, 4, GLRenderTextureFBO::FLAG_DEPTH));
    target.activate();
    texture.bind(0);
    rectangle.bind(0);
    unsigned int buffers[2] = {};
    glGenBuffersARB(2, buffers);
    glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffers[0]);
    glBindBufferARB(GL_PIXEL_UNPACK_BUFFER_ARB, buffers[1]);
    GLShaderARB program(context(), GL_FRAGMENT_PROGRAM_ARB);
    ASSERT_TRUE(program.compile("!!ARBfp1.0\nMOV result.color, program.local[0];\nEND"));
    program.bind();
    const auto before = bindings();

    const MachineReport report = MachineReport::ofCurrentContext();
    EXPECT_EQ(bindings(), before);
    EXPECT_EQ(wglGetCurrentContext(), getRC());
    EXPECT_THAT(drainErrors(), IsEmpty());
    EXPECT_TRUE(report.works("current context"));
    EXPECT_TRUE(report.works("buffer objects"));

    const MachineReport ofMachine = MachineReport::ofMachine();
    EXPECT_EQ(wglGetCurrentContext(), getRC());
    EXPECT_EQ(wglGetCurrentDC(), getDC());
    EXPECT_EQ(bindings(), before);
    EXPECT_TRUE(ofMachine.hasOpenGL());
    glBindBufferARB(GL_PIXEL_UNPACK_BUFFER_ARB, 0);
    glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
    glDeleteBuffersARB(2, buffers);
    target.deactivate();
}

TEST_F(MachineReportGLTest, FreesAllNamesThatItMakes)
{
    if (!makeContext())
        return;
    MachineReport::ofCurrentContext();
    unsigned int texture = 0;
    glGenTextures(1, &texture);
    for (unsigned int name = 1; name < 100; ++name) {
        EXPECT_FALSE(glIsTexture(name)) << name;
        EXPECT_FALSE(glIsBufferARB(name)) << name;
        EXPECT_FALSE(glIsProgramARB(name)) << name;
        EXPECT_FALSE(glIsFramebufferEXT(name)) << name;
        EXPECT_FALSE(glIsRenderbufferEXT(name)) << name;
    }
    glDeleteTextures(1, &texture);
}

TEST_F(MachineReportGLTest, CountsTheErrorsThatWerePending)
{
    if (!makeContext())
        return;
    EXPECT_EQ(findingOn("pending errors", MachineReport::ofCurrentContext()), "");
    glEnable(0xFFFF);
    const MachineReport report = MachineReport::ofCurrentContext();
    EXPECT_EQ(findingOn("pending errors", report), "1 before the report");
    EXPECT_THAT(drainErrors(), IsEmpty());
}

TEST_F(MachineReportGLTest, DoesNotMakeTheFirstContextOfTheLibrary)
{
    if (!makeMainContext())
        return;
    MachineReport::ofMachine();
    MachineReport::ofCurrentContext();
    EXPECT_FALSE(glExtensionsInitialized);
    EXPECT_EQ(glGenProgramsARB, nullptr);
    wrapContext();
    EXPECT_NE(glGenBuffersARB, nullptr);
}

TEST_F(MachineReportGLTest, SaysThatNoContextIsCurrent)
{
    const MachineReport report = MachineReport::ofCurrentContext();
    EXPECT_FALSE(report.hasOpenGL());
    EXPECT_FALSE(report.works("GLTexture2D"));
    EXPECT_THAT(report.getText(), HasSubstr("none is current in this thread. To do: make a context current first"));
}

TEST_F(MachineReportGLTest, SaysOfTargetsWhatTheClassesThenDo)
{
    if (!makeContext())
        return;
    const MachineReport report = MachineReport::ofCurrentContext();
    using Target = GLRenderTextureFBO;
    const std::pair<const char*, unsigned int> kinds[] = {{"colours", 0},
        {"colours in a rectangle", Target::FLAG_RECTANGLE}, {"colours with depths", Target::FLAG_DEPTH},
        {"colours with stencil", Target::FLAG_STENCIL},
        {"colours with depths and stencil apart", Target::FLAG_DEPTH | Target::FLAG_STENCIL},
        {"rectangle, 16 bits, ARB's format", Target::FLAG_RECTANGLE | Target::FLAG_FLOAT16},
        {"rectangle, 32 bits, ARB's format", Target::FLAG_RECTANGLE | Target::FLAG_FLOAT32}};
    for (const auto& [subject, flags] : kinds) {
        Target target(context());
        EXPECT_EQ(target.create(16, 16, 4, flags), report.works(subject)) << subject;
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
        drainErrors();
    }
    Target depths(context());
    EXPECT_EQ(depths.createDepthTexture(16, 16), report.works("depths alone"));
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    GLRenderTargetFBO both(context());
    EXPECT_EQ(both.create(16, 16), report.works("GLRenderTargetFBO"));
    if (!report.works("colours with depths and stencil apart")) {
        EXPECT_THAT(findingOn("GLRenderTextureFBO", report),
            HasSubstr("create() returns false for colours with depths and stencil apart"));
    }
}

TEST_F(MachineReportGLTest, GoesByWhatTheDriverDoesAndNotByNamesAlone)
{
    // A name that this driver does not know makes no functions, and so no programs.
    if (!makeMainContextWithExtensions("-GL_ARB_fragment_program +GL_NV_float_buffer"))
        return;
    const MachineReport report = MachineReport::ofCurrentContext();
    EXPECT_EQ(findingOn("rectangle, 16 bits, NVIDIA's format", report), "the driver refuses it");
    EXPECT_FALSE(report.works("rectangle, 16 bits, NVIDIA's format"));
    EXPECT_FALSE(report.works("GLShaderARB for fragments"));
    EXPECT_TRUE(report.works("GLShaderARB for vertices"));
}

// What there is for one system cannot be installed on the other.
TEST_F(MachineReportGLTest, SaysWhatToDoWithoutGLShaderCG)
{
    const std::string text = MachineReport::ofMachine().getText();
    if (text.find("built without the Cg runtime") == std::string::npos)
        GTEST_SKIP() << "this library has Cg programs";
    EXPECT_THAT(text, HasSubstr(VIREO_ADVICE_WITHOUT_CG));
}

TEST_F(MachineReportGLTest, TellsOfTheCoreProfileThatIsCurrent)
{
    setDriverVariable("MESA_GL_VERSION_OVERRIDE", "3.3FC");
    if (!makeMainContext())
        return;
    if (glGetString(GL_EXTENSIONS))
        GTEST_SKIP() << "this driver does not give a context of the core profile, or not any more in this process";
    drainErrors();
    const MachineReport report = MachineReport::ofCurrentContext();
    EXPECT_FALSE(report.works("compatibility profile"));
    EXPECT_FALSE(report.works("GLTexture2D"));
    EXPECT_THAT(drainErrors(), IsEmpty());
}

} // namespace
} // namespace tavo
