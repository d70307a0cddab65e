#include "vireo/machine/describeDriver.h"

#include <array>
#include <map>

#include "vireo/context/classNeeds.h"
#include "vireo/machine/DriverTrial.h"
#include "vireo/machine/cgTrial.h"
#include "vireo/machine/waysToGL.h"

namespace tavo {

namespace {

using Part = TargetKind::Part;

constexpr unsigned int RECTANGLE = GL_TEXTURE_RECTANGLE_ARB;

const std::string NO_CONTEXT = "there is no OpenGL context";
const std::string GET_CONTEXT = "see the ways to OpenGL above";

// Everything that is told of one driver.
class DriverDescription
{
public:
    DriverDescription(std::string way, ReportLines& lines)
        : m_Way(std::move(way))
        , m_Lines(lines)
    {}

    void describe()
    {
        describeContext();
        describePrograms();
        describeCg();
        describeTargets();
        describeFloats();
        describeLimits();
        describeClasses();
    }

private:
    void describeContext();
    void describePrograms();
    void describeProgram(const char* subject, unsigned int target, const char* extension);
    void describeCg();
    void describeTargets();
    void describeFloats();
    void describeLimits();
    void describeClasses();
    void describeClass(const ClassNeeds& needs);
    void describeCgClass(const char* subject, bool isForVertices);
    void addTarget(const char* subject, bool works, const char* help);

    std::string advice() const { return m_Trial.hasCompatibilityProfile() ? adviceOnMissing(true) : GET_COMPATIBILITY; }
    std::string adviceOnProfile(const CgProfileTrial& profile) const;
    // Of an extension that classes need: that the driver lists it, and has done what it is for where that was tried.
    bool has(const char* extension) const;

    DriverTrial m_Trial;
    std::string m_Way;
    ReportLines& m_Lines;
    std::map<std::string, bool> m_Tried;
    std::vector<CgProfileTrial> m_CgProfiles;
    std::string m_RefusedTargets; // of those that GLRenderTextureFBO makes
};

bool isDrawnByProcessor(const std::string& renderer)
{
    for (const char* const name : {"llvmpipe", "softpipe", "GDI Generic", "Software Rasterizer"})
        if (renderer.find(name) != std::string::npos)
            return true;
    return false;
}

void DriverDescription::describeContext()
{
    m_Lines.begin("Driver");
    m_Lines.addFact("context", "made through " + m_Way);
    m_Lines.addFact("vendor", DriverTrial::getString(GL_VENDOR));
    const std::string renderer = DriverTrial::getString(GL_RENDERER);
    m_Lines.addFact("renderer", renderer,
        isDrawnByProcessor(renderer) ? "the processor draws: install the driver of the graphics card, if there is one"
                                     : "");
    m_Lines.addFact("version", DriverTrial::getString(GL_VERSION));
    m_Lines.addFact("shading language", DriverTrial::getString(GL_SHADING_LANGUAGE_VERSION));
    const bool isCompatible = m_Trial.hasCompatibilityProfile();
    m_Lines.add("compatibility profile", isCompatible,
        isCompatible ? "glBegin and the other functions of OpenGL 1 are there"
                     : "the context has the core profile only",
        GET_COMPATIBILITY);
    if (m_Trial.getNumErrorsBefore() > 0)
        m_Lines.addFact("pending errors", std::to_string(m_Trial.getNumErrorsBefore()) + " before the report",
            "call GLContext::debug() behind what the program draws");
}

void DriverDescription::describeProgram(const char* subject, unsigned int target, const char* extension)
{
    const bool works = m_Trial.takesProgram(target);
    m_Tried[extension] = works;
    std::string finding = works ? "compiled;" : std::string("the driver does not take one (") + extension + ")";
    constexpr std::array<std::pair<const char*, unsigned int>, 5> LIMITS{
        {{"instructions", GL_MAX_PROGRAM_INSTRUCTIONS_ARB}, {"temporaries", GL_MAX_PROGRAM_TEMPORARIES_ARB},
            {"parameters", GL_MAX_PROGRAM_PARAMETERS_ARB}, {"local", GL_MAX_PROGRAM_LOCAL_PARAMETERS_ARB},
            {"global", GL_MAX_PROGRAM_ENV_PARAMETERS_ARB}}};
    for (std::size_t i = 0; works && i < LIMITS.size(); ++i)
        finding += std::string(i == 0 ? " up to " : ", ") +
                   std::to_string(m_Trial.getProgramLimit(target, LIMITS[i].second)) + ' ' + LIMITS[i].first;
    m_Lines.add(subject, works, finding, advice());
}

void DriverDescription::describePrograms()
{
    m_Lines.begin("Programs");
    describeProgram("ARB vertex programs", GL_VERTEX_PROGRAM_ARB, "GL_ARB_vertex_program");
    describeProgram("ARB fragment programs", GL_FRAGMENT_PROGRAM_ARB, "GL_ARB_fragment_program");
}

std::string DriverDescription::adviceOnProfile(const CgProfileTrial& profile) const
{
    const bool isOfArb = std::string_view(profile.name).starts_with("arb");
    if (isOfArb)
        return advice();
    return std::string("use ") + (profile.isForVertices ? "arbvp1" : "arbfp1") + ", which needs no card of NVIDIA's";
}

void DriverDescription::describeCg()
{
    if (!isBuiltWithCg()) {
        m_Lines.add("Cg", false, "the library was built without the Cg runtime", GET_CG);
        return;
    }
    // The runtime of Linux sees no others, and asks for what the core profile does not have.
    const bool canAsk = m_Way != "EGL" && m_Trial.hasCompatibilityProfile();
    m_Lines.add("Cg", canAsk, canAsk ? "version " + getCgVersion() : UNSEEN_BY_CG, GET_SEEN_BY_CG);
    if (canAsk)
        m_CgProfiles = tryCgProfiles();
    for (const CgProfileTrial& profile : m_CgProfiles)
        m_Lines.add(std::string("Cg profile ") + profile.name, profile.works,
            profile.works ? "a program compiled" : "the driver lacks it", adviceOnProfile(profile));
}

void DriverDescription::addTarget(const char* subject, bool works, const char* help)
{
    m_Lines.add(subject, works, works ? "complete" : "the driver refuses it", help);
    if (!works)
        m_RefusedTargets += (m_RefusedTargets.empty() ? "" : ", ") + std::string(subject);
}

void DriverDescription::describeTargets()
{
    m_Lines.begin("Targets");
    const bool hasFramebuffers = m_Trial.hasFramebuffers();
    const bool hasRectangles = m_Trial.lists("GL_ARB_texture_rectangle");
    m_Tried["GL_EXT_framebuffer_object"] = hasFramebuffers;
    m_Lines.add("framebuffer objects", hasFramebuffers, hasFramebuffers ? "there" : "the driver makes none", advice());
    const auto tried = [&](const TargetKind& kind) {
        return (kind.textures != RECTANGLE || hasRectangles) && m_Trial.canDrawInto(kind);
    };
    addTarget("colours", tried({GL_TEXTURE_2D, GL_RGBA}), "draw into the window and copy from it");
    addTarget("colours in a rectangle", tried({RECTANGLE, GL_RGBA}), "use 2D targets");
    addTarget("depths alone", tried({GL_TEXTURE_2D, 0, Part::TEXTURE}), "use a target of colours with FLAG_DEPTH");
    addTarget("colours with depths", tried({GL_TEXTURE_2D, GL_RGBA, Part::BUFFER}), "leave FLAG_DEPTH out");
    addTarget("colours with stencil", tried({GL_TEXTURE_2D, GL_RGBA, Part::NONE, Part::BUFFER}),
        "leave FLAG_STENCIL out, and draw what needs it into the window");
    addTarget("colours with depths and stencil apart", tried({GL_TEXTURE_2D, GL_RGBA, Part::BUFFER, Part::BUFFER}),
        "use FLAG_DEPTH or FLAG_STENCIL, not both; a GLImage that is set up like one with depths stays empty");
    const bool hasBoth = tried({RECTANGLE, GL_RGBA, Part::TEXTURE});
    m_Lines.add("colours and depths in rectangles", hasBoth, hasBoth ? "complete" : "the driver refuses it",
        "use GLRenderTextureFBO with FLAG_DEPTH");
    const bool hasPacked = tried({GL_TEXTURE_2D, GL_RGBA, Part::PACKED});
    m_Lines.add("colours with depths and stencil in one", hasPacked, hasPacked ? "complete" : "the driver refuses it",
        "no class of the library makes such targets; draw what needs both into the window");
}

void DriverDescription::describeFloats()
{
    m_Lines.begin("Targets of floats");
    const bool hasRectangles = m_Trial.lists("GL_ARB_texture_rectangle");
    constexpr const char* ARB = "GL_ARB_texture_float";
    constexpr const char* NV = "GL_NV_float_buffer";
    const std::string OR_ARB = "not needed where ARB's formats work";
    const std::string BYTES = "use targets of bytes";
    const auto tell = [&](const char* subject, const char* extension, unsigned int textures, unsigned int format,
                          const std::string& help) {
        const bool isListed = m_Trial.lists(extension) && (textures != RECTANGLE || hasRectangles);
        const bool works = isListed && m_Trial.canDrawInto({textures, format});
        m_Lines.add(subject, works,
            works      ? "complete"
            : isListed ? "the driver refuses it"
                       : std::string("the driver has no ") + extension,
            isListed || help == OR_ARB ? help : advice());
    };
    tell("rectangle, 16 bits, NVIDIA's format", NV, RECTANGLE, GL_FLOAT_RGBA16_NV, OR_ARB);
    tell("rectangle, 32 bits, NVIDIA's format", NV, RECTANGLE, GL_FLOAT_RGBA32_NV, OR_ARB);
    tell("rectangle, 16 bits, ARB's format", ARB, RECTANGLE, GL_RGBA16F_ARB, BYTES);
    tell("rectangle, 32 bits, ARB's format", ARB, RECTANGLE, GL_RGBA32F_ARB, BYTES);
    tell("2D, 16 bits, ARB's format", ARB, GL_TEXTURE_2D, GL_RGBA16F_ARB, BYTES);
    tell("2D, 32 bits, ARB's format", ARB, GL_TEXTURE_2D, GL_RGBA32F_ARB, BYTES);
}

void DriverDescription::describeLimits()
{
    m_Lines.begin("Limits");
    const auto size = [&](unsigned int proxy, unsigned int limit) {
        return std::to_string(m_Trial.getLargestTexture(proxy, limit));
    };
    m_Lines.addFact("2D texture", size(GL_PROXY_TEXTURE_2D, GL_MAX_TEXTURE_SIZE) + " texels square");
    if (m_Trial.lists("GL_ARB_texture_rectangle"))
        m_Lines.addFact("rectangle texture",
            size(GL_PROXY_TEXTURE_RECTANGLE_ARB, GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB) + " texels square");
    if (m_Trial.lists("GL_EXT_texture3D"))
        m_Lines.addFact("3D texture", size(GL_PROXY_TEXTURE_3D, GL_MAX_3D_TEXTURE_SIZE) + " texels cubed");
    if (m_Trial.lists("GL_ARB_texture_cube_map"))
        m_Lines.addFact("cube map", size(GL_PROXY_TEXTURE_CUBE_MAP, GL_MAX_CUBE_MAP_TEXTURE_SIZE) + " texels square");
    m_Lines.addFact("target", std::to_string(m_Trial.getLongestTarget()) + " texels long");
    if (m_Trial.hasCompatibilityProfile() && m_Trial.lists("GL_ARB_multitexture"))
        m_Lines.addFact("texture units", std::to_string(DriverTrial::getNumber(GL_MAX_TEXTURE_UNITS_ARB)));
    if (m_Tried["GL_ARB_fragment_program"])
        m_Lines.addFact("texture units of fragment programs",
            std::to_string(DriverTrial::getNumber(GL_MAX_TEXTURE_IMAGE_UNITS_ARB)));
    m_Tried["GL_ARB_vertex_buffer_object"] = m_Trial.hasBuffers();
    m_Lines.add("buffer objects", m_Trial.hasBuffers(),
        m_Trial.hasBuffers() ? "written and read back" : "the driver makes none", advice());
}

bool DriverDescription::has(const char* extension) const
{
    const auto tried = m_Tried.find(extension);
    return tried != m_Tried.end() ? tried->second : m_Trial.lists(extension);
}

void DriverDescription::describeClass(const ClassNeeds& needs)
{
    const auto hasIt = [this](const char* extension) { return has(extension); };
    if (!m_Trial.hasCompatibilityProfile()) {
        const std::string missing = sayMissing(needs, hasIt, "the core profile");
        m_Lines.add(needs.name, false, missing.empty() ? CORE_PROFILE_ONLY : missing, GET_COMPATIBILITY);
        return;
    }
    std::string works = "works";
    if (std::string_view(needs.name) == "GLRenderTextureFBO") {
        works += "; 2D targets have bytes, whatever the flags say: floats need FLAG_RECTANGLE";
        if (!m_RefusedTargets.empty())
            works += "; create() returns false for " + m_RefusedTargets;
    }
    const std::string missing = sayMissing(needs, hasIt);
    m_Lines.add(needs.name, missing.empty(), missing.empty() ? works : missing, advice());
}

void DriverDescription::describeCgClass(const char* subject, bool isForVertices)
{
    std::string works;
    for (const CgProfileTrial& profile : m_CgProfiles)
        if (profile.works && profile.isForVertices == isForVertices)
            works += (works.empty() ? "works, with " : ", ") + std::string(profile.name);
    m_Lines.add(subject, !works.empty(),
        !works.empty()    ? works
        : isBuiltWithCg() ? "no profile works: compile() succeeds, but the program is not loaded"
                          : "the class is not in this library",
        "see Cg above, or use GLShaderARB");
}

void DriverDescription::describeClasses()
{
    m_Lines.begin("Classes");
    for (const ClassNeeds& needs : classNeeds()) {
        const std::string_view name = needs.name;
        if (name.starts_with("GLShaderCG"))
            describeCgClass(needs.name, name.ends_with("vertices"));
        else
            describeClass(needs);
    }
}

} // namespace

void describeDriver(const std::string& way, ReportLines& lines)
{
    DriverDescription(way, lines).describe();
}

void describeNoDriver(ReportLines& lines)
{
    lines.begin("Classes");
    for (const ClassNeeds& needs : classNeeds())
        lines.add(needs.name, false, NO_CONTEXT, GET_CONTEXT);
}

} // namespace tavo
