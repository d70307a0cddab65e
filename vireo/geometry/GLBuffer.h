#pragma once

#include <vector>

#include "vireo/Export.h"
#include "vireo/context/GLObject.h"

namespace tavo {

// A buffer object: bytes that live with the driver (GL_ARB_vertex_buffer_object). Subclasses say what they hold, and
// offer the operations that are protected here in units of it.
//
// The name exists from construction to destruction, or until the root of the context's tree dies. From then on every
// operation that needs GL throws PException "GLBuffer::<operation>() - invalid context". Copies are member-wise and
// share the name: copying is not a supported use.
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

    // Bind the buffer to its target, and nothing to that target.
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
    // "GLBuffer::readFromBuffer | out of range!", with nothing copied, if offset + size, in 32 bits, is more than the
    // buffer's size. Nothing is bound to the target afterwards.
    void writeToBuffer(void* data, int offsetInBytes, unsigned int sizeInBytes);

    // out has exactly sizeInBytes bytes afterwards.
    void readFromBuffer(std::vector<unsigned char>& out, int offsetInBytes, unsigned int sizeInBytes);

    unsigned int m_BufferId = 0;
    unsigned int m_SizeInBytes = 0;
    unsigned int m_Target;

private:
    void requireContext(const char* operation);
    bool isInRange(int offsetInBytes, unsigned int sizeInBytes) const;
};

} // namespace tavo
