#include <gmock/gmock.h>
#include <vector>

#include "tests/support/EntryPoints.h"
#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/context/GLExtensionLoader.h"
#include "vireo/context/GLExtensions.h"

// Qt's own copy of GL/glext.h, after the system's.
// clang-format off
#include <QGLWidget>
// clang-format on

namespace tavo {
namespace {

using testing::IsEmpty;

// The library's one loader asks the driver for its extensions once in a process.
class GLExtensionsGLTest : public GLExtensionTest
{
protected:
    void SetUp() override
    {
        GLExtensionTest::SetUp();
        if (!GLExtensionLoader::getInstance().getSupportedExtensions().empty())
            GTEST_SKIP() << "an earlier test of this process has loaded the extensions";
    }
};

const std::vector<std::string> NV_VERTEX_PROGRAM{"glAreProgramsResidentNV", "glBindProgramNV", "glDeleteProgramsNV",
    "glExecuteProgramNV", "glGenProgramsNV", "glGetProgramivNV", "glGetProgramParameterdvNV",
    "glGetProgramParameterfvNV", "glGetProgramStringNV", "glGetTrackMatrixivNV", "glGetVertexAttribdvNV",
    "glGetVertexAttribfvNV", "glGetVertexAttribivNV", "glGetVertexAttribPointervNV", "glIsProgramNV", "glLoadProgramNV",
    "glProgramParameter4dNV", "glProgramParameter4dvNV", "glProgramParameter4fNV", "glProgramParameter4fvNV",
    "glProgramParameters4dvNV", "glProgramParameters4fvNV", "glRequestResidentProgramsNV", "glTrackMatrixNV",
    "glVertexAttribPointerNV", "glVertexAttrib1dNV", "glVertexAttrib1dvNV", "glVertexAttrib1fNV", "glVertexAttrib1fvNV",
    "glVertexAttrib1sNV", "glVertexAttrib1svNV", "glVertexAttrib2dNV", "glVertexAttrib2dvNV", "glVertexAttrib2fNV",
    "glVertexAttrib2fvNV", "glVertexAttrib2sNV", "glVertexAttrib2svNV", "glVertexAttrib3dNV", "glVertexAttrib3dvNV",
    "glVertexAttrib3fNV", "glVertexAttrib3fvNV", "glVertexAttrib3sNV", "glVertexAttrib3svNV", "glVertexAttrib4dNV",
    "glVertexAttrib4dvNV", "glVertexAttrib4fNV", "glVertexAttrib4fvNV", "glVertexAttrib4sNV", "glVertexAttrib4svNV",
    "glVertexAttrib4ubNV", "glVertexAttrib4ubvNV", "glVertexAttribs1dvNV", "glVertexAttribs1fvNV",
    "glVertexAttribs1svNV", "glVertexAttribs2dvNV", "glVertexAttribs2fvNV", "glVertexAttribs2svNV",
    "glVertexAttribs3dvNV", "glVertexAttribs3fvNV", "glVertexAttribs3svNV", "glVertexAttribs4dvNV",
    "glVertexAttribs4fvNV", "glVertexAttribs4svNV", "glVertexAttribs4ubvNV"};

const std::vector<std::string> ARB_VERTEX_PROGRAM{"glVertexAttrib1dARB", "glVertexAttrib1dvARB", "glVertexAttrib1fARB",
    "glVertexAttrib1fvARB", "glVertexAttrib1sARB", "glVertexAttrib1svARB", "glVertexAttrib2dARB",
    "glVertexAttrib2dvARB", "glVertexAttrib2fARB", "glVertexAttrib2fvARB", "glVertexAttrib2sARB",
    "glVertexAttrib2svARB", "glVertexAttrib3dARB", "glVertexAttrib3dvARB", "glVertexAttrib3fARB",
    "glVertexAttrib3fvARB", "glVertexAttrib3sARB", "glVertexAttrib3svARB", "glVertexAttrib4NbvARB",
    "glVertexAttrib4NivARB", "glVertexAttrib4NsvARB", "glVertexAttrib4NubARB", "glVertexAttrib4NubvARB",
    "glVertexAttrib4NuivARB", "glVertexAttrib4NusvARB", "glVertexAttrib4bvARB", "glVertexAttrib4dARB",
    "glVertexAttrib4dvARB", "glVertexAttrib4fARB", "glVertexAttrib4fvARB", "glVertexAttrib4ivARB",
    "glVertexAttrib4sARB", "glVertexAttrib4svARB", "glVertexAttrib4ubvARB", "glVertexAttrib4uivARB",
    "glVertexAttrib4usvARB", "glVertexAttribPointerARB", "glEnableVertexAttribArrayARB",
    "glDisableVertexAttribArrayARB", "glProgramStringARB", "glBindProgramARB", "glDeleteProgramsARB",
    "glGenProgramsARB", "glProgramEnvParameter4dARB", "glProgramEnvParameter4dvARB", "glProgramEnvParameter4fARB",
    "glProgramEnvParameter4fvARB", "glProgramLocalParameter4dARB", "glProgramLocalParameter4dvARB",
    "glProgramLocalParameter4fARB", "glProgramLocalParameter4fvARB", "glGetProgramEnvParameterdvARB",
    "glGetProgramEnvParameterfvARB", "glGetProgramLocalParameterdvARB", "glGetProgramLocalParameterfvARB",
    "glGetProgramivARB", "glGetProgramStringARB", "glGetVertexAttribdvARB", "glGetVertexAttribfvARB",
    "glGetVertexAttribivARB", "glGetVertexAttribPointervARB", "glIsProgramARB"};

const std::vector<std::string> ARB_VERTEX_BUFFER_OBJECT{"glBindBufferARB", "glDeleteBuffersARB", "glGenBuffersARB",
    "glIsBufferARB", "glBufferDataARB", "glBufferSubDataARB", "glGetBufferSubDataARB", "glMapBufferARB",
    "glUnmapBufferARB", "glGetBufferParameterivARB", "glGetBufferPointervARB"};

const std::vector<std::string> ARB_MULTITEXTURE{"glMultiTexCoord1dARB", "glMultiTexCoord1dvARB", "glMultiTexCoord1fARB",
    "glMultiTexCoord1fvARB", "glMultiTexCoord1iARB", "glMultiTexCoord1ivARB", "glMultiTexCoord1sARB",
    "glMultiTexCoord1svARB", "glMultiTexCoord2dARB", "glMultiTexCoord2dvARB", "glMultiTexCoord2fARB",
    "glMultiTexCoord2fvARB", "glMultiTexCoord2iARB", "glMultiTexCoord2ivARB", "glMultiTexCoord2sARB",
    "glMultiTexCoord2svARB", "glMultiTexCoord3dARB", "glMultiTexCoord3dvARB", "glMultiTexCoord3fARB",
    "glMultiTexCoord3fvARB", "glMultiTexCoord3iARB", "glMultiTexCoord3ivARB", "glMultiTexCoord3sARB",
    "glMultiTexCoord3svARB", "glMultiTexCoord4dARB", "glMultiTexCoord4dvARB", "glMultiTexCoord4fARB",
    "glMultiTexCoord4fvARB", "glMultiTexCoord4iARB", "glMultiTexCoord4ivARB", "glMultiTexCoord4sARB",
    "glMultiTexCoord4svARB", "glActiveTextureARB", "glClientActiveTextureARB"};

const std::vector<std::string> EXT_FRAMEBUFFER_OBJECT{"glIsRenderbufferEXT", "glBindRenderbufferEXT",
    "glDeleteRenderbuffersEXT", "glGenRenderbuffersEXT", "glRenderbufferStorageEXT", "glGetRenderbufferParameterivEXT",
    "glIsFramebufferEXT", "glBindFramebufferEXT", "glDeleteFramebuffersEXT", "glGenFramebuffersEXT",
    "glCheckFramebufferStatusEXT", "glFramebufferTexture1DEXT", "glFramebufferTexture2DEXT",
    "glFramebufferTexture3DEXT", "glFramebufferRenderbufferEXT", "glGetFramebufferAttachmentParameterivEXT",
    "glGenerateMipmapEXT"};

TEST_F(GLExtensionsGLTest, FetchesTheEntryPointsOfEachExtensionInItsOrder)
{
    // A driver that lists them all, and lacks a few of the WGL functions.
    const WithheldEntryPoint noVertexArrayRange("wglAllocateMemoryNV");
    const WithheldEntryPoint noPixelFormat("wglGetPixelFormatAttribivARB");
    const WithheldEntryPoint noPbuffer("wglCreatePbufferARB");
    if (!makeMainContextWithExtensions(
            "+GL_NV_vertex_program +GL_EXT_vertex_shader +GL_HP_occlusion_test +GL_EXT_compiled_vertex_array "
            "+GL_NV_vertex_array_range +GL_EXT_point_parameters +GL_EXT_texture3D +GL_ARB_vertex_program "
            "+GL_ARB_fragment_program +GL_ARB_vertex_buffer_object +GL_ARB_multitexture +GL_ARB_texture_cube_map "
            "+WGL_ARB_extension_string +WGL_ARB_pixel_format +WGL_ARB_pbuffer"))
        return;
    CallRecorder recorder;
    initGLExtensions();

    std::vector<std::string> expected{
        "glGetString(GL_EXTENSIONS)", "wglGetProcAddress(\"wglGetExtensionsStringARB\")", "wglGetCurrentDC()"};
    for (const std::vector<std::string>& entryPoints : {
             NV_VERTEX_PROGRAM,
             {"glLockArraysEXT", "glUnlockArraysEXT"},
             {"glFlushVertexArrayRangeNV", "glVertexArrayRangeNV", "wglAllocateMemoryNV"},
             {"glPointParameterfEXT", "glPointParameterfvEXT"},
             {"glTexImage3DEXT"},
             ARB_VERTEX_PROGRAM,
             ARB_VERTEX_BUFFER_OBJECT,
             ARB_MULTITEXTURE,
             {"wglGetPixelFormatAttribivARB"},
             {"wglCreatePbufferARB"},
             EXT_FRAMEBUFFER_OBJECT,
         })
        for (const std::string& call : fetches(entryPoints))
            expected.push_back(call);
    expectCalls(recorder, expected);

    EXPECT_EQ(GLExtensionLoader::getInstance().getUnsupportedExtensions(), "WGL_ARB_pbuffer ") << "the last request's";
}

TEST_F(GLExtensionsGLTest, LoadsOnlyWhatTheDriverSupports)
{
    if (!makeMainContextWithExtensions("-GL_ARB_vertex_program -GL_ARB_fragment_program"))
        return;
    initGLExtensions();
    EXPECT_EQ(glBindProgramARB, nullptr);
    EXPECT_EQ(glDeleteProgramsARB, nullptr);
    EXPECT_NE(glLockArraysEXT, nullptr);
    EXPECT_NE(glPointParameterfEXT, nullptr);
    EXPECT_NE(glTexImage3DEXT, nullptr);
    EXPECT_NE(glBindBufferARB, nullptr);
    EXPECT_NE(glClientActiveTextureARB, nullptr);
    EXPECT_EQ(glGenQueriesARB, nullptr) << "of an extension that the library does not ask for";
}

TEST_F(GLExtensionsGLTest, LoadsFramebufferObjectsEvenWhereTheDriverDoesNotListThem)
{
    if (!makeMainContextWithExtensions("-GL_EXT_framebuffer_object -GL_ARB_vertex_buffer_object"))
        return;
    const EveryEntryPoint whateverIsListed;
    initGLExtensions();
    EXPECT_EQ(glBindBufferARB, nullptr);
    EXPECT_NE(glIsRenderbufferEXT, nullptr);
    EXPECT_NE(glBindFramebufferEXT, nullptr);
    EXPECT_NE(glGenerateMipmapEXT, nullptr);
}

// --- isExtensionSupported ---

TEST_F(GLExtensionsGLTest, SupportsExtensionsThatAreListedByTheirWholeNames)
{
    if (!makeMainContextWithExtensions("+GL_ARB_multitexture +GL_ARB_texture_float -GL_NV_float_buffer"))
        return;
    EXPECT_FALSE(isExtensionSupported("GL_ARB_multitexture")) << "before anybody has asked";
    initGLExtensions();
    EXPECT_TRUE(isExtensionSupported("GL_ARB_multitexture"));
    EXPECT_TRUE(isExtensionSupported("GL_ARB_texture_float")) << "it has no functions";
    EXPECT_FALSE(isExtensionSupported("GL_NV_float_buffer"));
    EXPECT_FALSE(isExtensionSupported("ARB_multitexture"));
    EXPECT_FALSE(isExtensionSupported("GL_ARB_multi"));
    EXPECT_FALSE(isExtensionSupported(""));
}

TEST_F(GLExtensionsGLTest, SupportsNoExtensionThatLacksAnEntryPoint)
{
    if (!makeMainContextWithExtensions("+GL_ARB_multitexture +GL_ARB_occlusion_query"))
        return;
    initGLExtensions();
    EXPECT_FALSE(isExtensionSupported("GL_ARB_occlusion_query")) << "the library does not fetch its functions";
    EXPECT_TRUE(isExtensionSupported("GL_ARB_multitexture"));
    glMultiTexCoord3dARB = nullptr;
    EXPECT_FALSE(isExtensionSupported("GL_ARB_multitexture"));
}

TEST_F(GLExtensionsGLTest, SupportsFramebufferObjectsEvenWhereTheDriverDoesNotListThem)
{
    if (!makeMainContextWithExtensions("-GL_EXT_framebuffer_object"))
        return;
    const EveryEntryPoint whateverIsListed;
    initGLExtensions();
    EXPECT_THAT(callsOf([] { EXPECT_TRUE(isExtensionSupported("GL_EXT_framebuffer_object")); }), IsEmpty());
    glBindFramebufferEXT = nullptr;
    EXPECT_FALSE(isExtensionSupported("GL_EXT_framebuffer_object"));
}

// --- asked twice ---

TEST_F(GLExtensionsGLTest, DoesNothingTheSecondTime)
{
    if (!makeMainContext())
        return;
    EXPECT_FALSE(glExtensionsInitialized);
    initGLExtensions();
    EXPECT_TRUE(glExtensionsInitialized);
    EXPECT_NE(glBindFramebufferEXT, nullptr);
    glBindFramebufferEXT = nullptr;
    EXPECT_THAT(callsOf(initGLExtensions), IsEmpty());
    EXPECT_EQ(glBindFramebufferEXT, nullptr);
}

TEST_F(GLExtensionsGLTest, WithoutAContextLoadsNothingThenAndLater)
{
    CallRecorder recorder;
    initGLExtensions();
    EXPECT_TRUE(glExtensionsInitialized);
    // Framebuffer objects are fetched whatever is supported, and each whether or not the driver had the one before it.
    std::vector<std::string> expected{"glGetString(GL_EXTENSIONS)", "wglGetProcAddress(\"wglGetExtensionsStringARB\")"};
    for (const std::string& call : fetches(EXT_FRAMEBUFFER_OBJECT))
        expected.push_back(call);
    expectCalls(recorder, expected);
    EXPECT_EQ(glGenFramebuffersEXT, nullptr);

    if (!makeMainContext())
        return;
    recorder.clear();
    initGLExtensions();
    expectCalls(recorder, {});
    EXPECT_EQ(glGenFramebuffersEXT, nullptr);
    EXPECT_EQ(glActiveTextureARB, nullptr);
}

} // namespace
} // namespace tavo
