#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vireo/context/GLExtensions.h"

namespace tavo {

// What an off-screen target is made of.
struct TargetKind
{
    enum class Part
    {
        NONE,
        BUFFER,  // a renderbuffer of its own
        TEXTURE, // of the colours' kind
        PACKED   // one renderbuffer for depth and stencil
    };

    unsigned int textures; // GL_TEXTURE_2D or GL_TEXTURE_RECTANGLE_ARB
    unsigned int colours;  // the internal format; 0 for none
    Part depth = Part::NONE;
    Part stencil = Part::NONE;
};

// Finds out what the driver of the current context can do by having it done. Functions are fetched for the trial alone,
// so that those of the library stay as they are. Every trial frees what it makes, binds again what was bound, and takes
// the GL errors of its own.
class DriverTrial
{
public:
    // A context must be current, in which no primitive is open.
    DriverTrial();
    ~DriverTrial();
    DriverTrial(const DriverTrial&) = delete;
    DriverTrial& operator=(const DriverTrial&) = delete;

    // Errors that others had left when the trial began.
    int getNumErrorsBefore() const { return m_NumErrorsBefore; }
    // Whether it has the compatibility profile, or is older than profiles.
    bool hasCompatibilityProfile() const { return m_HasCompatibilityProfile; }
    // Empty where the driver has none of that name.
    static std::string getString(unsigned int name);
    // 0 where the driver does not know it.
    static int getNumber(unsigned int name);
    // As glGetString lists them, by which the library goes; none in the core profile.
    bool lists(std::string_view extension) const;

    // Whether the driver takes a small program of that target.
    bool takesProgram(unsigned int target) const;
    int getProgramLimit(unsigned int target, unsigned int limit) const;
    // Whether bytes that a buffer is given can be read from it.
    bool hasBuffers() const;
    // Whether framebuffers can be made at all.
    bool hasFramebuffers() const;
    bool canDrawInto(const TargetKind& kind) const;
    // The longest side of a texture of that proxy target, of the number that the driver says, that it takes.
    int getLargestTexture(unsigned int proxy, unsigned int limit) const;
    // The same of a target, one texel high.
    int getLongestTarget() const;

private:
    struct Functions
    {
        PFNGLGENPROGRAMSARBPROC genPrograms;
        PFNGLDELETEPROGRAMSARBPROC deletePrograms;
        PFNGLBINDPROGRAMARBPROC bindProgram;
        PFNGLPROGRAMSTRINGARBPROC programString;
        PFNGLGETPROGRAMIVARBPROC getProgram;
        PFNGLGENBUFFERSARBPROC genBuffers;
        PFNGLDELETEBUFFERSARBPROC deleteBuffers;
        PFNGLBINDBUFFERARBPROC bindBuffer;
        PFNGLBUFFERDATAARBPROC bufferData;
        PFNGLGETBUFFERSUBDATAARBPROC getBufferSubData;
        PFNGLTEXIMAGE3DEXTPROC texImage3D;
        PFNGLGENFRAMEBUFFERSEXTPROC genFramebuffers;
        PFNGLDELETEFRAMEBUFFERSEXTPROC deleteFramebuffers;
        PFNGLBINDFRAMEBUFFEREXTPROC bindFramebuffer;
        PFNGLCHECKFRAMEBUFFERSTATUSEXTPROC checkFramebufferStatus;
        PFNGLFRAMEBUFFERTEXTURE2DEXTPROC framebufferTexture2D;
        PFNGLFRAMEBUFFERRENDERBUFFEREXTPROC framebufferRenderbuffer;
        PFNGLGENRENDERBUFFERSEXTPROC genRenderbuffers;
        PFNGLDELETERENDERBUFFERSEXTPROC deleteRenderbuffers;
        PFNGLBINDRENDERBUFFEREXTPROC bindRenderbuffer;
        PFNGLRENDERBUFFERSTORAGEEXTPROC renderbufferStorage;
    };

    class TrialTarget;

    void fetchFunctions();
    bool canDrawInto(const TargetKind& kind, int width, int height) const;
    bool takesTexture(unsigned int proxy, int size) const;

    int m_NumErrorsBefore = 0;
    bool m_HasCompatibilityProfile = false;
    std::string m_Extensions; // with a blank at both ends
    int m_UnpackBuffer = 0;
    Functions m_GL{};
};

} // namespace tavo
