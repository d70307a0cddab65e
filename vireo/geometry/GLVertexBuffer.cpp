#include "vireo/geometry/GLVertexBuffer.h"

#include <cstdint>
#include <optional>
#include <string>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/geometry/bufferStorage.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr int GLVertexBuffer::MAP_POSITION;
constexpr int GLVertexBuffer::MAP_COLOR;
constexpr int GLVertexBuffer::MAP_NORMAL;
constexpr int GLVertexBuffer::MAP_TEXCOORD0;
constexpr int GLVertexBuffer::TYPE_DEFAULT;
constexpr int GLVertexBuffer::TYPE_RENDERED32;

namespace {

GLenum glTypeOf(const VertexAttribDescriptor& attribute)
{
    switch (attribute.getType()) {
    case VertexAttribDescriptor::TYPE_UNSIGNED_BYTE: return GL_UNSIGNED_BYTE;
    case VertexAttribDescriptor::TYPE_INT: return GL_INT;
    default: return GL_FLOAT;
    }
}

constexpr GLenum NO_ARRAY = 0;

// The fixed-function array that an attribute feeds by its name.
GLenum clientArrayOf(const VertexAttribDescriptor& attribute)
{
    const std::string& name = attribute.getName();
    if (name == "position")
        return GL_VERTEX_ARRAY;
    if (name == "normal" && attribute.getNumComponents() == 3)
        return GL_NORMAL_ARRAY;
    if (name == "color")
        return GL_COLOR_ARRAY;
    if (name == "texcoord")
        return GL_TEXTURE_COORD_ARRAY;
    return NO_ARRAY;
}

void pointClientArray(GLenum array, GLint components, GLenum type, GLsizei stride, const void* offset)
{
    switch (array) {
    case GL_VERTEX_ARRAY: glVertexPointer(components, type, stride, offset); break;
    case GL_NORMAL_ARRAY: glNormalPointer(type, stride, offset); break;
    case GL_COLOR_ARRAY: glColorPointer(components, type, stride, offset); break;
    default: glTexCoordPointer(components, type, stride, offset); break;
    }
}

} // namespace

GLVertexBuffer::GLVertexBuffer(GLContext* context, const VertexDescriptor& descriptor, int type)
    : GLBuffer(context, GL_ARRAY_BUFFER_ARB)
    , m_VertexDescriptor(descriptor)
    , m_Type(type)
{}

bool GLVertexBuffer::init(unsigned int numElements, unsigned int usage)
{
    m_NumElements = numElements;
    const std::optional<unsigned int> size = bytesOfElements(numElements, m_VertexDescriptor.getSize());
    if (!size)
        return false;
    return m_Type == TYPE_RENDERED32 ? initFromPixels(*size, usage) : GLBuffer::init(*size, usage);
}

bool GLVertexBuffer::initFromPixels(unsigned int sizeInBytes, unsigned int usage)
{
    if (!makeBufferStorage(GL_PIXEL_PACK_BUFFER_ARB, m_BufferId, sizeInBytes, usage))
        return false;
    m_SizeInBytes = sizeInBytes;
    noteBytes(NameKind::BUFFER, m_BufferId, *this, sizeInBytes);
    return true;
}

void GLVertexBuffer::bind()
{
    GLBuffer::bind();
    const auto stride = static_cast<GLsizei>(m_VertexDescriptor.getSize());
    for (unsigned int i = 0; i < m_VertexDescriptor.getNumAttribs(); ++i) {
        const VertexAttribDescriptor& attribute = m_VertexDescriptor.getAttribute(i);
        const auto components = static_cast<GLint>(attribute.getNumComponents());
        const GLenum type = glTypeOf(attribute);
        const void* const offset = bufferOffset(m_VertexDescriptor.getAttributeOffset(i));
        if (!m_MappingFlag) {
            glEnableVertexAttribArrayARB(i);
            glVertexAttribPointerARB(i, components, type, GL_FALSE, stride, offset);
        } else if (const GLenum array = clientArrayOf(attribute); array != NO_ARRAY) {
            glEnableClientState(array);
            pointClientArray(array, components, type, stride, offset);
        }
    }
}

void GLVertexBuffer::unbind()
{
    for (unsigned int i = 0; i < m_VertexDescriptor.getNumAttribs(); ++i) {
        if (!m_MappingFlag)
            glDisableVertexAttribArrayARB(i);
        else if (const GLenum array = clientArrayOf(m_VertexDescriptor.getAttribute(i)); array != NO_ARRAY)
            glDisableClientState(array);
    }
    GLBuffer::unbind();
}

void GLVertexBuffer::drawArrays(unsigned int mode, unsigned int first, unsigned int count)
{
    glDrawArrays(mode, static_cast<GLint>(first), static_cast<GLsizei>(count == 0 ? m_NumElements : count));
}

void GLVertexBuffer::writeToBuffer(void* data, int firstElement, unsigned int numElements)
{
    writeElements(data, firstElement, numElements, m_VertexDescriptor.getSize());
}

void GLVertexBuffer::readFromBuffer(std::vector<unsigned char>& out, int firstElement, unsigned int numElements)
{
    readElements(out, firstElement, numElements, m_VertexDescriptor.getSize());
}

void GLVertexBuffer::copyFromRenderTarget(
    unsigned int x, unsigned int y, unsigned int width, unsigned int height, unsigned int readBuffer)
{
    const unsigned int pixelsPerVertex = m_VertexDescriptor.getNumAttributes();
    glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, m_BufferId);
    glReadBuffer(readBuffer);
    glReadPixels(static_cast<GLint>(pixelsPerVertex * x), static_cast<GLint>(y),
        static_cast<GLsizei>(pixelsPerVertex * width), static_cast<GLsizei>(height), GL_RGBA, GL_FLOAT, nullptr);
    glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, 0);
}

} // namespace tavo
