#include "tavo/points/PointSet.h"

#include <cstring>
#include <limits>
#include <stdexcept>

#include "tavo/base/objects/PException.h"

namespace tavo {

namespace {

constexpr char POSITION[] = "position";

// The smallest and the largest of some numbers.
struct Range
{
    float min = std::numeric_limits<float>::infinity();
    float max = -std::numeric_limits<float>::infinity();

    // A comparison with NaN is false.
    void include(float value)
    {
        if (value < min)
            min = value;
        if (value > max)
            max = value;
    }

    Range orUnit() const { return min <= max ? *this : Range{0.0f, 1.0f}; }
};

} // namespace

PointSet::PointSet(const VertexDescriptor& descriptor, unsigned int numPoints)
    : m_Descriptor(descriptor)
    , m_NumPoints(numPoints)
    , m_Data(std::size_t(descriptor.getSize()) * numPoints)
{}

PointSet::~PointSet() = default;
PointSet::PointSet(const PointSet&) = default;
PointSet::PointSet(PointSet&&) noexcept = default;
PointSet& PointSet::operator=(const PointSet&) = default;
PointSet& PointSet::operator=(PointSet&&) noexcept = default;

bool PointSet::provides3f(const std::string& name) const
{
    if (!m_Descriptor.providesAttribute(name))
        return false;
    const VertexAttribDescriptor& attribute = m_Descriptor.getAttribute(name);
    return attribute.isFloat() && attribute.getNumComponents() >= 3;
}

bool PointSet::providesAAT(const std::string& name) const
{
    return provides3f(name) && m_Descriptor.getSize() % alignof(float) == 0 &&
           m_Descriptor.getAttributeOffset(m_Descriptor.getIndex(name)) % alignof(float) == 0;
}

AttributeAccessToken PointSet::getAAT(const std::string& name) const
{
    const unsigned int i = m_Descriptor.getIndex(name);
    if (!providesAAT(name))
        throw PException("PointSet::getAAT() - '" + name + "' is not made of three aligned floats");
    return AttributeAccessToken(m_Descriptor.getAttributeOffset(i));
}

AttributeAccessToken PointSet::find3f(const std::string& name) const
{
    const unsigned int i = m_Descriptor.getIndex(name);
    if (!provides3f(name))
        throw PException("PointSet::forEach3f() - '" + name + "' is not made of three floats");
    return AttributeAccessToken(m_Descriptor.getAttributeOffset(i));
}

void PointSet::set3f(unsigned int i, const AttributeAccessToken& token, const float* xyz)
{
    std::memcpy(m_Data.data() + checkedPosition(i, token), xyz, 3 * sizeof(float));
    m_BoundingBox.reset();
}

unsigned char* PointSet::getData()
{
    m_BoundingBox.reset();
    return m_Data.data();
}

Box3f PointSet::getBoundingBox() const
{
    if (!m_BoundingBox)
        m_BoundingBox = computeBoundingBox();
    return *m_BoundingBox;
}

Box3f PointSet::computeBoundingBox() const
{
    Range ranges[3];
    if (provides3f(POSITION))
        forEach3f(POSITION, [&ranges](const Vector3f& xyz) {
            for (unsigned int axis = 0; axis < 3; ++axis)
                ranges[axis].include(xyz[axis]);
        });
    const Range x = ranges[0].orUnit();
    const Range y = ranges[1].orUnit();
    const Range z = ranges[2].orUnit();
    return {{x.min, y.min, z.min}, {x.max, y.max, z.max}};
}

void PointSet::throwOutOfRange()
{
    throw std::out_of_range("PointSet - no such point");
}

} // namespace tavo
