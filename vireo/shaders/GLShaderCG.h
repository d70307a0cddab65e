#pragma once

#include <Cg/cg.h>
#include <string>

#include "vireo/Export.h"
#include "vireo/shaders/GLShader.h"

namespace tavo {

// A program in the language of the Cg runtime, whose entry function is called "main" and whose uniform parameters are
// set by their names. Binding it also gives it these matrices of GL, as far as it declares them:
//
//     uniform float4x4 matMVP         modelview and projection
//     uniform float4x4 matMV          modelview
//     uniform float4x4 matMVinv       the inverse of modelview
//     uniform float4x4 matMVinvtrans  the transpose of that, for normals
//     uniform float4x4 matMVtrans     the transpose of modelview
//
// The class, and this header, are there only in a library that was built with the Cg runtime; who includes the header
// needs the runtime's headers too.
//
// The shader owns one program of the library's one Cg context. It destroys it when it dies, or when its context does:
// at once, since Cg programs are not among what a context keeps until it is active. The GL name that the runtime has
// made for the program is then deleted in whatever context is current: the shader's, or one that shares names with it,
// must be, as for all other operations. Where another is, its program of that name is lost instead. Once the context
// has died, compile and onDeleteContext throw PException; the other operations do not ask whether it has, and must not
// be called: bind enables a target for a program that is gone.
//
// Whether the current context can run programs of a profile, cgGLIsProfileSupported says. Where it cannot, they compile
// all the same, but binding one may crash inside the runtime.
//
// Errors of the Cg runtime other than those of a source, such as a parameter that the program does not have, are left
// to whoever asks the runtime for them (cgGetError, cgSetErrorCallback).
class VIREO_EXPORT GLShaderCG : public GLShader
{
public:
    // A program of that profile. Compiles nothing. Profiles other than VP20, VP30, VP40, ARBVP1, FP30, FP40 and ARBFP1,
    // deliberately FP20 too, have no GL target: binding and unbinding enable and disable 0, a GL error.
    GLShaderCG(GLContext* context, CGprofile profile);
    ~GLShaderCG() override;

    // Called by the context as it dies, and by nobody else: destroys the program. Throws PException without a context.
    void onDeleteContext() override;

    // Destroys the program there is, compiles the source and loads it into GL. If that fails the shader has no program
    // any more, and the compiler's listing is kept for getLastError(). Parameters are to be set again. Nothing is bound
    // or enabled for it. Throws PException once the context has died.
    bool compile(const std::string& source) override;

    // Enables the program's GL target, binds the program and updates its default matrices. Without a program it does
    // nothing at all.
    void bind() override;

    // Gives the program the current matrices of GL, under the names above. Wanted after the matrices have changed; bind
    // does so itself.
    void updateDefaultMatrices() override;

    // Disables the program's GL target, whether or not there is a program. The program stays bound.
    void unbind() override;

    // Sets the parameter of the constant's name. The number is not used. Constants of more than four components do
    // nothing; one without any throws std::out_of_range.
    void setConstant(const ShaderConstant& constant) override;

    // The same as setMatrixParameterc: 16 floats, column by column. The number is not used.
    void setMatrix4f(const std::string& name, unsigned int index, float* matrix) override;

    // The setters below set a parameter of the program, bound or not, by its name; without a program, or without such a
    // parameter, the Cg runtime has an error and nothing is set.

    // Set a parameter of one to four floats.
    void setParameter1f(const std::string& name, float x);
    void setParameter2f(const std::string& name, float x, float y);
    void setParameter3f(const std::string& name, float x, float y, float z);
    void setParameter4f(const std::string& name, float x, float y, float z, float w);

    // Sets a parameter of n floats. Does nothing unless n is 1 to 4.
    void setParameterxf(const std::string& name, unsigned int n, const float* v);

    // Set a parameter of type float4x4 from 16 floats, column by column as in GL, or row by row.
    void setMatrixParameterc(const std::string& name, float* m);
    void setMatrixParameterr(const std::string& name, float* m);

    // The best profiles for vertex and for fragment programs that the runtime sees in the current GL context;
    // CG_PROFILE_UNKNOWN if there is none.
    static CGprofile getLatestVSProfile();
    static CGprofile getLatestPSProfile();

private:
    void requireContext(const char* operation) const;
    CGparameter getParameter(const std::string& name) const;

    CGprofile profile;
    CGprogram program = nullptr;
    unsigned int target;
};

} // namespace tavo
