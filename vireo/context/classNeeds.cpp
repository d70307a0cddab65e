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
constexpr const char* NOT_LOADED = "compile() succeeds, but the program is not loaded";
constexpr const char* THROWS = "drawing throws an exception that says so";
constexpr const char* STAY_EMPTY = "their views stay empty and say so";

std::vector<ClassNeeds> makeClassNeeds()
{
    return {
        {"GLTexture2D", {{UNITS, ENDS_ON_USE}}},
        {"GLTextureRect", {{UNITS, ENDS_ON_USE}, {RECTANGLES, REFUSED_BY_GL}}},
        {"GLTexture3D", {{UNITS, ENDS_ON_USE}, {"GL_EXT_texture3D", "giving it texels ends the process"}}},
        {"GLTextureCube", {{UNITS, ENDS_ON_USE}, {"GL_ARB_texture_cube_map", REFUSED_BY_GL}}},
        {"GLBuffer", {{BUFFERS, ENDS_AT_ONCE}}},
        {"GLVertexBuffer", {{BUFFERS, ENDS_AT_ONCE}}},
        {"GLTemplatedIndexBuffer", {{BUFFERS, ENDS_AT_ONCE}}},
        {"GLGeometryList", {{BUFFERS, "compiling one ends the process"}}},
        {"GLSimpleObjectContainer", {}},
        {"GLHelper", {}},
        {"GLShaderARB for vertices", {{VERTEX_PROGRAMS, ENDS_AT_ONCE}}},
        {"GLShaderARB for fragments",
            {{VERTEX_PROGRAMS, ENDS_AT_ONCE},
                {FRAGMENT_PROGRAMS, "it takes any text for a good program, and drawing goes on without it"}}},
        {"GLShaderCG for vertices", {{VERTEX_PROGRAMS, NOT_LOADED}}},
        {"GLShaderCG for fragments", {{FRAGMENT_PROGRAMS, NOT_LOADED}}},
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
    static const auto* const needs = new std::vector<ClassNeeds>(makeClassNeeds()); // for reports behind main(), too
    return *needs;
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

const char* const CORE_PROFILE_ONLY = "the core profile lacks the functions that it draws with";
const char* const GET_COMPATIBILITY = "ask for the compatibility profile, or for OpenGL 2.1, where the context is made";
const char* const UNSEEN_BY_CG = "the Cg runtime does not see this context";
const char* const GET_SEEN_BY_CG = "use a context of the compatibility profile that is made through GLX: under X, "
                                   "without QT_XCB_GL_INTEGRATION; under "
                                   "Wayland, with QT_QPA_PLATFORM=xcb";

bool reportMissing(std::string_view className)
{
    const auto needs = std::find_if(classNeeds().begin(), classNeeds().end(),
        [className](const ClassNeeds& other) { return other.name == className; });
    if (needs == classNeeds().end())
        return true;
    const std::string missing =
        sayMissing(*needs, [](const char* extension) { return isExtensionSupported(extension); });
    if (missing.empty())
        return true;
    const bool anyIsListed = GLExtensionLoader::getInstance().getSupportedExtensions().find("GL_") != std::string::npos;
    reportRefusal(needs->name, missing, adviceOnMissing(anyIsListed));
    return true;
}

void reportRefusal(const std::string& className, const std::string& finding, const std::string& advice)
{
    static std::mutex mutex;
    static auto* const reported = new std::set<std::string>; // objects may be made behind main()
    {
        const std::scoped_lock lock(mutex);
        if (!reported->insert(className).second)
            return;
    }
    debugOutput << className << ": " << finding << ". To do: " << advice << "; vireo-info says more.\n";
}

} // namespace tavo
