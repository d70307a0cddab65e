#include "vireo/geometry/GLBuffer.h"

#include <string>

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/bufferStorage.h"

namespace tavo {

GLBuffer::GLBuffer(GLContext* context, unsigned int target)
    : GLObject(context)
    , m_Target(target)
{
    glGenBuffersARB(1, &m_BufferId);
}

GLBuffer::~GLBuffer()
{
    if (isValid())
        getContext()->deleteBuffer(m_BufferId);
}

void GLBuffer::onDeleteContext()
{
    requireContext("onDeleteContext");
    getContext()->deleteBuffer(m_BufferId);
}

bool GLBuffer::init(unsigned int sizeInBytes, unsigned int usage)
{
    requireContext("init");
    m_SizeInBytes = sizeInBytes; // deliberately before it is known whether there is storage
    return makeBufferStorage(m_Target, m_BufferId, sizeInBytes, usage);
}

void GLBuffer::bind()
{
    requireContext("bind");
    glBindBufferARB(m_Target, m_BufferId);
}

void GLBuffer::unbind()
{
    requireContext("unbind");
    glBindBufferARB(m_Target, 0);
}

void GLBuffer::writeToBuffer(void* data, int offsetInBytes, unsigned int sizeInBytes)
{
    requireContext("writeToBuffer");
    if (!isInRange(offsetInBytes, sizeInBytes))
        throw PException("GLBuffer::writeToBuffer | out of range!");
    GLBuffer::bind();
    glBufferSubDataARB(m_Target, offsetInBytes, static_cast<GLsizeiptrARB>(sizeInBytes), data);
    GLBuffer::unbind();
}

void GLBuffer::readFromBuffer(std::vector<unsigned char>& out, int offsetInBytes, unsigned int sizeInBytes)
{
    requireContext("readFromBuffer");
    if (!isInRange(offsetInBytes, sizeInBytes))
        throw PException("GLBuffer::readFromBuffer | out of range!");
    out.resize(sizeInBytes);
    GLBuffer::bind();
    glGetBufferSubDataARB(m_Target, offsetInBytes, static_cast<GLsizeiptrARB>(sizeInBytes), out.data());
    GLBuffer::unbind();
}

void GLBuffer::requireContext(const char* operation)
{
    if (!isValid())
        throw PException(std::string("GLBuffer::") + operation + "() - invalid context");
}

bool GLBuffer::isInRange(int offsetInBytes, unsigned int sizeInBytes) const
{
    return static_cast<unsigned int>(offsetInBytes) + sizeInBytes <= m_SizeInBytes;
}

} // namespace tavo
