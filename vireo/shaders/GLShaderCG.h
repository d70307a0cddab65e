#pragma once

#include <Cg/cg.h>
#include <string>

#include "vireo/Export.h"
#include "vireo/shaders/GLShader.h"

namespace tavo {

/// A program in the language of the Cg runtime. Its entry function is `main`; its uniform parameters are set by name.
///
///     GLShaderCG shader(&context, CG_PROFILE_ARBFP1);
///     if (!shader.compile("float4 main(uniform float4 colour) : COLOR { return colour; }"))
///         debugOutput << shader.getLastError();
///     shader.bind();
///     shader.setParameter4f("colour", 1, 0, 0, 1);
///
/// bind() also sets these matrices of GL, as far as the program declares them:
///
/// | parameter | matrix |
/// |---|---|
/// | uniform float4x4 matMVP | modelview and projection |
/// | uniform float4x4 matMV | modelview |
/// | uniform float4x4 matMVinv | the inverse of modelview |
/// | uniform float4x4 matMVinvtrans | its transpose, for normals |
/// | uniform float4x4 matMVtrans | the transpose of modelview |
///
/// The class and this header exist only in a library built with the Cg runtime. Including the header needs the
/// runtime's headers. Before use, ask cgGLIsProfileSupported whether the current context can run programs of the
/// profile. If it cannot, they still compile, but binding one may crash inside the runtime. Errors of the runtime other
/// than those in a source, such as an unknown parameter, are left for cgGetError and cgSetErrorCallback.
///
/// @needs All operations, destruction included, need the shader's context, or one that shares names with it, to be
/// current. If another is current during destruction, that one loses its program of the same name.
/// @owns The shader owns one program of the library's Cg context. It destroys it when it dies or its context does, and
/// at once, since contexts do not queue Cg programs. The runtime then deletes the program's GL name in whatever context
/// is current.
/// @throws PException From compile and onDeleteContext, once the context has died. The other operations do not check;
/// do not call them then: bind enables a target for a program that is gone.
class VIREO_EXPORT GLShaderCG : public GLShader
{
public:
    /// Chooses the profile; compiles nothing. Only VP20, VP30, VP40, ARBVP1, FP30, FP40 and ARBFP1 have a GL target.
    /// With any other, deliberately FP20 too, bind and unbind enable and disable 0, which is a GL error.
    GLShaderCG(GLContext* context, CGprofile profile);
    ~GLShaderCG() override;

    /// Destroys the program. Only the dying context calls this.
    /// @throws PException Without a context.
    void onDeleteContext() override;

    /// Destroys the present program, compiles the source and loads it into GL (cgCreateProgram, cgGLLoadProgram). If
    /// that fails, the shader has no program, and getLastError() has the compiler's listing. Set all parameters again
    /// afterwards.
    /// @leaves Nothing is bound or enabled.
    /// @throws PException Once the context has died.
    bool compile(const std::string& source) override;

    /// Enables the program's GL target, binds the program and updates its default matrices (glEnable, cgGLBindProgram).
    /// Without a program, does nothing.
    void bind() override;

    /// Sets the matrices listed above from the current ones of GL (cgGLSetStateMatrixParameter). Call it when they have
    /// changed since bind().
    void updateDefaultMatrices() override;

    /// Disables the program's GL target, even without a program (glDisable).
    /// @leaves The program is still bound.
    void unbind() override;

    /// Sets the parameter of the constant's name. The number is not used. A constant of more than four components does
    /// nothing.
    /// @throws std::out_of_range If the constant has no components.
    void setConstant(const ShaderConstant& constant) override;

    /// Does as setMatrixParameterc: 16 floats, column by column. The number is not used.
    void setMatrix4f(const std::string& name, unsigned int index, float* matrix) override;

    /// Sets a parameter of one to four floats by name (cgGLSetParameter1fv to cgGLSetParameter4fv); the program need
    /// not be bound. This and the setters below set nothing, and leave an error with the Cg runtime, if there is no
    /// program or no such parameter.
    void setParameter1f(const std::string& name, float x);
    void setParameter2f(const std::string& name, float x, float y);
    void setParameter3f(const std::string& name, float x, float y, float z);
    void setParameter4f(const std::string& name, float x, float y, float z, float w);

    /// Sets a parameter of n floats. Does nothing unless n is 1 to 4.
    void setParameterxf(const std::string& name, unsigned int n, const float* v);

    /// Sets a parameter of type float4x4 from 16 floats: column by column as in GL, or row by row
    /// (cgGLSetMatrixParameterfc, cgGLSetMatrixParameterfr).
    void setMatrixParameterc(const std::string& name, float* m);
    void setMatrixParameterr(const std::string& name, float* m);

    /// The best profile for vertex or fragment programs that the runtime sees in the current GL context;
    /// CG_PROFILE_UNKNOWN if there is none (cgGLGetLatestProfile).
    static CGprofile getLatestVSProfile();
    static CGprofile getLatestPSProfile();

private:
    CGparameter getParameter(const std::string& name) const;

    CGprofile profile;
    CGprogram program = nullptr;
    unsigned int target;
};

} // namespace tavo
