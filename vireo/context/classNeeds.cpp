#include "vireo/context/classNeeds.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <set>

#include "tavo/base/debug/DebugOutput.h"
#include "vireo/context/GLExtensionLoader.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

constexpr const char* UNITS = "GL_ARB_multitexture";
constexpr const char* RECTANGLES = "GL_ARB_texture_rectangle";
constexpr const char* BUFFERS = "GL_ARB_vertex_buffer_object";
constexpr const char* FRAMEBUFFERS = "GL_EXT_framebuffer_object";
constexpr const char* DEPTH_TEXTURES = "GL_ARB_depth_texture";
constexpr const char* VERTEX_PROGRAMS = "GL_ARB_vertex_program";
constexpr const char* FRAGMENT_PROGRAMS = "GL_ARB_fragment_program";

constexpr const char* ENDS_ON_USE = "the first call that binds one ends the process";
constexpr const char* ENDS_AT_ONCE = "making one ends the process";
constexpr const char* REFUSED_BY_GL = "GL refuses to make it, and it cannot be drawn with";
constexpr const char* RETURNS_FALSE = "create() returns false";
constexpr const char* THROWS = "drawing throws an exception that says so";
constexpr const char* STAY_EMPTY = "their views stay empty and say so";

std::vector<ClassNeeds> makeClassNeeds()
{
    return {
        {"GLTexture2D", {{UNITS, ENDS_ON_USE}}},
        {"GLTextureRect", {{UNITS, ENDS_ON_USE}, {RECTANGLES, REFUSED_BY_GL}}},
        {"GLTexture3D", {{UNITS, ENDS_ON_USE}, {"GL_EXT_texture3D", "giving it texels ends the process"}}},
        {"GLTextureCube", {{UNITS, ENDS_ON_USE}, {"GL_ARB_texture_cube_map", REFUSED_BY_GL}}},
        {"GLVertexBuffer", {{BUFFERS, ENDS_AT_ONCE}}},
        {"GLTemplatedIndexBuffer", {{BUFFERS, ENDS_AT_ONCE}}},
        {"GLGeometryList", {{BUFFERS, "compiling one ends the process"}}},
        {"GLSimpleObjectContainer", {}},
        {"GLHelper", {}},
        {"GLShaderARB for vertices", {{VERTEX_PROGRAMS, ENDS_AT_ONCE}}},
        {"GLShaderARB for fragments",
            {{VERTEX_PROGRAMS, ENDS_AT_ONCE},
                {FRAGMENT_PROGRAMS, "it takes any text for a good program, and drawing goes on without it"}}},
        {"GLRenderTextureFBO", {{FRAMEBUFFERS, "making a target ends the process"}, {UNITS, ENDS_ON_USE}}},
        {"GLRenderTextureCache", {{FRAMEBUFFERS, "making a target ends the process"}, {UNITS, ENDS_ON_USE}}},
        {"GLRenderTargetFBO", {{FRAMEBUFFERS, RETURNS_FALSE}, {UNITS, RETURNS_FALSE}, {RECTANGLES, RETURNS_FALSE},
                                  {DEPTH_TEXTURES, RETURNS_FALSE}}},
        {"GLImage", {{FRAMEBUFFERS, "setting one up ends the process"}, {UNITS, ENDS_ON_USE},
                        {RECTANGLES, "pictures cannot be uploaded"}}},
        {"Tex2dVolumeRenderer", {{UNITS, THROWS}}},
        {"SliceVolumeRenderer", {{UNITS, THROWS}}},
        {"GLEventDisplayer", {}},
        {"GLGraphDisplayer", {}},
        {"GLPointCloudDisplayer", {}},
        {"scenes of libvireoshow", {{FRAMEBUFFERS, STAY_EMPTY}, {UNITS, STAY_EMPTY}, {RECTANGLES, STAY_EMPTY},
                                       {DEPTH_TEXTURES, STAY_EMPTY}, {BUFFERS, STAY_EMPTY}}},
    };
}

// Mesa drops others together with the one that is named.
bool hidesExtensions()
{
    const char* const changes = std::getenv("MESA_EXTENSION_OVERRIDE");
    return changes && std::string_view(changes).find('-') != std::string_view::npos;
}

} // namespace

const std::vector<ClassNeeds>& classNeeds()
{
    static const std::vector<ClassNeeds> needs = makeClassNeeds();
    return needs;
}

std::string sayMissing(const ClassNeeds& needs, const HasExtension& has, const std::string& who)
{
    std::string missing;
    const char* without = "";
    for (const ClassNeeds::Need& need : needs.needs) {
        if (has(need.extension))
            continue;
        if (missing.empty())
            without = need.without;
        missing += (missing.empty() ? who + " has no " : ", no ") + need.extension;
    }
    return missing.empty() ? missing : missing + ": " + without;
}

std::string adviceOnMissing(bool anyIsListed)
{
    if (!anyIsListed)
        return "make the first GLContext while a context of the compatibility profile is current";
    if (hidesExtensions())
        return "unset MESA_EXTENSION_OVERRIDE, which hides extensions";
    return "install the newest driver of the graphics card, or Mesa's, which can draw on the processor";
}

void reportMissing(std::string_view className)
{
    static std::mutex mutex;
    static std::set<std::string_view> asked;
    const auto needs = std::find_if(classNeeds().begin(), classNeeds().end(),
        [className](const ClassNeeds& other) { return other.name == className; });
    {
        const std::scoped_lock lock(mutex);
        if (needs == classNeeds().end() || !asked.insert(needs->name).second)
            return;
    }
    const auto has = [](const char* extension) { return isExtensionSupported(extension); };
    const std::string missing = sayMissing(*needs, has);
    if (missing.empty())
        return;
    const bool anyIsListed = GLExtensionLoader::getInstance().getSupportedExtensions().find("GL_") != std::string::npos;
    debugOutput << needs->name << ": " << missing << ". To do: " << adviceOnMissing(anyIsListed)
                << "; vireo-info says more.\n";
}

} // namespace tavo
