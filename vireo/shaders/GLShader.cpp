#include "vireo/shaders/GLShader.h"

#include "vireo/shaders/ShaderConstant.h"

namespace tavo {

GLShader::GLShader(GLContext* context)
    : GLObject(context)
{}

GLShader::~GLShader() = default;

void GLShader::updateDefaultMatrices() {}

void GLShader::setConstants(const std::vector<ShaderConstant>& constants)
{
    // By index, and asking for the size each time: what setConstant of a subclass does may change the vector.
    for (std::size_t i = 0; i < constants.size(); ++i)
        setConstant(constants[i]);
}

} // namespace tavo
