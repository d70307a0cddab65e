#include <Cg/cg.h>

#include "tests/support/RecordedCall.h"

#include <Cg/cgGL.h>

// The functions of the Cg runtime that are recorded.

namespace {

std::string cgName(CGenum value)
{
    const char* name = cgGetEnumString(value);
    return name ? name : tavo::format::numberText(static_cast<int>(value));
}

std::string profileName(CGprofile profile)
{
    switch (profile) {
#define PROFILE(name)                                                                                                  \
    case name: return #name;
        PROFILE(CG_PROFILE_VP20)
        PROFILE(CG_PROFILE_FP20)
        PROFILE(CG_PROFILE_VP30)
        PROFILE(CG_PROFILE_FP30)
        PROFILE(CG_PROFILE_ARBVP1)
        PROFILE(CG_PROFILE_FP40)
        PROFILE(CG_PROFILE_ARBFP1)
        PROFILE(CG_PROFILE_VP40)
#undef PROFILE
    default: return tavo::format::numberText(static_cast<int>(profile));
    }
}

std::string cgGLName(CGGLenum value)
{
    switch (value) {
#define CG_GL_ENUMERANT(name)                                                                                          \
    case name: return #name;
        CG_GL_ENUMERANT(CG_GL_MATRIX_IDENTITY)
        CG_GL_ENUMERANT(CG_GL_MATRIX_TRANSPOSE)
        CG_GL_ENUMERANT(CG_GL_MATRIX_INVERSE)
        CG_GL_ENUMERANT(CG_GL_MATRIX_INVERSE_TRANSPOSE)
        CG_GL_ENUMERANT(CG_GL_MODELVIEW_MATRIX)
        CG_GL_ENUMERANT(CG_GL_PROJECTION_MATRIX)
        CG_GL_ENUMERANT(CG_GL_TEXTURE_MATRIX)
        CG_GL_ENUMERANT(CG_GL_MODELVIEW_PROJECTION_MATRIX)
        CG_GL_ENUMERANT(CG_GL_VERTEX)
        CG_GL_ENUMERANT(CG_GL_FRAGMENT)
#undef CG_GL_ENUMERANT
    default: return tavo::format::numberText(static_cast<int>(value));
    }
}

using CgEnum = tavo::format::As<cgName>;
using CgGLEnum = tavo::format::As<cgGLName>;
using Profile = tavo::format::As<profileName>;

} // namespace

using namespace tavo::format; // NOLINT(google-build-using-namespace): a table reads best without prefixes

VIREO_RECORD(cgCreateContext)
VIREO_RECORD(cgDestroyContext, Value)
VIREO_RECORD(cgCreateProgram, Value, CgEnum, Text, Profile, Text, Value)
VIREO_RECORD(cgDestroyProgram, Value)
VIREO_RECORD(cgIsProgram, Value)
VIREO_RECORD(cgGetNamedParameter, Value, Text)
VIREO_RECORD(cgGetLastListing, Value)
VIREO_RECORD(cgGetError)

VIREO_RECORD(cgGLGetLatestProfile, CgGLEnum)
VIREO_RECORD(cgGLLoadProgram, Value)
VIREO_RECORD(cgGLBindProgram, Value)
VIREO_RECORD(cgGLEnableProfile, Profile)
VIREO_RECORD(cgGLDisableProfile, Profile)
VIREO_RECORD(cgGLSetParameter1fv, Value, Vector<1>)
VIREO_RECORD(cgGLSetParameter2fv, Value, Vector<2>)
VIREO_RECORD(cgGLSetParameter3fv, Value, Vector<3>)
VIREO_RECORD(cgGLSetParameter4fv, Value, Vector<4>)
VIREO_RECORD(cgGLSetMatrixParameterfc, Value, Matrix)
VIREO_RECORD(cgGLSetMatrixParameterfr, Value, Matrix)
VIREO_RECORD(cgGLSetStateMatrixParameter, Value, CgGLEnum, CgGLEnum)
