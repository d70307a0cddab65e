#include <string>
#include <vireo/context/GLExtensions.h>

// Whether programs of that target work in the current context, which has been wrapped in a GLContext.
inline bool hasARBPrograms(unsigned int target)
{
    const bool isVertex = target == GL_VERTEX_PROGRAM_ARB;
    const std::string extension = isVertex ? " GL_ARB_vertex_program " : " GL_ARB_fragment_program ";
    const auto* const extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return tavo::glGenProgramsARB && extensions &&
           (' ' + std::string(extensions) + ' ').find(extension) != std::string::npos;
}
