#pragma once

// Such a macro would rename what is declared here, for this source file alone, which then does not link.
#if defined(glActiveTexture) || defined(glActiveTextureARB) || defined(glBindBuffer) || defined(glBindBufferARB) ||    \
    defined(glBindFramebufferEXT) || defined(glBindProgramARB) || defined(glBlendColor) ||                             \
    defined(glDrawRangeElements) || defined(glTexImage3DEXT) || defined(wglChoosePixelFormatARB)
#error "Include vireo before loaders that make macros of GL's names (GLEW, glad, libepoxy), or in another source file"
#endif

#include <string_view>
#include <type_traits>

#include "tavo/platform/wgl.h"
#include "vireo/Export.h"

#include <GL/gl.h>
#include <GL/glext.h>

struct HPBUFFERARB__; // NOLINT(bugprone-reserved-identifier): the name on Windows

// The entry points of OpenGL beyond version 1.1, fetched from the driver at run time: a pointer to each, that bears the
// function's name and lies in namespace tavo. Within that namespace a call is written as if the function were linked,
// glBindBufferARB(...); elsewhere it is tavo::glBindBufferARB(...). A using-directive for the namespace does not do:
// some of the names are functions of the system's GL library as well.
//
// Other loaders (GLEW, glad, libepoxy) make macros of the same names. Their headers come after this one; those that
// must be the first to include GL/gl.h, in another source file.
//
// A pointer is null until it has been fetched, and stays null where the driver has no such function; who calls it must
// know that it is there. Pointers are of the whole process, and good for every context of the driver they came from.
namespace tavo {

#define VIREO_GL_ENTRY_POINT(name, ...) extern VIREO_EXPORT std::type_identity_t<__VA_ARGS__> name;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"

// Whether initGLExtensions() was called.
extern VIREO_EXPORT bool glExtensionsInitialized;

// Fetches the entry points of the extensions that the library uses, as far as the current context's driver supports
// them, and those of framebuffer objects. Only the first call in a process does anything, even if no context was
// current then. The first root GLContext makes that call.
VIREO_EXPORT void initGLExtensions();

// Whether the driver has an extension, "GL_ARB_multitexture", whose functions, if there are any, can be called: it
// lists the whole name, and all entry points of the extension have been fetched. Framebuffer objects, which drivers
// have without listing them, "GL_EXT_framebuffer_object", go by the entry points alone. Goes by what initGLExtensions()
// found, and so is false before that; calls no GL.
VIREO_EXPORT bool isExtensionSupported(std::string_view name);

} // namespace tavo
