#include <vireo/context/GLExtensions.h>

// Whether programs of that target work on the driver whose context was wrapped in the first root GLContext.
inline bool hasARBPrograms(unsigned int target)
{
    // The functions of both kinds come with this one.
    return tavo::isExtensionSupported("GL_ARB_vertex_program") &&
           (target == GL_VERTEX_PROGRAM_ARB || tavo::isExtensionSupported("GL_ARB_fragment_program"));
}
