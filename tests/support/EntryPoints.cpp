#define GL_GLEXT_PROTOTYPES
#include "tests/support/EntryPoints.h"

#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "tavo/platform/wgl.h"
#include "tests/support/RecordedCall.h"

#include <GL/gl.h>
#include <GL/glext.h>

// WGL, and the entry points that are fetched through it.

using namespace tavo::format; // NOLINT(google-build-using-namespace): a table reads best without prefixes

VIREO_RECORD(wglGetCurrentContext)
VIREO_RECORD(wglGetCurrentDC)
VIREO_RECORD(wglMakeCurrent, Value, Value)

namespace {

std::multiset<std::string>& withheldNames()
{
    static std::multiset<std::string> names;
    return names;
}

unsigned int everyEntryPoints = 0;

void endInMissingFunction()
{
    std::fputs("EveryEntryPoint - a function was called that the driver does not have\n", stderr);
    std::abort();
}

struct EntryPoint
{
    tavo::AnyFunction recording;
    void (*setReal)(tavo::AnyFunction);
};

template <typename Call>
std::pair<const std::string_view, EntryPoint> entryPoint(const char* name)
{
    return {name, {reinterpret_cast<tavo::AnyFunction>(&Call::make), &Call::setReal}};
}

// Only the type of the function is used: the program does not link it.
#define ENTRY_POINT(function, ...)                                                                                     \
    entryPoint<tavo::RecordedCall<#function, decltype(::function) __VA_OPT__(, ) __VA_ARGS__>>(#function)

const std::unordered_map<std::string_view, EntryPoint>& recordedEntryPoints()
{
    static const std::unordered_map<std::string_view, EntryPoint> entryPoints{
        // GL_ARB_multitexture
        ENTRY_POINT(glActiveTextureARB, Enum),
        ENTRY_POINT(glClientActiveTextureARB, Enum),
        ENTRY_POINT(glMultiTexCoord2fARB, Enum, Value, Value),
        ENTRY_POINT(glMultiTexCoord2fvARB, Enum, Vector<2>),
        ENTRY_POINT(glMultiTexCoord3fARB, Enum, Value, Value, Value),
        ENTRY_POINT(glMultiTexCoord3fvARB, Enum, Vector<3>),
        ENTRY_POINT(glMultiTexCoord4fARB, Enum, Value, Value, Value, Value),
        ENTRY_POINT(glMultiTexCoord4fvARB, Enum, Vector<4>),
        // GL_EXT_texture3D
        ENTRY_POINT(glTexImage3DEXT, Enum, Value, Enum, Value, Value, Value, Value, Enum, Enum, Value),
        // GL_ARB_vertex_buffer_object
        ENTRY_POINT(glBindBufferARB, Enum, Value),
        ENTRY_POINT(glDeleteBuffersARB, Value, Counted<0>),
        ENTRY_POINT(glGenBuffersARB, Value, Value),
        ENTRY_POINT(glIsBufferARB, Value),
        ENTRY_POINT(glBufferDataARB, Enum, Value, Value, Enum),
        ENTRY_POINT(glBufferSubDataARB, Enum, Value, Value, Value),
        ENTRY_POINT(glGetBufferSubDataARB, Enum, Value, Value, Value),
        ENTRY_POINT(glMapBufferARB, Enum, Enum),
        ENTRY_POINT(glUnmapBufferARB, Enum),
        ENTRY_POINT(glGetBufferParameterivARB, Enum, Enum, Value),
        ENTRY_POINT(glGetBufferPointervARB, Enum, Enum, Value),
        // GL_ARB_vertex_program: attributes
        ENTRY_POINT(glVertexAttrib1fARB, Value, Value),
        ENTRY_POINT(glVertexAttrib1fvARB, Value, Vector<1>),
        ENTRY_POINT(glVertexAttrib2fARB, Value, Value, Value),
        ENTRY_POINT(glVertexAttrib2fvARB, Value, Vector<2>),
        ENTRY_POINT(glVertexAttrib3fARB, Value, Value, Value, Value),
        ENTRY_POINT(glVertexAttrib3fvARB, Value, Vector<3>),
        ENTRY_POINT(glVertexAttrib4fARB, Value, Value, Value, Value, Value),
        ENTRY_POINT(glVertexAttrib4fvARB, Value, Vector<4>),
        ENTRY_POINT(glVertexAttrib4ubvARB, Value, Vector<4>),
        ENTRY_POINT(glVertexAttrib4NubARB, Value, Value, Value, Value, Value),
        ENTRY_POINT(glVertexAttrib4NubvARB, Value, Vector<4>),
        ENTRY_POINT(glVertexAttribPointerARB, Value, Value, Enum, Boolean, Value, Value),
        ENTRY_POINT(glEnableVertexAttribArrayARB, Value),
        ENTRY_POINT(glDisableVertexAttribArrayARB, Value),
        ENTRY_POINT(glGetVertexAttribivARB, Value, Enum, Value),
        ENTRY_POINT(glGetVertexAttribfvARB, Value, Enum, Value),
        // GL_ARB_vertex_program and GL_ARB_fragment_program: programs
        ENTRY_POINT(glProgramStringARB, Enum, Enum, Value, CountedText<2>),
        ENTRY_POINT(glBindProgramARB, Enum, Value),
        ENTRY_POINT(glDeleteProgramsARB, Value, Counted<0>),
        ENTRY_POINT(glGenProgramsARB, Value, Value),
        ENTRY_POINT(glIsProgramARB, Value),
        ENTRY_POINT(glGetProgramivARB, Enum, Enum, Value),
        ENTRY_POINT(glGetProgramStringARB, Enum, Enum, Value),
        ENTRY_POINT(glProgramEnvParameter4fARB, Enum, Value, Value, Value, Value, Value),
        ENTRY_POINT(glProgramEnvParameter4fvARB, Enum, Value, Vector<4>),
        ENTRY_POINT(glProgramEnvParameter4dARB, Enum, Value, Value, Value, Value, Value),
        ENTRY_POINT(glProgramEnvParameter4dvARB, Enum, Value, Vector<4>),
        ENTRY_POINT(glProgramLocalParameter4fARB, Enum, Value, Value, Value, Value, Value),
        ENTRY_POINT(glProgramLocalParameter4fvARB, Enum, Value, Vector<4>),
        ENTRY_POINT(glProgramLocalParameter4dARB, Enum, Value, Value, Value, Value, Value),
        ENTRY_POINT(glProgramLocalParameter4dvARB, Enum, Value, Vector<4>),
        ENTRY_POINT(glGetProgramEnvParameterfvARB, Enum, Value, Value),
        ENTRY_POINT(glGetProgramLocalParameterfvARB, Enum, Value, Value),
        // GL_EXT_framebuffer_object
        ENTRY_POINT(glIsRenderbufferEXT, Value),
        ENTRY_POINT(glBindRenderbufferEXT, Enum, Value),
        ENTRY_POINT(glDeleteRenderbuffersEXT, Value, Counted<0>),
        ENTRY_POINT(glGenRenderbuffersEXT, Value, Value),
        ENTRY_POINT(glRenderbufferStorageEXT, Enum, Enum, Value, Value),
        ENTRY_POINT(glGetRenderbufferParameterivEXT, Enum, Enum, Value),
        ENTRY_POINT(glIsFramebufferEXT, Value),
        ENTRY_POINT(glBindFramebufferEXT, Enum, Value),
        ENTRY_POINT(glDeleteFramebuffersEXT, Value, Counted<0>),
        ENTRY_POINT(glGenFramebuffersEXT, Value, Value),
        ENTRY_POINT(glCheckFramebufferStatusEXT, Enum),
        ENTRY_POINT(glFramebufferTexture1DEXT, Enum, Enum, Enum, Value, Value),
        ENTRY_POINT(glFramebufferTexture2DEXT, Enum, Enum, Enum, Value, Value),
        ENTRY_POINT(glFramebufferTexture3DEXT, Enum, Enum, Enum, Value, Value, Value),
        ENTRY_POINT(glFramebufferRenderbufferEXT, Enum, Enum, Enum, Value),
        ENTRY_POINT(glGetFramebufferAttachmentParameterivEXT, Enum, Enum, Enum, Value),
        ENTRY_POINT(glGenerateMipmapEXT, Enum),
        // GL_EXT_compiled_vertex_array, GL_EXT_point_parameters
        ENTRY_POINT(glLockArraysEXT, Value, Value),
        ENTRY_POINT(glUnlockArraysEXT),
        ENTRY_POINT(glPointParameterfEXT, Enum, Value),
        ENTRY_POINT(glPointParameterfvEXT, Enum, ParameterValues<0>),
    };
    return entryPoints;
}

PROC getRecordedEntryPoint(const char* name)
{
    const PROC real = tavo::RecordedCall<"wglGetProcAddress", decltype(::wglGetProcAddress), Text>::make(name);
    if (withheldNames().contains(name))
        return nullptr;
    if (!real && everyEntryPoints > 0)
        return reinterpret_cast<PROC>(&endInMissingFunction);
    const auto known = recordedEntryPoints().find(name);
    if (!real || known == recordedEntryPoints().end())
        return real;
    known->second.setReal(reinterpret_cast<tavo::AnyFunction>(real));
    return reinterpret_cast<PROC>(known->second.recording);
}

} // namespace

VIREO_REPLACE(wglGetProcAddress, "wglGetProcAddress", getRecordedEntryPoint, 1)

namespace tavo {

WithheldEntryPoint::WithheldEntryPoint(const std::string& name)
    : m_Name(name)
{
    withheldNames().insert(name);
}

WithheldEntryPoint::~WithheldEntryPoint()
{
    withheldNames().erase(withheldNames().find(m_Name));
}

EveryEntryPoint::EveryEntryPoint()
{
    ++everyEntryPoints;
}

EveryEntryPoint::~EveryEntryPoint()
{
    --everyEntryPoints;
}

} // namespace tavo
