#include "tavo/points/VertexDescriptor.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "tavo/base/math/checkedAt.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

namespace {

// Bytes that lie side by side in both layouts.
struct CopyRun
{
    unsigned int sourceOffset;
    unsigned int targetOffset;
    unsigned int size;
};

bool haveSameType(const VertexAttribDescriptor& a, const VertexAttribDescriptor& b)
{
    return a.getType() == b.getType() || (a.isFloat() && b.isFloat());
}

// Most runs are a few floats: a copy whose size the compiler knows is much quicker than a call of memcpy.
void copyRun(const CopyRun& run, const unsigned char* from, unsigned char* to)
{
    from += run.sourceOffset;
    to += run.targetOffset;
    switch (run.size) {
    case 4: std::memcpy(to, from, 4); break;
    case 8: std::memcpy(to, from, 8); break;
    case 12: std::memcpy(to, from, 12); break;
    case 16: std::memcpy(to, from, 16); break;
    default: std::memcpy(to, from, run.size); break;
    }
}

void append(std::vector<CopyRun>& runs, const CopyRun& run)
{
    if (!runs.empty()) {
        CopyRun& last = runs.back();
        if (last.sourceOffset + last.size == run.sourceOffset && last.targetOffset + last.size == run.targetOffset) {
            last.size += run.size;
            return;
        }
    }
    runs.push_back(run);
}

std::vector<CopyRun> planCopy(const VertexDescriptor& target, const VertexDescriptor& source)
{
    std::vector<CopyRun> runs;
    for (unsigned int i = 0; i < target.getNumAttribs(); ++i) {
        const VertexAttribDescriptor& to = target.getAttribute(i);
        if (!source.providesAttribute(to.getName()))
            continue;
        const unsigned int j = source.getIndex(to.getName());
        const VertexAttribDescriptor& from = source.getAttribute(j);
        if (!haveSameType(from, to))
            throw PException("VertexDescriptor::convertVertices() - '" + to.getName() + "' differs in type");
        append(runs, {source.getAttributeOffset(j), target.getAttributeOffset(i),
                         std::min(from.getSizeInBytes(), to.getSizeInBytes())});
    }
    return runs;
}

bool coverAll(const std::vector<CopyRun>& runs, const VertexDescriptor& target)
{
    unsigned int numBytes = 0;
    for (const CopyRun& run : runs)
        numBytes += run.size;
    return numBytes == target.getSize();
}

} // namespace

void VertexDescriptor::pushAttrib(const VertexAttribDescriptor& attribute)
{
    if (attribute.getSizeInBytes() > std::numeric_limits<unsigned int>::max() - m_Size)
        throw PException("VertexDescriptor::pushAttrib() - the vertex is too large for '" + attribute.getName() + "'");
    m_Offsets.reserve(m_Offsets.size() + 1);
    m_Attributes.push_back(attribute);
    m_Offsets.push_back(m_Size);
    m_Size += attribute.getSizeInBytes();
}

const VertexAttribDescriptor& VertexDescriptor::getAttribute(unsigned int i) const
{
    return checkedAt(m_Attributes, i);
}

const VertexAttribDescriptor& VertexDescriptor::getAttribute(const std::string& name) const
{
    return m_Attributes[getIndex(name)];
}

unsigned int VertexDescriptor::getAttributeOffset(unsigned int i) const
{
    return checkedAt(m_Offsets, i);
}

bool VertexDescriptor::providesAttribute(const std::string& name) const
{
    return find(name) != NOT_FOUND;
}

bool VertexDescriptor::providesAttribute(const std::string& name, unsigned int components, unsigned int typeCode) const
{
    const unsigned int i = find(name);
    return i != NOT_FOUND && m_Attributes[i].getNumComponents() == components && m_Attributes[i].getType() == typeCode;
}

unsigned int VertexDescriptor::getIndex(const std::string& name) const
{
    const unsigned int i = find(name);
    if (i == NOT_FOUND)
        throw PException("VertexDescriptor::getIndex() - no attribute '" + name + "'");
    return i;
}

unsigned int VertexDescriptor::find(const std::string& name) const
{
    const auto found = std::find_if(m_Attributes.begin(), m_Attributes.end(),
        [&name](const VertexAttribDescriptor& attribute) { return attribute.getName() == name; });
    return found == m_Attributes.end() ? NOT_FOUND : static_cast<unsigned int>(found - m_Attributes.begin());
}

void VertexDescriptor::convertVertices(const VertexDescriptor& target, const VertexDescriptor& source, const void* data,
    unsigned int count, std::vector<unsigned char>& converted)
{
    std::vector<unsigned char> result(std::size_t(target.getSize()) * count);
    convertVertices(target, source, data, count, result.data());
    converted = std::move(result);
}

void VertexDescriptor::convertVertices(const VertexDescriptor& target, const VertexDescriptor& source, const void* data,
    unsigned int count, unsigned char* converted)
{
    const std::vector<CopyRun> runs = planCopy(target, source);
    if (data == nullptr && count > 0)
        throw PException("VertexDescriptor::convertVertices() - no data");

    const auto* from = static_cast<const unsigned char*>(data);
    unsigned char* to = converted;
    if (!coverAll(runs, target))
        std::fill_n(to, std::size_t(target.getSize()) * count, 0);
    for (unsigned int vertex = 0; vertex < count; ++vertex) {
        for (const CopyRun& run : runs)
            copyRun(run, from, to);
        from += source.getSize();
        to += target.getSize();
    }
}

} // namespace tavo
