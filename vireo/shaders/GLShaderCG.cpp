#include "vireo/shaders/GLShaderCG.h"

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/wayToContext.h"
#include "vireo/shaders/ShaderConstant.h"

#include <Cg/cgGL.h>

namespace tavo {

namespace {

unsigned int targetOf(CGprofile profile)
{
    switch (profile) {
    case CG_PROFILE_VP20:
    case CG_PROFILE_VP30:
    case CG_PROFILE_ARBVP1:
    case CG_PROFILE_VP40: return GL_VERTEX_PROGRAM_ARB;
    case CG_PROFILE_FP30: return GL_FRAGMENT_PROGRAM_NV;
    case CG_PROFILE_FP40:
    case CG_PROFILE_ARBFP1: return GL_FRAGMENT_PROGRAM_ARB;
    default: return 0; // CG_PROFILE_FP20, too, is deliberately without a target
    }
}

void reportMissingOf(unsigned int target, GLContext* context)
{
    const std::string name = target == GL_VERTEX_PROGRAM_ARB ? "GLShaderCG for vertices" : "GLShaderCG for fragments";
    if (context && wayToContext(context->getRC()) == "EGL")
        reportRefusal(name, UNSEEN_BY_CG, GET_SEEN_BY_CG);
    else
        reportMissing(name);
}

void destroyProgram(CGprogram program)
{
    if (cgIsProgram(program))
        cgDestroyProgram(program);
}

} // namespace

GLShaderCG::GLShaderCG(GLContext* context, CGprofile profile)
    : GLShader(context)
    , profile(profile)
    , target(targetOf(profile))
{
    reportMissingOf(target, context);
}

GLShaderCG::~GLShaderCG()
{
    if (getContext())
        destroyProgram(program);
}

void GLShaderCG::onDeleteContext()
{
    requireContext("GLShaderCG::onDeleteContext() - invalid context");
    destroyProgram(program);
}

bool GLShaderCG::compile(const std::string& source)
{
    requireContext("GLShaderCG::compile() - invalid context");
    destroyProgram(program);
    program = nullptr;
    const CGcontext cg = getContext()->getCGContext();
    program = cgCreateProgram(cg, CG_SOURCE, source.c_str(), profile, "main", nullptr);
    if (program) {
        cgGLLoadProgram(program);
        lastError.clear();
        return true;
    }
    const char* const listing = cgGetLastListing(cg);
    lastError = listing ? listing : "unkown error"; // deliberately spelt so
    return false;
}

void GLShaderCG::bind()
{
    if (!program)
        return;
    glEnable(target);
    cgGLBindProgram(program);
    updateDefaultMatrices();
}

void GLShaderCG::updateDefaultMatrices()
{
    const auto update = [this](const char* name, CGGLenum matrix, CGGLenum transform) {
        cgGLSetStateMatrixParameter(getParameter(name), matrix, transform);
    };
    update("matMVP", CG_GL_MODELVIEW_PROJECTION_MATRIX, CG_GL_MATRIX_IDENTITY);
    update("matMV", CG_GL_MODELVIEW_MATRIX, CG_GL_MATRIX_IDENTITY);
    update("matMVinv", CG_GL_MODELVIEW_MATRIX, CG_GL_MATRIX_INVERSE);
    update("matMVinvtrans", CG_GL_MODELVIEW_MATRIX, CG_GL_MATRIX_INVERSE_TRANSPOSE);
    update("matMVtrans", CG_GL_MODELVIEW_MATRIX, CG_GL_MATRIX_TRANSPOSE);
}

void GLShaderCG::unbind()
{
    glDisable(target);
}

void GLShaderCG::setConstant(const ShaderConstant& constant)
{
    setParameterxf(constant.getName(), static_cast<unsigned int>(constant.getNumComponents()), constant.getDataPtr());
}

void GLShaderCG::setMatrix4f(const std::string& name, unsigned int /*index*/, float* matrix)
{
    setMatrixParameterc(name, matrix);
}

void GLShaderCG::setParameter1f(const std::string& name, float x)
{
    setParameterxf(name, 1, &x);
}

void GLShaderCG::setParameter2f(const std::string& name, float x, float y)
{
    const float v[] = {x, y};
    setParameterxf(name, 2, v);
}

void GLShaderCG::setParameter3f(const std::string& name, float x, float y, float z)
{
    const float v[] = {x, y, z};
    setParameterxf(name, 3, v);
}

void GLShaderCG::setParameter4f(const std::string& name, float x, float y, float z, float w)
{
    const float v[] = {x, y, z, w};
    setParameterxf(name, 4, v);
}

void GLShaderCG::setParameterxf(const std::string& name, unsigned int n, const float* v)
{
    switch (n) {
    case 1: cgGLSetParameter1fv(getParameter(name), v); break;
    case 2: cgGLSetParameter2fv(getParameter(name), v); break;
    case 3: cgGLSetParameter3fv(getParameter(name), v); break;
    case 4: cgGLSetParameter4fv(getParameter(name), v); break;
    default: break;
    }
}

void GLShaderCG::setMatrixParameterc(const std::string& name, float* m)
{
    cgGLSetMatrixParameterfc(getParameter(name), m);
}

void GLShaderCG::setMatrixParameterr(const std::string& name, float* m)
{
    cgGLSetMatrixParameterfr(getParameter(name), m);
}

CGprofile GLShaderCG::getLatestVSProfile()
{
    return cgGLGetLatestProfile(CG_GL_VERTEX);
}

CGprofile GLShaderCG::getLatestPSProfile()
{
    return cgGLGetLatestProfile(CG_GL_FRAGMENT);
}

CGparameter GLShaderCG::getParameter(const std::string& name) const
{
    return cgGetNamedParameter(program, name.c_str());
}

} // namespace tavo
