#pragma once

#include <cstring>
#include <vector>

#include "tavo/points/PointSet.h"

namespace tavo {

// A set of float positions without gaps between them and the bytes before and behind each.
class PackedPointSet : public PointSet
{
public:
    using Bytes = std::vector<unsigned char>;

    PackedPointSet(const Bytes& before, const std::vector<Vector3f>& positions, const Bytes& behind)
        : PointSet(descriptor(before, behind), static_cast<unsigned int>(positions.size()))
    {
        unsigned char* to = getData();
        const auto append = [&to](const void* bytes, std::size_t count) {
            if (count > 0)
                std::memcpy(to, bytes, count);
            to += count;
        };
        for (const Vector3f& position : positions) {
            append(before.data(), before.size());
            append(position.data(), 3 * sizeof(float));
            append(behind.data(), behind.size());
        }
    }

private:
    static VertexDescriptor descriptor(const Bytes& before, const Bytes& behind)
    {
        VertexDescriptor result;
        const auto pushBytes = [&result](const char* name, const Bytes& bytes) {
            if (!bytes.empty())
                result.pushAttrib(VertexAttribDescriptor(
                    name, static_cast<unsigned int>(bytes.size()), VertexAttribDescriptor::TYPE_UNSIGNED_BYTE));
        };
        pushBytes("flags", before);
        result.pushAttrib(VertexAttribDescriptor("position", 3, VertexAttribDescriptor::TYPE_FLOAT));
        pushBytes("color", behind);
        return result;
    }
};

} // namespace tavo
