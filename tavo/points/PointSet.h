#pragma once

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "tavo/points/AttributeAccessToken.h"
#include "tavo/points/Export.h"
#include "tavo/points/VertexDescriptor.h"

namespace tavo {

/// A fixed number of points with attributes, interleaved in memory as the descriptor says. Copies are independent.
///
///     VertexDescriptor descriptor;
///     descriptor.pushAttrib(VertexAttribDescriptor("position", 3, VertexAttribDescriptor::TYPE_FLOAT));
///     PointSet points(descriptor, 1000);
///     const AttributeAccessToken position = points.getAAT("position");
///     for (unsigned int i = 0; i < points.getNumPoints(); ++i) {
///         const float xyz[] = {0.001f * i, 0, 0};
///         points.set3f(i, position, xyz);
///     }
class TAVO_POINTS_EXPORT PointSet
{
public:
    /// Makes the points; all their bytes are zero.
    PointSet(const VertexDescriptor& descriptor, unsigned int numPoints);
    virtual ~PointSet();

    PointSet(const PointSet&);
    PointSet(PointSet&&) noexcept;
    PointSet& operator=(const PointSet&);
    PointSet& operator=(PointSet&&) noexcept;

    const VertexDescriptor& getDescr() const { return m_Descriptor; }
    unsigned int getNumPoints() const { return m_NumPoints; }

    /// Gives access to the first three components of an attribute. They must be 32-bit floats whose addresses are
    /// multiples of four.
    /// @throws PException If there is no such attribute of that name.
    AttributeAccessToken getAAT(const std::string& name) const;

    /// Whether getAAT gives access to the attribute of that name.
    bool providesAAT(const std::string& name) const;

    /// The three floats of point `i`. The pointer is valid as long as the set lives and is not assigned to.
    /// @throws std::out_of_range Beyond the last point.
    const float* get3f(unsigned int i, const AttributeAccessToken& token) const
    {
        return reinterpret_cast<const float*>(m_Data.data() + checkedPosition(i, token));
    }

    /// Stores three floats in point `i`.
    /// @throws std::out_of_range Beyond the last point.
    void set3f(unsigned int i, const AttributeAccessToken& token, const float* xyz);

    /// Calls `visit` with the first three floats of an attribute of every point, in order, each a Vector3f. The floats
    /// may have any address, for example where three colour bytes follow each position.
    /// @throws PException If no attribute of that name has three floats or more.
    template <typename Visit>
    void forEach3f(const std::string& name, Visit visit) const
    {
        const AttributeAccessToken token = find3f(name);
        for (unsigned int i = 0; i < m_NumPoints; ++i) {
            Vector3f xyz;
            std::memcpy(xyz.data(), m_Data.data() + checkedPosition(i, token), 3 * sizeof(float));
            visit(xyz);
        }
    }

    /// All points, one after the other, getDescr().getSize() bytes each. After a call of getBoundingBox(), get a new
    /// pointer before you write.
    const unsigned char* getData() const { return m_Data.data(); }
    unsigned char* getData();
    std::size_t getSizeInBytes() const { return m_Data.size(); }

    /// The box of the "position" attribute, without NaN coordinates. An axis without any coordinate goes from 0 to 1;
    /// so do all three if there are no points, or no positions that forEach3f can visit. The first call after a write
    /// takes time proportional to the number of points; the box is then kept until the next write.
    Box3f getBoundingBox() const;

private:
    std::size_t checkedPosition(unsigned int i, const AttributeAccessToken& token) const
    {
        const std::size_t position = std::size_t(i) * m_Descriptor.getSize() + token.m_Offset;
        if (position + 3 * sizeof(float) > m_Data.size())
            throwOutOfRange();
        return position;
    }

    [[noreturn]] static void throwOutOfRange();

    bool provides3f(const std::string& name) const;
    AttributeAccessToken find3f(const std::string& name) const;
    Box3f computeBoundingBox() const;

    VertexDescriptor m_Descriptor;
    unsigned int m_NumPoints;
    std::vector<unsigned char> m_Data;
    mutable std::optional<Box3f> m_BoundingBox;
};

} // namespace tavo
