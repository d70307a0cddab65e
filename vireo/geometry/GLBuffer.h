#pragma once

#include <cstdint>
#include <vector>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

// A buffer object: bytes that live with the driver (GL_ARB_vertex_buffer_object). Subclasses say what they hold, and
// offer the operations that are protected here in units of it.
//
// The name exists from construction to destruction, or until the root of the context's tree dies. From then on the
// operations below throw PException "GLBuffer::<operation>() - invalid context". Copies are member-wise and share the
// name: copying is not a supported use.
//
// All operations need a current context of the tree, save destruction: it hands the name to the context, which deletes
// it when it can.
class VIREO_EXPORT GLBuffer : public GLObject
{
public:
    // Makes the name at once; storage comes with the subclasses' init. The target is what the buffer is bound to, for
    // example GL_ARRAY_BUFFER_ARB.
    GLBuffer(GLContext* context, unsigned int target);
    ~GLBuffer() override;

    // bind binds the buffer to its target. unbind binds nothing to that target.
    void bind();
    void unbind();

    // 0 before init.
    unsigned int getSizeInBytes() const { return m_SizeInBytes; }

    // Releases the name; called by the dying context. Throws PException if the buffer has no context any more.
    void onDeleteContext() override;

protected:
    // Makes storage of that size, its content undefined, for a usage such as GL_STATIC_DRAW_ARB. What the buffer held
    // is gone. False on a GL error, also on one that was pending before; the buffer then stays bound, and its size is
    // the one that was asked for. Otherwise nothing is bound to the target afterwards.
    bool init(unsigned int sizeInBytes, unsigned int usage);

    // Copy bytes into and out of the buffer. Throw PException "GLBuffer::writeToBuffer | out of range!" and
    // "GLBuffer::readFromBuffer | out of range!", with nothing copied, if offset + size is more than the buffer's size.
    // The sum is deliberately made in 32 bits: a negative offset may pass, and is then a GL error. Nothing is bound to
    // the target afterwards.
    void writeToBuffer(void* data, int offsetInBytes, unsigned int sizeInBytes);

    // out has exactly sizeInBytes bytes afterwards.
    void readFromBuffer(std::vector<unsigned char>& out, int offsetInBytes, unsigned int sizeInBytes);

    // The same for elements of elementSize bytes, anywhere in the buffer. What is more than 32 bits can count is out of
    // range as well.
    void writeElements(void* data, int firstElement, unsigned int numElements, unsigned int elementSize);
    void readElements(
        std::vector<unsigned char>& out, int firstElement, unsigned int numElements, unsigned int elementSize);

    unsigned int m_BufferId = 0;
    unsigned int m_SizeInBytes = 0;
    unsigned int m_Target;

private:
    void requireContext(const char* operation);
    void requireRange(const char* operation, std::int64_t offsetInBytes, std::uint64_t sizeInBytes) const;
    void write(const void* data, std::int64_t offsetInBytes, std::uint64_t sizeInBytes);
    void read(std::vector<unsigned char>& out, std::int64_t offsetInBytes, std::uint64_t sizeInBytes);
};

} // namespace tavo
