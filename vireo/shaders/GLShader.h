#pragma once

#include <string>
#include <vector>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

class ShaderConstant;

/// A program of the GPU, for vertices or for fragments, in the share tree of a GLContext. GLShaderARB is a program in
/// the assembly language of GL_ARB_vertex_program and GL_ARB_fragment_program; GLShaderCG is one in the language of the
/// Cg runtime. They are used alike:
///
///     #include <tavo/base/debug/DebugOutput.h>
///
///     void drawWith(GLShader& shader, const std::string& source, const std::vector<ShaderConstant>& constants)
///     {
///         if (!shader.compile(source))
///             debugOutput << shader.getLastError();
///         shader.bind();
///         shader.setConstants(constants);
///         // draw
///         shader.unbind();
///     }
///
/// All of this needs the shader's context, or one that shares names with it, to be current. Each kind says what it
/// throws once the context has died; docs/shaders.md says what each needs of the driver.
///
/// Do not copy shaders. A copy has the same program, but the context does not know of it: only one of the two may be
/// destroyed while the context lives.
class VIREO_EXPORT GLShader : public GLObject
{
public:
    /// @needs The context must not be null.
    explicit GLShader(GLContext* context);
    ~GLShader() override;

    /// Replaces the program by the one in the source. Returns false if the source has an error; getLastError() says
    /// which.
    virtual bool compile(const std::string& source) = 0;

    /// Makes drawing use the program, in place of the fixed function and of other programs of its kind.
    virtual void bind() = 0;

    /// Gives the program the matrices of GL that it knows by fixed names. Here it does nothing: programs that read GL's
    /// state need no such thing.
    virtual void updateDefaultMatrices();

    /// Returns drawing to the fixed function.
    virtual void unbind() = 0;

    /// Sets the parameter that the constant belongs to.
    virtual void setConstant(const ShaderConstant& constant) = 0;

    /// Sets a matrix from 16 floats, column by column. The kind of program decides whether the name or the number
    /// counts.
    virtual void setMatrix4f(const std::string& name, unsigned int index, float* matrix) = 0;

    /// Sets each constant in order.
    void setConstants(const std::vector<ShaderConstant>& constants);

    /// What was wrong with the last source; empty if nothing was, and before the first. If the driver has no text for
    /// an error, the previous text stays.
    std::string getLastError() const { return lastError; }

protected:
    /// Deliberately without m_, like all fields of shaders and constants.
    std::string lastError;
};

} // namespace tavo
