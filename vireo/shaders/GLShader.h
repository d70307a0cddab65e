#pragma once

#include <string>
#include <vector>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class ShaderConstant;

// A program of the GPU, of vertices or of fragments, that lives in the share tree of a GLContext. GLShaderARB is a
// program in the assembly language of GL_ARB_vertex_program and GL_ARB_fragment_program, GLShaderCG one in the language
// of the Cg runtime. They are used alike:
//
//     if (!shader.compile(source))
//         debugOutput << shader.getLastError();
//     ...
//     shader.bind();
//     shader.setConstants(constants);
//     ... draw ...
//     shader.unbind();
//
// The shader's context, or one that shares names with it, must be current for all of it. What the operations throw once
// the context has died is each kind's own; so is what they need of the driver, see docs/shaders.md.
//
// Copies are member-wise, as of every GLObject, and copying is not a supported use: a copy has the same program, the
// context does not know of it, and only one of the two may be destroyed while the context lives.
class VIREO_EXPORT GLShader : public GLObject
{
public:
    // The context must not be null.
    explicit GLShader(GLContext* context);
    ~GLShader() override;

    // Replaces the program by what the source says. False if the source has an error, which getLastError() then tells.
    virtual bool compile(const std::string& source) = 0;

    // Makes the program take part in drawing, in place of the fixed function and of other programs of its kind.
    virtual void bind() = 0;

    // Gives the program the matrices of GL that it knows by fixed names. A program that reads GL's state itself has no
    // need of that: this does nothing.
    virtual void updateDefaultMatrices();

    // Hands drawing back to the fixed function.
    virtual void unbind() = 0;

    // Sets the parameter that the constant belongs to.
    virtual void setConstant(const ShaderConstant& constant) = 0;

    // Sets a matrix of 16 floats, column by column: the one of that name or of that number, as the kind of program has
    // it.
    virtual void setMatrix4f(const std::string& name, unsigned int index, float* matrix) = 0;

    // Sets one constant after the other.
    void setConstants(const std::vector<ShaderConstant>& constants);

    // What was wrong with the source of the last compile; empty after a good one, and before the first. Where there is
    // no text for it, that of an earlier compile stays.
    std::string getLastError() const { return lastError; }

protected:
    // Without m_, deliberately, as all fields of shaders and constants.
    std::string lastError;
};

} // namespace tavo
