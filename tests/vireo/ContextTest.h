#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "tavo/points/VertexDescriptor.h"
#include "tests/support/GLTest.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

using Calls = std::vector<std::string>;

// Gives each test an active GLContext around its main context.
class ContextTest : public GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (IsSkipped())
            return;
        m_Context = std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr);
        m_Context->activate();
    }

    void TearDown() override
    {
        m_Context.reset();
        GLTest::TearDown();
    }

    GLContext* context() { return m_Context.get(); }

    // The context dies before the test ends.
    void destroyContext() { m_Context.reset(); }

private:
    std::unique_ptr<GLContext> m_Context;
};

// The codes of an attribute's type.
constexpr unsigned int BYTE = VertexAttribDescriptor::TYPE_UNSIGNED_BYTE;
constexpr unsigned int FLOAT = VertexAttribDescriptor::TYPE_FLOAT;
constexpr unsigned int INT = VertexAttribDescriptor::TYPE_INT;

inline VertexDescriptor makeLayout(std::initializer_list<VertexAttribDescriptor> attributes)
{
    VertexDescriptor layout;
    for (const VertexAttribDescriptor& attribute : attributes)
        layout.pushAttrib(attribute);
    return layout;
}

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
