#pragma once

#include <vector>

#include "tavo/points/PointSet.h"

namespace tavo {

// A set of float positions that counts itself.
class TestPointSet : public PointSet
{
public:
    TestPointSet(const std::vector<Vector3f>& positions, int& numLiving)
        : PointSet(descriptor(), static_cast<unsigned int>(positions.size()))
        , m_NumLiving(numLiving)
    {
        const AttributeAccessToken token = getAAT("position");
        for (unsigned int i = 0; i < getNumPoints(); ++i)
            set3f(i, token, positions[i].data());
        ++m_NumLiving;
    }
    ~TestPointSet() override { --m_NumLiving; }

private:
    static VertexDescriptor descriptor()
    {
        VertexDescriptor result;
        result.pushAttrib(VertexAttribDescriptor("position", 3, VertexAttribDescriptor::TYPE_FLOAT));
        return result;
    }

    int& m_NumLiving;
};

} // namespace tavo
