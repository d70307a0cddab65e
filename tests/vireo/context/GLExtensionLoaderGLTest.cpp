#include <gmock/gmock.h>
#include <ostream>
#include <vector>

#include "tests/support/EntryPoints.h"
#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/context/GLExtensionLoader.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GLExtensionLoaderGLTest : public GLExtensionTest
{
protected:
    GLExtensionLoader m_Loader;
};

// The functions that loading an extension asks the driver for, in the order of the calls.
std::vector<std::string> loadingCalls(std::string_view extension)
{
    return callsOf([extension] { GLExtensionLoader::load(extension); });
}

// --- the supported extensions ---

TEST_F(GLExtensionLoaderGLTest, ListsWhatTheDriverSupports)
{
    if (!makeMainContext())
        return;
    EXPECT_EQ(m_Loader.getSupportedExtensions(), "");
    EXPECT_THAT(callsOf([this] { EXPECT_TRUE(m_Loader.request(nullptr)); }),
        ElementsAre(
            "glGetString(GL_EXTENSIONS)", "wglGetProcAddress(\"wglGetExtensionsStringARB\")", "wglGetCurrentDC()"));
    EXPECT_EQ(m_Loader.getSupportedExtensions(),
        getDriverString(GL_EXTENSIONS) + " " + wglGetExtensionsStringARB(wglGetCurrentDC()) + " ");
}

TEST_F(GLExtensionLoaderGLTest, AsksForThemOnlyOnce)
{
    if (!makeMainContext())
        return;
    m_Loader.request(nullptr);
    const std::string supported = m_Loader.getSupportedExtensions();
    mainContext().release();
    EXPECT_THAT(callsOf([this] { EXPECT_TRUE(m_Loader.request(nullptr)); }), IsEmpty());
    EXPECT_THAT(callsOf([this] { m_Loader.request("GL_ARB_multitexture"); }),
        ElementsAre("wglGetProcAddress(\"glMultiTexCoord1dARB\")"))
        << "still supported, but no context to load it from";
    EXPECT_EQ(m_Loader.getSupportedExtensions(), supported);
}

TEST_F(GLExtensionLoaderGLTest, SupportsNothingForEverIfThereWasNoContextAtFirst)
{
    EXPECT_FALSE(m_Loader.request("GL_ARB_multitexture GL_VERSION_1_2"));
    EXPECT_EQ(m_Loader.getSupportedExtensions(), "  ");
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_ARB_multitexture GL_VERSION_1_2 ");

    if (!makeMainContext())
        return;
    EXPECT_THAT(callsOf([this] { EXPECT_FALSE(m_Loader.request("GL_ARB_multitexture")); }), IsEmpty());
    EXPECT_EQ(m_Loader.getSupportedExtensions(), "  ");
}

TEST_F(GLExtensionLoaderGLTest, DoesNotTakeThePrefixOfAListedNameForSupported)
{
    if (!makeMainContextWithExtensions("+GL_NV_vertex_program2 -GL_NV_vertex_program"))
        return;
    EXPECT_TRUE(m_Loader.request("GL_NV_vertex_program2"));
    EXPECT_THAT(callsOf([this] { EXPECT_FALSE(m_Loader.request("GL_NV_vertex_program")); }), IsEmpty());
    EXPECT_EQ(glAreProgramsResidentNV, nullptr);
}

TEST_F(GLExtensionLoaderGLTest, DeliberatelyTakesTheEndOfAListedNameForSupported)
{
    if (!makeMainContextWithExtensions("+WGL_ARB_multisample -GL_ARB_multisample"))
        return;
    const EveryEntryPoint noneMissing;
    EXPECT_TRUE(m_Loader.request("GL_ARB_multisample"));
    EXPECT_NE(glSampleCoverageARB, nullptr);
}

// --- versions ---

struct DriverVersion
{
    const char* begin;
    const char* refused; // of the four versions, each followed by a blank
};

void PrintTo(const DriverVersion& version, std::ostream* stream)
{
    *stream << version.begin;
}

class GLExtensionLoaderVersionGLTest : public GLExtensionLoaderGLTest, public testing::WithParamInterface<DriverVersion>
{};

TEST_P(GLExtensionLoaderVersionGLTest, RefusesWhatIsLaterThanTheDriver)
{
    if (!makeMainContextOfVersion(GetParam().begin))
        return;
    m_Loader.request("GL_VERSION_1_2 GL_VERSION_1_3 GL_VERSION_1_4 GL_VERSION_1_5");
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), GetParam().refused);
    const std::string refused = GetParam().refused;
    EXPECT_EQ(glTexImage3D == nullptr, refused.find("1_2") != refused.npos);
    EXPECT_EQ(glActiveTexture == nullptr, refused.find("1_3") != refused.npos);
    EXPECT_EQ(glBlendFuncSeparate == nullptr, refused.find("1_4") != refused.npos);
    EXPECT_EQ(glBindBuffer == nullptr, refused.find("1_5") != refused.npos);
}

INSTANTIATE_TEST_SUITE_P(Drivers, GLExtensionLoaderVersionGLTest,
    testing::Values(DriverVersion{"1.1", "GL_VERSION_1_2 GL_VERSION_1_3 GL_VERSION_1_4 GL_VERSION_1_5 "},
        DriverVersion{"1.2", "GL_VERSION_1_3 GL_VERSION_1_4 GL_VERSION_1_5 "},
        DriverVersion{"1.3", "GL_VERSION_1_4 GL_VERSION_1_5 "}, DriverVersion{"1.4", "GL_VERSION_1_5 "},
        DriverVersion{"1.5", ""}, DriverVersion{"2.1", ""}),
    [](const auto& instance) {
        const std::string begin = instance.param.begin;
        return "Version" + begin.substr(0, 1) + "_" + begin.substr(2);
    });

TEST_F(GLExtensionLoaderGLTest, GoesByTheVersionOfTheMomentWhateverTheExtensions)
{
    if (!makeMainContextWithExtensions("+GL_VERSION_1_2"))
        return;
    m_Loader.request(nullptr);
    mainContext().release();
    EXPECT_THAT(
        callsOf([this] { EXPECT_FALSE(m_Loader.request("GL_VERSION_1_2")); }), ElementsAre("glGetString(GL_VERSION)"));
}

// --- lists of names ---

TEST_F(GLExtensionLoaderGLTest, SplitsAListAtBlanksTabsAndLineFeeds)
{
    if (!makeMainContext())
        return;
    EXPECT_TRUE(m_Loader.request("\n GL_EXT_texture3D\tGL_EXT_point_parameters\n\nGL_ARB_vertex_buffer_object \t"));
    EXPECT_NE(glTexImage3DEXT, nullptr);
    EXPECT_NE(glPointParameterfvEXT, nullptr);
    EXPECT_NE(glGetBufferPointervARB, nullptr);
    EXPECT_EQ(glActiveTextureARB, nullptr) << "was not asked for";
}

TEST_F(GLExtensionLoaderGLTest, KeepsTheNamesThatFailedInTheLastRequest)
{
    if (!makeMainContext())
        return;
    EXPECT_FALSE(m_Loader.request("GL_FOO\tGL_EXT_texture3D\nGL_BAR"));
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_FOO GL_BAR ");
    EXPECT_NE(glTexImage3DEXT, nullptr) << "a failure does not end the request";

    m_Loader.request(nullptr);
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_FOO GL_BAR ") << "no list, no request";

    EXPECT_FALSE(m_Loader.request("GL_BAZ"));
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_BAZ ");

    EXPECT_TRUE(m_Loader.request(""));
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "");
}

TEST_F(GLExtensionLoaderGLTest, FailsForASupportedExtensionThatItDoesNotKnow)
{
    if (!makeMainContextWithExtensions("+GL_EXT_vertex_shader +WGL_ARB_extension_string"))
        return;
    m_Loader.request(nullptr);
    EXPECT_THAT(callsOf([this] { EXPECT_FALSE(m_Loader.request("GL_EXT_vertex_shader WGL_ARB_extension_string")); }),
        IsEmpty());
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_EXT_vertex_shader WGL_ARB_extension_string ");
}

// --- loading ---

TEST_F(GLExtensionLoaderGLTest, StopsAtTheFirstEntryPointThatIsMissing)
{
    const WithheldEntryPoint missing("wglAllocateMemoryNV");
    if (!makeMainContextWithExtensions("+GL_NV_vertex_array_range"))
        return;
    m_Loader.request(nullptr);
    EXPECT_THAT(callsOf([this] { EXPECT_FALSE(m_Loader.request("GL_NV_vertex_array_range")); }),
        testing::ElementsAreArray(
            fetches({"glFlushVertexArrayRangeNV", "glVertexArrayRangeNV", "wglAllocateMemoryNV"})));
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), "GL_NV_vertex_array_range ");
    EXPECT_NE(glFlushVertexArrayRangeNV, nullptr);
    EXPECT_NE(glVertexArrayRangeNV, nullptr);
    EXPECT_EQ(wglAllocateMemoryNV, nullptr);
    EXPECT_EQ(wglFreeMemoryNV, nullptr);
}

TEST_F(GLExtensionLoaderGLTest, LoadsEveryEntryPointOfAnExtensionIntoThePointerOfItsName)
{
    if (!makeMainContext())
        return;
    ASSERT_TRUE(GLExtensionLoader::load("GL_ARB_vertex_buffer_object"));
    // A function that no other does the work of, through each of the pointers.
    GLuint buffer = 0;
    glGenBuffersARB(1, &buffer);
    glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffer);
    EXPECT_EQ(glIsBufferARB(buffer), GL_TRUE);
    const unsigned char bytes[4] = {1, 2, 3, 4};
    glBufferDataARB(GL_ARRAY_BUFFER_ARB, sizeof(bytes), nullptr, GL_STATIC_DRAW_ARB);
    glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, sizeof(bytes), bytes);
    GLint size = 0;
    glGetBufferParameterivARB(GL_ARRAY_BUFFER_ARB, GL_BUFFER_SIZE_ARB, &size);
    EXPECT_EQ(size, 4);
    void* mapped = glMapBufferARB(GL_ARRAY_BUFFER_ARB, GL_READ_ONLY_ARB);
    void* pointer = nullptr;
    glGetBufferPointervARB(GL_ARRAY_BUFFER_ARB, GL_BUFFER_MAP_POINTER_ARB, &pointer);
    EXPECT_NE(mapped, nullptr);
    EXPECT_EQ(pointer, mapped);
    EXPECT_EQ(glUnmapBufferARB(GL_ARRAY_BUFFER_ARB), GL_TRUE);
    unsigned char read[4] = {};
    glGetBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, sizeof(read), read);
    EXPECT_THAT(read, ElementsAre(1, 2, 3, 4));
    glDeleteBuffersARB(1, &buffer);
    EXPECT_EQ(glIsBufferARB(buffer), GL_FALSE);
}

TEST_F(GLExtensionLoaderGLTest, KnowsTheEntryPointsOfEachExtension)
{
    struct Extension
    {
        const char* name;
        std::size_t entryPoints;
        const char* first;
        const char* last;
    };
    constexpr Extension extensions[] = {
        {"GL_ARB_matrix_palette", 5, "glCurrentPaletteMatrixARB", "glMatrixIndexPointerARB"},
        {"GL_ARB_multisample", 1, "glSampleCoverageARB", "glSampleCoverageARB"},
        {"GL_ARB_multitexture", 34, "glMultiTexCoord1dARB", "glClientActiveTextureARB"},
        {"GL_ARB_occlusion_query", 8, "glGenQueriesARB", "glGetQueryObjectuivARB"},
        {"GL_ARB_point_parameters", 2, "glPointParameterfARB", "glPointParameterfvARB"},
        {"GL_ARB_shader_objects", 39, "glDeleteObjectARB", "glGetShaderSourceARB"},
        {"GL_ARB_texture_compression", 7, "glCompressedTexImage3DARB", "glGetCompressedTexImageARB"},
        {"GL_ARB_transpose_matrix", 4, "glLoadTransposeMatrixfARB", "glMultTransposeMatrixdARB"},
        {"GL_ARB_vertex_buffer_object", 11, "glBindBufferARB", "glGetBufferPointervARB"},
        {"GL_ARB_vertex_program", 62, "glVertexAttrib1dARB", "glIsProgramARB"},
        {"GL_ARB_vertex_shader", 46, "glVertexAttrib1dARB", "glGetVertexAttribPointervARB"},
        {"GL_ARB_window_pos", 16, "glWindowPos2dARB", "glWindowPos3svARB"},
        {"GL_ATI_draw_buffers", 1, "glDrawBuffersATI", "glDrawBuffersATI"},
        {"GL_EXT_blend_color", 1, "glBlendColorEXT", "glBlendColorEXT"},
        {"GL_EXT_blend_equation_separate", 1, "glBlendEquationSeparateEXT", "glBlendEquationSeparateEXT"},
        {"GL_EXT_blend_func_separate", 1, "glBlendFuncSeparateEXT", "glBlendFuncSeparateEXT"},
        {"GL_EXT_blend_minmax", 1, "glBlendEquationEXT", "glBlendEquationEXT"},
        {"GL_EXT_compiled_vertex_array", 2, "glLockArraysEXT", "glUnlockArraysEXT"},
        {"GL_EXT_depth_bounds_test", 1, "glDepthBoundsEXT", "glDepthBoundsEXT"},
        {"GL_EXT_draw_range_elements", 1, "glDrawRangeElementsEXT", "glDrawRangeElementsEXT"},
        {"GL_EXT_fog_coord", 5, "glFogCoordfEXT", "glFogCoordPointerEXT"},
        {"GL_EXT_multi_draw_arrays", 2, "glMultiDrawArraysEXT", "glMultiDrawElementsEXT"},
        {"GL_EXT_paletted_texture", 4, "glColorTableEXT", "glGetColorTableParameterfvEXT"},
        {"GL_EXT_point_parameters", 2, "glPointParameterfEXT", "glPointParameterfvEXT"},
        {"GL_EXT_secondary_color", 17, "glSecondaryColor3bEXT", "glSecondaryColorPointerEXT"},
        {"GL_EXT_stencil_two_side", 1, "glActiveStencilFaceEXT", "glActiveStencilFaceEXT"},
        {"GL_EXT_texture3D", 1, "glTexImage3DEXT", "glTexImage3DEXT"},
        {"GL_EXT_texture_object", 6, "glAreTexturesResidentEXT", "glPrioritizeTexturesEXT"},
        {"GL_EXT_vertex_array", 9, "glArrayElementEXT", "glVertexPointerEXT"},
        {"GL_EXT_vertex_weighting", 3, "glVertexWeightfEXT", "glVertexWeightPointerEXT"},
        {"GL_NV_fence", 7, "glDeleteFencesNV", "glSetFenceNV"},
        {"GL_NV_fragment_program", 6, "glProgramNamedParameter4fNV", "glGetProgramNamedParameterdvNV"},
        {"GL_NV_half_float", 46, "glVertex2hNV", "glVertexAttribs4hvNV"},
        {"GL_NV_occlusion_query", 7, "glGenOcclusionQueriesNV", "glGetOcclusionQueryuivNV"},
        {"GL_NV_pixel_data_range", 2, "glPixelDataRangeNV", "glFlushPixelDataRangeNV"},
        {"GL_NV_point_sprite", 2, "glPointParameteriNV", "glPointParameterivNV"},
        {"GL_NV_primitive_restart", 2, "glPrimitiveRestartNV", "glPrimitiveRestartIndexNV"},
        {"GL_NV_register_combiners", 13, "glCombinerParameterfvNV", "glGetFinalCombinerInputParameterivNV"},
        {"GL_NV_register_combiners2", 2, "glCombinerStageParameterfvNV", "glGetCombinerStageParameterfvNV"},
        {"GL_NV_vertex_array_range", 4, "glFlushVertexArrayRangeNV", "wglFreeMemoryNV"},
        {"GL_NV_vertex_program", 64, "glAreProgramsResidentNV", "glVertexAttribs4ubvNV"},
        {"GL_VERSION_1_2", 4, "glDrawRangeElements", "glCopyTexSubImage3D"},
        {"GL_VERSION_1_3", 46, "glActiveTexture", "glMultTransposeMatrixd"},
        {"GL_VERSION_1_4", 47, "glBlendFuncSeparate", "glBlendEquation"},
        {"GL_VERSION_1_5", 19, "glGenQueries", "glGetBufferPointerv"},
        {"GL_WIN_swap_hint", 1, "glAddSwapHintRectWIN", "glAddSwapHintRectWIN"},
        {"WGL_ARB_buffer_region", 4, "wglCreateBufferRegionARB", "wglRestoreBufferRegionARB"},
        {"WGL_ARB_extensions_string", 1, "wglGetExtensionsStringARB", "wglGetExtensionsStringARB"},
        {"WGL_ARB_pbuffer", 5, "wglCreatePbufferARB", "wglQueryPbufferARB"},
        {"WGL_ARB_pixel_format", 3, "wglGetPixelFormatAttribivARB", "wglChoosePixelFormatARB"},
        {"WGL_ARB_render_texture", 3, "wglBindTexImageARB", "wglSetPbufferAttribARB"},
        {"WGL_EXT_extensions_string", 1, "wglGetExtensionsStringEXT", "wglGetExtensionsStringEXT"},
        {"WGL_EXT_swap_control", 2, "wglSwapIntervalEXT", "wglGetSwapIntervalEXT"},
    };
    if (!makeMainContext())
        return;
    const EveryEntryPoint noneMissing;
    for (const Extension& extension : extensions) {
        SCOPED_TRACE(extension.name);
        const std::vector<std::string> calls = loadingCalls(extension.name);
        ASSERT_EQ(calls.size(), extension.entryPoints);
        EXPECT_EQ(calls.front(), fetches({extension.first}).front());
        EXPECT_EQ(calls.back(), fetches({extension.last}).front());
    }
}

TEST_F(GLExtensionLoaderGLTest, KnowsTheExtensionsWithoutEntryPoints)
{
    constexpr const char* extensions[] = {
        "GL_ARB_depth_texture",
        "GL_ARB_fragment_program",
        "GL_ARB_fragment_program_shadow",
        "GL_ARB_fragment_shader",
        "GL_ARB_point_sprite",
        "GL_ARB_shadow",
        "GL_ARB_shadow_ambient",
        "GL_ARB_texture_border_clamp",
        "GL_ARB_texture_cube_map",
        "GL_ARB_texture_env_add",
        "GL_ARB_texture_env_combine",
        "GL_ARB_texture_env_dot3",
        "GL_ARB_texture_mirrored_repeat",
        "GL_ARB_texture_non_power_of_two",
        "GL_ATI_texture_float",
        "GL_EXT_abgr",
        "GL_EXT_bgra",
        "GL_EXT_blend_subtract",
        "GL_EXT_packed_pixels",
        "GL_EXT_pixel_buffer_object",
        "GL_EXT_rescale_normal",
        "GL_EXT_separate_specular_color",
        "GL_EXT_shadow_funcs",
        "GL_EXT_shared_texture_palette",
        "GL_EXT_stencil_wrap",
        "GL_EXT_texture_env_add",
        "GL_EXT_texture_env_combine",
        "GL_EXT_texture_env_dot3",
        "GL_EXT_texture_filter_anisotropic",
        "GL_EXT_texture_lod_bias",
        "GL_HP_occlusion_test",
        "GL_NV_blend_square",
        "GL_NV_copy_depth_to_color",
        "GL_NV_depth_clamp",
        "GL_NV_float_buffer",
        "GL_NV_fog_distance",
        "GL_NV_fragment_program2",
        "GL_NV_light_max_exponent",
        "GL_NV_multisample_filter_hint",
        "GL_NV_packed_depth_stencil",
        "GL_NV_texgen_reflection",
        "GL_NV_texture_compression_vtc",
        "GL_NV_texture_env_combine4",
        "GL_NV_texture_expand_normal",
        "GL_NV_texture_rectangle",
        "GL_NV_texture_shader",
        "GL_NV_texture_shader2",
        "GL_NV_texture_shader3",
        "GL_NV_vertex_array_range2",
        "GL_NV_vertex_program1_1",
        "GL_NV_vertex_program2",
        "GL_NV_vertex_program2_option",
        "GL_NV_vertex_program3",
        "GL_SGIS_generate_mipmap",
        "GL_SGIS_texture_lod",
        "GL_SGIX_depth_texture",
        "GL_SGIX_shadow",
        "WGL_ATI_pixel_format_float",
    };
    for (const char* extension : extensions)
        EXPECT_THAT(callsOf([=] { EXPECT_TRUE(GLExtensionLoader::load(extension)) << extension; }), IsEmpty());
}

TEST_F(GLExtensionLoaderGLTest, KnowsNoOtherNames)
{
    if (!makeMainContext())
        return;
    for (const char* name : {"GL_EXT_vertex_shader", "WGL_ARB_extension_string", "GL_EXT_framebuffer_object",
             "GL_VERSION_1_1", "GL_VERSION_2_0", "GL_ARB_multitextur", "glTexImage3DEXT", ""})
        EXPECT_THAT(callsOf([=] { EXPECT_FALSE(GLExtensionLoader::load(name)) << name; }), IsEmpty());
}

} // namespace
} // namespace tavo
