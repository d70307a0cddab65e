#include "vireo/shaders/GLShaderARB.h"

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/shaders/ShaderConstant.h"

namespace tavo {

namespace {

void reportMissingOf(unsigned int target)
{
    if (target == GL_VERTEX_PROGRAM_ARB) {
        static const bool isReported = reportMissing("GLShaderARB for vertices");
        static_cast<void>(isReported);
    } else if (target == GL_FRAGMENT_PROGRAM_ARB) {
        static const bool isReported = reportMissing("GLShaderARB for fragments");
        static_cast<void>(isReported);
    }
}

} // namespace

GLShaderARB::GLShaderARB(GLContext* context, unsigned int target)
    : GLShader(context)
    , target(target)
{
    reportMissingOf(target);
    glGenProgramsARB(1, &programId);
    noteName(NameKind::PROGRAM, programId, *this);
}

GLShaderARB::~GLShaderARB()
{
    if (getContext())
        getContext()->deleteShader(programId);
}

void GLShaderARB::onDeleteContext()
{
    requireContext("GLShaderARB::onDeleteContext() - invalid context!");
    getContext()->deleteShader(programId);
}

bool GLShaderARB::compile(const std::string& source)
{
    requireContext("GLShaderARB::compile() - invalid context!");
    noteBytes(NameKind::PROGRAM, programId, *this, source.size());
    glBindProgramARB(target, programId);
    glGetError(); // what is pending is not this program's
    glProgramStringARB(target, GL_PROGRAM_FORMAT_ASCII_ARB, static_cast<GLsizei>(source.size()), source.data());
    // Other errors are deliberately not the source's.
    if (glGetError() != GL_INVALID_OPERATION) {
        lastError.clear();
        lastErrorPosition = -1;
        return true;
    }
    if (const GLubyte* text = glGetString(GL_PROGRAM_ERROR_STRING_ARB))
        lastError = reinterpret_cast<const char*>(text);
    glGetIntegerv(GL_PROGRAM_ERROR_POSITION_ARB, &lastErrorPosition);
    return false;
}

void GLShaderARB::bind()
{
    requireContext("GLShaderARB::bind() - invalid context!");
    glEnable(target);
    glBindProgramARB(target, programId);
}

void GLShaderARB::unbind()
{
    requireContext("GLShaderARB::unbind() - invalid context!");
    glDisable(target);
}

void GLShaderARB::setConstant(const ShaderConstant& constant)
{
    requireContext("GLShaderARB::setConstant() - invalid context!");
    const auto index = static_cast<GLuint>(constant.getIndex());
    const float* const d = constant.getDataPtr();
    switch (constant.getNumComponents()) {
    case 1: glProgramLocalParameter4fARB(target, index, d[0], 0, 0, 0); break;
    case 2: glProgramLocalParameter4fARB(target, index, d[0], d[1], 0, 0); break;
    case 3: glProgramLocalParameter4fARB(target, index, d[0], d[1], d[2], 0); break;
    case 4: glProgramLocalParameter4fvARB(target, index, d); break;
    default: break;
    }
}

void GLShaderARB::setMatrix4f(const std::string& /*name*/, unsigned int index, float* matrix)
{
    glMatrixMode(GL_MATRIX0_ARB + index);
    glLoadIdentity();
    glMultMatrixf(matrix);
    glMatrixMode(GL_MODELVIEW);
}

void GLShaderARB::setLocalParameter4f(unsigned int index, float x, float y, float z, float w)
{
    requireContext("GLShaderARB::setLocalParameter4f() - invalid context!");
    glProgramLocalParameter4fARB(target, index, x, y, z, w);
}

void GLShaderARB::setLocalParameter4fv(unsigned int index, float* v)
{
    requireContext("GLShaderARB::setLocalParameter4fv() - invalid context!");
    glProgramLocalParameter4fvARB(target, index, v);
}

void GLShaderARB::setGlobalParameter4f(unsigned int index, float x, float y, float z, float w)
{
    requireContext("GLShaderARB::setGlobalParameter4f() - invalid context!");
    glProgramEnvParameter4fARB(target, index, x, y, z, w);
}

void GLShaderARB::setGlobalParameter4fv(unsigned int index, float* v)
{
    requireContext("GLShaderARB::setGlobalParameter4fv() - invalid context!");
    glProgramEnvParameter4fvARB(target, index, v);
}

} // namespace tavo
