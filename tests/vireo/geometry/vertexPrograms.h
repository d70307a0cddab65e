#pragma once

#include <string>

#include "vireo/context/GLExtensions.h"

namespace tavo {

// From here on a vertex program is in use.
inline void useVertexProgram(const std::string& program)
{
    glBindProgramARB(GL_VERTEX_PROGRAM_ARB, 1);
    glProgramStringARB(
        GL_VERTEX_PROGRAM_ARB, GL_PROGRAM_FORMAT_ASCII_ARB, static_cast<GLsizei>(program.size()), program.data());
    glEnable(GL_VERTEX_PROGRAM_ARB);
}

// A program that takes the position from generic attribute 0 and the colour from attribute 1, and transforms nothing.
inline const std::string PROGRAM_OF_ATTRIBUTES = "!!ARBvp1.0\n"
                                                 "MOV result.position, vertex.attrib[0];\n"
                                                 "MOV result.color, vertex.attrib[1];\n"
                                                 "END";

} // namespace tavo
