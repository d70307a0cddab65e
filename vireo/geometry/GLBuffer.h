#pragma once

#include <cstdint>
#include <vector>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

/// A buffer object: bytes that live with the driver (GL_ARB_vertex_buffer_object). Programs use its subclasses, which
/// offer the protected operations in units of what they hold:
///
///     GLTemplatedIndexBuffer<unsigned short> indices(&context);
///     GLBuffer& buffer = indices;
///     buffer.bind();
///     buffer.unbind();
///
/// The name exists from construction until destruction, or until the root of the context's tree dies. After that every
/// operation throws PException "GLBuffer::<operation>() - invalid context". Do not copy buffers: a copy shares the
/// name.
///
/// All operations need a current context of the tree, except the destructor, which hands the name to the context.
class VIREO_EXPORT GLBuffer : public GLObject
{
public:
    /// Makes the name (glGenBuffersARB); storage comes with init of the subclass. The target is what the buffer is
    /// bound to, for example GL_ARRAY_BUFFER_ARB.
    GLBuffer(GLContext* context, unsigned int target);
    ~GLBuffer() override;

    /// Binds the buffer to its target (glBindBufferARB).
    void bind();
    /// Binds nothing to the target (glBindBufferARB).
    void unbind();

    /// The size of the storage; 0 before init.
    unsigned int getSizeInBytes() const { return m_SizeInBytes; }

    /// Hands the name to the dying context, which calls this.
    /// @throws PException If the buffer has no context any more.
    void onDeleteContext() override;

protected:
    /// Makes undefined storage of that size in place of the old (glBufferDataARB), for a usage such as
    /// GL_STATIC_DRAW_ARB. Returns false on a GL error, including one that was pending.
    /// @leaves Nothing is bound to the target. On an error the buffer stays bound and has the size that was asked for.
    bool init(unsigned int sizeInBytes, unsigned int usage);

    /// Copies bytes into the buffer (glBufferSubDataARB).
    /// @leaves Nothing is bound to the target.
    /// @throws PException "GLBuffer::writeToBuffer | out of range!", with nothing copied, if offset plus size exceeds
    /// the buffer's size. The sum is deliberately computed in 32 bits: a negative offset may pass, and is then a GL
    /// error.
    void writeToBuffer(void* data, int offsetInBytes, unsigned int sizeInBytes);

    /// Copies bytes out of the buffer (glGetBufferSubDataARB). `out` then holds exactly sizeInBytes bytes.
    /// @leaves Nothing is bound to the target.
    /// @throws PException "GLBuffer::readFromBuffer | out of range!", as for writeToBuffer.
    void readFromBuffer(std::vector<unsigned char>& out, int offsetInBytes, unsigned int sizeInBytes);

    /// Do the same for elements of elementSize bytes, anywhere in the buffer. What 32 bits cannot count is out of range
    /// too.
    void writeElements(void* data, int firstElement, unsigned int numElements, unsigned int elementSize);
    void readElements(
        std::vector<unsigned char>& out, int firstElement, unsigned int numElements, unsigned int elementSize);

    unsigned int m_BufferId = 0;
    unsigned int m_SizeInBytes = 0;
    unsigned int m_Target;

private:
    void requireRange(const char* operation, std::int64_t offsetInBytes, std::uint64_t sizeInBytes) const;
    void write(const void* data, std::int64_t offsetInBytes, std::uint64_t sizeInBytes);
    void read(std::vector<unsigned char>& out, std::int64_t offsetInBytes, std::uint64_t sizeInBytes);
};

} // namespace tavo
