#include "vireo/context/GLExtensions.h"

#include "vireo/context/GLExtensionLoader.h"
#include "vireo/context/sharedByContexts.h"

namespace tavo {

#define VIREO_GL_ENTRY_POINT(name, ...) std::type_identity_t<__VA_ARGS__> name = nullptr;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"

bool glExtensionsInitialized = false;

void initGLExtensions()
{
    const SharedLock lock(sharedByContexts());
    if (glExtensionsInitialized)
        return;
    glExtensionsInitialized = true;

    // Two of the names are deliberately unknown to the loader, and so never loaded: GL_EXT_vertex_shader, and
    // WGL_ARB_extension_string, which lacks the s of the published name.
    constexpr const char* extensions[] = {
        "GL_NV_vertex_program",
        "GL_EXT_vertex_shader",
        "GL_HP_occlusion_test",
        "GL_EXT_compiled_vertex_array",
        "GL_NV_vertex_array_range",
        "GL_EXT_point_parameters",
        "GL_EXT_texture3D",
        "GL_ARB_vertex_program",
        "GL_ARB_fragment_program",
        "GL_ARB_vertex_buffer_object",
        "GL_ARB_multitexture",
        "GL_ARB_texture_cube_map",
        "WGL_ARB_extension_string",
        "WGL_ARB_pixel_format",
        "WGL_ARB_pbuffer",
    };
    GLExtensionLoader& loader = GLExtensionLoader::getInstance();
    for (const char* extension : extensions)
        loader.request(extension);
    GLExtensionLoader::loadFramebufferObjects();
}

bool isExtensionSupported(std::string_view name)
{
    return GLExtensionLoader::getInstance().isUsable(name);
}

} // namespace tavo
