#include "vireo/geometry/GLBuffer.h"

#include <string>

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/geometry/bufferStorage.h"

namespace tavo {

GLBuffer::GLBuffer(GLContext* context, unsigned int target)
    : GLObject(context)
    , m_Target(target)
{
    static const bool isReported = reportMissing("GLBuffer");
    static_cast<void>(isReported);
    glGenBuffersARB(1, &m_BufferId);
    noteName(NameKind::BUFFER, m_BufferId, *this);
}

GLBuffer::~GLBuffer()
{
    if (isValid())
        getContext()->deleteBuffer(m_BufferId);
}

void GLBuffer::onDeleteContext()
{
    requireContext("GLBuffer::onDeleteContext() - invalid context");
    getContext()->deleteBuffer(m_BufferId);
}

bool GLBuffer::init(unsigned int sizeInBytes, unsigned int usage)
{
    requireContext("GLBuffer::init() - invalid context");
    m_SizeInBytes = sizeInBytes; // deliberately before it is known whether there is storage
    noteBytes(NameKind::BUFFER, m_BufferId, *this, sizeInBytes);
    return makeBufferStorage(m_Target, m_BufferId, sizeInBytes, usage);
}

void GLBuffer::bind()
{
    requireContext("GLBuffer::bind() - invalid context");
    glBindBufferARB(m_Target, m_BufferId);
}

void GLBuffer::unbind()
{
    requireContext("GLBuffer::unbind() - invalid context");
    glBindBufferARB(m_Target, 0);
}

void GLBuffer::writeToBuffer(void* data, int offsetInBytes, unsigned int sizeInBytes)
{
    write(data, offsetInBytes, sizeInBytes);
}

void GLBuffer::readFromBuffer(std::vector<unsigned char>& out, int offsetInBytes, unsigned int sizeInBytes)
{
    read(out, offsetInBytes, sizeInBytes);
}

void GLBuffer::writeElements(void* data, int firstElement, unsigned int numElements, unsigned int elementSize)
{
    write(data, std::int64_t{firstElement} * elementSize, std::uint64_t{numElements} * elementSize);
}

void GLBuffer::readElements(
    std::vector<unsigned char>& out, int firstElement, unsigned int numElements, unsigned int elementSize)
{
    read(out, std::int64_t{firstElement} * elementSize, std::uint64_t{numElements} * elementSize);
}

void GLBuffer::write(const void* data, std::int64_t offsetInBytes, std::uint64_t sizeInBytes)
{
    requireContext("GLBuffer::writeToBuffer() - invalid context");
    requireRange("writeToBuffer", offsetInBytes, sizeInBytes);
    GLBuffer::bind();
    glBufferSubDataARB(
        m_Target, static_cast<GLintptrARB>(offsetInBytes), static_cast<GLsizeiptrARB>(sizeInBytes), data);
    GLBuffer::unbind();
}

void GLBuffer::read(std::vector<unsigned char>& out, std::int64_t offsetInBytes, std::uint64_t sizeInBytes)
{
    requireContext("GLBuffer::readFromBuffer() - invalid context");
    requireRange("readFromBuffer", offsetInBytes, sizeInBytes);
    out.resize(sizeInBytes);
    GLBuffer::bind();
    glGetBufferSubDataARB(
        m_Target, static_cast<GLintptrARB>(offsetInBytes), static_cast<GLsizeiptrARB>(sizeInBytes), out.data());
    GLBuffer::unbind();
}

void GLBuffer::requireRange(const char* operation, std::int64_t offsetInBytes, std::uint64_t sizeInBytes) const
{
    const bool isCountable = offsetInBytes >= INT32_MIN && offsetInBytes <= UINT32_MAX && sizeInBytes <= UINT32_MAX;
    std::uint64_t end = static_cast<std::uint64_t>(offsetInBytes) + sizeInBytes;
    if (offsetInBytes <= INT32_MAX)
        end = static_cast<std::uint32_t>(end); // as the header says
    if (!isCountable || end > m_SizeInBytes)
        throw PException(std::string("GLBuffer::") + operation + " | out of range!");
}

} // namespace tavo
