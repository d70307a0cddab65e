#pragma once

#include <string>

#include "vireo/Export.h"
#include "vireo/shaders/GLShader.h"

namespace tavo {

// A program in the assembly language of GL_ARB_vertex_program or GL_ARB_fragment_program, whose text begins with
// "!!ARBvp1.0" or "!!ARBfp1.0". It reads the matrices, lights and materials of GL by itself, and takes numbered
// parameters: local ones of its own (program.local[i]), global ones that all programs of its target see
// (program.env[i]), and matrices (state.matrix.program[i]).
//
// The shader owns one GL program name, which it hands to its context when it dies. The name is deleted at once if the
// context is active, else when it is activated next; it stays if the context dies before that.
//
// A driver without GL_ARB_vertex_program has none of the entry points that are called here; whether it has the
// extension is for the caller to find out beforehand. The shader's context, or one that shares names with it, must be
// current for all operations but the getters and the destructor. Once the context has died, all but the getters, the
// destructor and setMatrix4f throw PException with their name, "GLShaderARB::bind() - invalid context!", and change
// nothing.
class VIREO_EXPORT GLShaderARB : public GLShader
{
public:
    // A program for the target GL_VERTEX_PROGRAM_ARB or GL_FRAGMENT_PROGRAM_ARB. Others, such as
    // GL_FRAGMENT_PROGRAM_NV, are passed on to the driver as they are. Makes the GL name; binds nothing.
    GLShaderARB(GLContext* context, unsigned int target);
    ~GLShaderARB() override;

    // Called by the context as it dies, and by nobody else: hands it the GL name.
    void onDeleteContext() override;

    // Gives the program to the driver. Where the driver finds an error the text is kept for getLastError(), as far as
    // the driver has one, and its position for getLastErrorPosition(). Only GL_INVALID_OPERATION deliberately counts
    // as one. Takes up to two GL errors from the context's queue. The program stays bound, whatever the outcome, but is
    // not enabled.
    bool compile(const std::string& source) override;

    // Enables the target and binds the program.
    void bind() override;

    // Disables the target. The program stays bound.
    void unbind() override;

    // Sets the local parameter with the constant's number, in the program that is bound to the target. Missing
    // components are 0. The name is not used. Constants of more than four components do nothing; one without any throws
    // std::out_of_range.
    void setConstant(const ShaderConstant& constant) override;

    // Loads the program matrix of that number, of the whole context. The name is not used. The modelview matrix is
    // selected afterwards, whichever was before. Does not ask whether the shader's context is still there.
    void setMatrix4f(const std::string& name, unsigned int index, float* matrix) override;

    // Set a local parameter of the program that is bound to the target, from four numbers or four floats.
    void setLocalParameter4f(unsigned int index, float x, float y, float z, float w);
    void setLocalParameter4fv(unsigned int index, float* v);

    // Set a global parameter, which all programs of the target share, in the current context.
    void setGlobalParameter4f(unsigned int index, float x, float y, float z, float w);
    void setGlobalParameter4fv(unsigned int index, float* v);

    // Where in the last compile's source the driver found the error, as the driver counts: from 0 by the extension's
    // rules, otherwise with some drivers. -1 after a good one, and before the first.
    int getLastErrorPosition() { return lastErrorPosition; }

private:
    void requireContext(const char* operation) const;

    unsigned int target;
    unsigned int programId = 0;
    int lastErrorPosition = -1;
};

} // namespace tavo
