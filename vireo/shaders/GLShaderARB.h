#pragma once

#include <string>

#include "vireo/Export.h"
#include "vireo/shaders/GLShader.h"

namespace tavo {

/// A program in the assembly language of GL_ARB_vertex_program or GL_ARB_fragment_program. Its text begins with
/// "!!ARBvp1.0" or "!!ARBfp1.0". It can read GL's matrices, lights and materials, and takes numbered parameters: local
/// ones of its own (program.local[i]), global ones that all programs of its target share (program.env[i]), and matrices
/// (state.matrix.program[i]).
///
///     #include <vireo/context/GLExtensions.h>
///
///     GLShaderARB red(&context, GL_FRAGMENT_PROGRAM_ARB);
///     if (!red.compile("!!ARBfp1.0\nMOV result.color, program.local[0];\nEND"))
///         debugOutput << red.getLastError();
///     red.bind();
///     red.setLocalParameter4f(0, 1, 0, 0, 1);
///
/// @needs All operations but the getters and the destructor need the shader's context, or one that shares names with
/// it, to be current. The driver must have GL_ARB_vertex_program: without it the entry points called here are null, and
/// nothing checks that.
/// @owns The shader owns one GL program name. When it dies, it hands the name to its context, which deletes it: at once
/// if active, else when next activated, and never if it dies before.
/// @throws PException From all operations but the getters, the destructor and setMatrix4f, once the context has died:
/// "GLShaderARB::bind() - invalid context!". Nothing has changed then.
class VIREO_EXPORT GLShaderARB : public GLShader
{
public:
    /// Makes the name of a program for GL_VERTEX_PROGRAM_ARB or GL_FRAGMENT_PROGRAM_ARB (glGenProgramsARB). Other
    /// targets, such as GL_FRAGMENT_PROGRAM_NV, are passed to the driver as they are.
    GLShaderARB(GLContext* context, unsigned int target);
    ~GLShaderARB() override;

    /// Hands the name to the dying context. Only the context calls this.
    void onDeleteContext() override;

    /// Gives the program to the driver (glProgramStringARB). If the driver finds an error, keeps its text for
    /// getLastError(), if there is one, and its position for getLastErrorPosition(). Deliberately only
    /// GL_INVALID_OPERATION counts as such an error. Takes up to two GL errors from the queue.
    /// @leaves The program is bound, whatever the outcome, but not enabled.
    bool compile(const std::string& source) override;

    /// Enables the target and binds the program (glEnable, glBindProgramARB).
    void bind() override;

    /// Disables the target (glDisable).
    /// @leaves The program is still bound.
    void unbind() override;

    /// Sets the local parameter with the constant's number (glProgramLocalParameter4fARB) in the program that is bound
    /// to the target. Missing components become 0. The name is not used. A constant of more than four components does
    /// nothing.
    /// @throws std::out_of_range If the constant has no components.
    void setConstant(const ShaderConstant& constant) override;

    /// Loads the program matrix of that number, which the whole context shares (glMatrixMode, glMultMatrixf). The name
    /// is not used, and nothing checks that the shader's context lives.
    /// @leaves The modelview matrix is selected.
    void setMatrix4f(const std::string& name, unsigned int index, float* matrix) override;

    /// Sets a local parameter of the program that is bound to the target, from four numbers or four floats
    /// (glProgramLocalParameter4fARB, glProgramLocalParameter4fvARB).
    void setLocalParameter4f(unsigned int index, float x, float y, float z, float w);
    void setLocalParameter4fv(unsigned int index, float* v);

    /// Sets a global parameter, which all programs of the target share (glProgramEnvParameter4fARB,
    /// glProgramEnvParameter4fvARB).
    void setGlobalParameter4f(unsigned int index, float x, float y, float z, float w);
    void setGlobalParameter4fv(unsigned int index, float* v);

    /// Where the driver found the error in the last source; -1 if there was none, and before the first. The extension
    /// counts from 0, some drivers do not.
    int getLastErrorPosition() { return lastErrorPosition; }

private:
    unsigned int target;
    unsigned int programId = 0;
    int lastErrorPosition = -1;
};

} // namespace tavo
