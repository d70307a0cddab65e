#include "tavo/points/RegularVolume.h"

#include <atomic>
#include <utility>

#include "tavo/base/objects/PException.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr int RegularVolume::UNRESTRICTED;

namespace {

// Whether so many points are as many as there are samples, whose number may be beyond what 64 bits hold.
bool isNumSamples(const Vector3i& extends, std::uint64_t numPoints)
{
    const auto inPlane = static_cast<std::uint64_t>(extends[0]) * static_cast<std::uint64_t>(extends[1]);
    const auto numPlanes = static_cast<std::uint64_t>(extends[2]);
    if (inPlane == 0 || numPlanes == 0)
        return numPoints == 0;
    return numPoints % inPlane == 0 && numPoints / inPlane == numPlanes;
}

std::uint64_t nextVolumeNumber()
{
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

} // namespace

RegularVolume::RegularVolume(const Vector3i& extends, const Box3f& box, std::unique_ptr<PointSet> samples)
    : m_VolumeNumber(nextVolumeNumber())
    , m_Extends(extends)
    , m_Box(box)
    , m_Samples(std::move(samples))
{
    for (unsigned int axis = 0; axis < 3; ++axis)
        if (extends[axis] < 0)
            throw PException("RegularVolume::RegularVolume() - negative number of samples");
}

RegularVolume::~RegularVolume() = default;

RegularVolume::RegularVolume(RegularVolume&& other) noexcept
    : m_VolumeNumber(std::exchange(other.m_VolumeNumber, nextVolumeNumber()))
    , m_Extends(std::exchange(other.m_Extends, Vector3i()))
    , m_Box(other.m_Box)
    , m_Samples(std::move(other.m_Samples))
{}

RegularVolume& RegularVolume::operator=(RegularVolume&& other) noexcept
{
    m_VolumeNumber = std::exchange(other.m_VolumeNumber, nextVolumeNumber());
    m_Extends = std::exchange(other.m_Extends, Vector3i());
    m_Box = other.m_Box;
    m_Samples = std::move(other.m_Samples);
    return *this;
}

VolumeChannel RegularVolume::getChannel(const std::string& name) const
{
    const VertexDescriptor channels = m_Samples ? m_Samples->getDescr() : VertexDescriptor();
    const unsigned int i = channels.getIndex(name);
    return {channels.getAttribute(i), channels.getAttributeOffset(i)};
}

detail::SampleBlock RegularVolume::findBlock(
    const VolumeChannel& channel, unsigned int numComponents, const Vector3i& min, const Vector3i& max) const
{
    requireSamples();
    std::size_t step = m_Samples->getDescr().getSize();
    const bool isWithin = channel.m_Offset + std::size_t{numComponents} * sizeof(float) <= step;
    if (!channel.m_IsFloat || channel.m_NumComponents != numComponents || !isWithin)
        throw PException("RegularVolume::mapChannel() - data format does not match channel format.");
    detail::SampleBlock block{std::as_const(*m_Samples).getData() + channel.m_Offset, {1, 1, 1}, {0, 0, 0}};
    unsigned int numLoops = 0;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const int first = min[axis] == UNRESTRICTED ? 0 : min[axis];
        const int last = max[axis] == UNRESTRICTED ? m_Extends[axis] - 1 : max[axis];
        const bool isEmpty = m_Extends[axis] == 0 && first == 0 && last == -1;
        if (!isEmpty && (first < 0 || last < first || last >= m_Extends[axis]))
            throw PException("RegularVolume::mapChannel() - the bounds are not within the volume");
        const bool isFixed = min[axis] != UNRESTRICTED && min[axis] == max[axis];
        if (!isFixed) {
            block.counts[numLoops] = static_cast<std::size_t>(last - first) + 1;
            block.steps[numLoops] = step;
            ++numLoops;
        }
        block.start += static_cast<std::size_t>(first) * step;
        step *= static_cast<std::size_t>(m_Extends[axis]);
    }
    return block;
}

void RegularVolume::requireSamples() const
{
    if (!m_Samples || !isNumSamples(m_Extends, m_Samples->getNumPoints()))
        throw PException("RegularVolume::mapChannel() - data size does not match volume.");
}

} // namespace tavo
