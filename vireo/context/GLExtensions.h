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

/// @file
/// The entry points of OpenGL beyond version 1.1, fetched from the driver at run time: pointers with the functions'
/// names in namespace tavo.
///
///     #include <vireo/context/GLExtensions.h>
///
///     tavo::glActiveTextureARB(GL_TEXTURE1_ARB);
///
/// Within the namespace, a call looks as if the function were linked: glActiveTextureARB(GL_TEXTURE1_ARB). A
/// using-directive for the namespace does not work, because the system's GL library has functions with some of these
/// names.
///
/// Other loaders (GLEW, glad, libepoxy) make macros of the same names. Include their headers after this one, or in
/// another source file if they must be the first to include GL/gl.h.
///
/// A pointer is null until it has been fetched, and stays null if the driver has no such function; callers must know
/// that it is there. Pointers belong to the whole process, and are valid in every context of the driver they came from.
namespace tavo {

#define VIREO_GL_ENTRY_POINT(name, ...) extern VIREO_EXPORT std::type_identity_t<__VA_ARGS__> name;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"

/// Whether initGLExtensions() was called.
extern VIREO_EXPORT bool glExtensionsInitialized;

/// Fetches the entry points of the extensions that the library uses, as far as the driver supports them, and those of
/// framebuffer objects. Only the first call in a process does anything, even if no context was current then. The first
/// root GLContext makes that call.
/// @needs A current context.
VIREO_EXPORT void initGLExtensions();

/// Whether the driver has an extension such as "GL_ARB_multitexture", and its functions can be called: the driver lists
/// the whole name, and all entry points of the extension have been fetched. Only the entry points count for
/// "GL_EXT_framebuffer_object", which some drivers have without listing it. The answer is what initGLExtensions()
/// found, so it is false before that; this calls no GL.
VIREO_EXPORT bool isExtensionSupported(std::string_view name);

} // namespace tavo
