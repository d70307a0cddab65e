#include "vireo/machine/cgTrial.h"

#ifdef VIREO_HAVE_CG
#include <Cg/cgGL.h>
#endif

namespace tavo {

#ifdef VIREO_HAVE_CG

namespace {

constexpr const char* VERTEX_PROGRAM = "float4 main(float4 p : POSITION) : POSITION { return p; }";
constexpr const char* FRAGMENT_PROGRAM = "float4 main() : COLOR { return float4(1, 0, 0, 1); }";

// In a Cg context of its own, so that nothing of it is left.
bool compiles(CGprofile profile, const char* source)
{
    const CGcontext context = cgCreateContext();
    const CGprogram program = cgCreateProgram(context, CG_SOURCE, source, profile, "main", nullptr);
    const bool isCompiled = program && cgIsProgram(program);
    cgDestroyContext(context);
    return isCompiled;
}

} // namespace

bool isBuiltWithCg()
{
    return true;
}

std::string getCgVersion()
{
    const char* const version = cgGetString(CG_VERSION);
    return version ? version : "";
}

std::vector<CgProfileTrial> tryCgProfiles()
{
    std::vector<CgProfileTrial> trials;
    for (const CGprofile profile : {CG_PROFILE_ARBVP1, CG_PROFILE_VP20, CG_PROFILE_VP30, CG_PROFILE_VP40,
             CG_PROFILE_ARBFP1, CG_PROFILE_FP30, CG_PROFILE_FP40}) {
        const bool isForVertices = cgGetProfileDomain(profile) == CG_VERTEX_DOMAIN;
        const bool works = cgGLIsProfileSupported(profile) == CG_TRUE &&
                           compiles(profile, isForVertices ? VERTEX_PROGRAM : FRAGMENT_PROGRAM);
        trials.push_back({cgGetProfileString(profile), isForVertices, works});
    }
    return trials;
}

#else

bool isBuiltWithCg()
{
    return false;
}

std::string getCgVersion()
{
    return "";
}

std::vector<CgProfileTrial> tryCgProfiles()
{
    return {};
}

#endif

} // namespace tavo
