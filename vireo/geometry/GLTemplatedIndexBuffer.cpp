#include "vireo/geometry/GLTemplatedIndexBuffer.h"

#include <cstdint>
#include <optional>
#include <type_traits>

#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/bufferStorage.h"

namespace tavo {

template <typename T>
GLTemplatedIndexBuffer<T>::GLTemplatedIndexBuffer(GLContext* context)
    : GLBuffer(context, GL_ELEMENT_ARRAY_BUFFER_ARB)
{}

template <typename T>
bool GLTemplatedIndexBuffer<T>::init(unsigned int numIndices, unsigned int usage)
{
    m_NumIndices = numIndices;
    const std::optional<unsigned int> size = bytesOfElements(numIndices, sizeof(T));
    return size && GLBuffer::init(*size, usage);
}

template <typename T>
void GLTemplatedIndexBuffer<T>::writeToBuffer(const T* indices, int firstIndex, unsigned int numIndices)
{
    // The base takes what it only reads by a pointer to non-const.
    writeElements(const_cast<T*>(indices), firstIndex, numIndices, sizeof(T));
}

template <typename T>
void GLTemplatedIndexBuffer<T>::readFromBuffer(std::vector<unsigned char>& out, int firstIndex, unsigned int numIndices)
{
    readElements(out, firstIndex, numIndices, sizeof(T));
}

template <typename T>
void GLTemplatedIndexBuffer<T>::drawElements(unsigned int mode, unsigned int first, unsigned int count)
{
    constexpr GLenum type = std::is_same_v<T, unsigned short> ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT;
    glDrawElements(mode, static_cast<GLsizei>(count == 0 ? m_NumIndices : count), type,
        bufferOffset(std::uintptr_t{first} * sizeof(T)));
}

// Not inline: a program takes every function of these classes from the library, and a DLL exports no inline one.
template <typename T>
unsigned int GLTemplatedIndexBuffer<T>::getNumIndices() const
{
    return m_NumIndices;
}

template class GLTemplatedIndexBuffer<unsigned short>;
template class GLTemplatedIndexBuffer<unsigned int>;

} // namespace tavo
