#include "vireo/show/volumes/volumeItem.h"

#include "tavo/points/PointSet.h"
#include "vireo/show/scenes/pointSetItem.h"
#include "vireo/show/volumes/whyNoVolume.h"

namespace tavo {

namespace {

std::optional<NumberTuples> samplesOf(const PointSet& points, std::string_view channel)
{
    const VertexDescriptor& layout = points.getDescr();
    for (unsigned int i = 0; i < layout.getNumAttribs(); ++i) {
        const VertexAttribDescriptor& attribute = layout.getAttribute(i);
        const unsigned int width = attribute.getNumComponents();
        if ((channel.empty() || channel == attribute.getName()) && (width == 1 || width == 3 || width == 4))
            return tuplesOf(points, i, width);
    }
    return {};
}

// The first sample is half a cell inside the box.
SentGrid sentGridOf(const RegularVolume& volume)
{
    const Vector3i& size = volume.getExtends();
    const Box3f& box = volume.getBoundingBox();
    Vector3d spacing;
    Vector3d origin;
    for (std::size_t i = 0; i < 3; ++i) {
        spacing[i] = (double{box.getMax()[i]} - box.getMin()[i]) / size[i];
        origin[i] = box.getMin()[i] + 0.5 * spacing[i];
    }
    return {size, spacing, origin, {}};
}

} // namespace

ItemUpdate volumeItem(const VolumeGrid& grid, const NumberTuples& samples)
{
    ItemUpdate item;
    item.shape.emplace();
    item.shape->kind = ItemKind::Volume;
    item.shape->grid = grid;
    if (samples.width == 1)
        item.fields.push_back({VOLUME_SAMPLES, samples});
    else
        item.colours = samples;
    return item;
}

std::optional<ItemUpdate> volumeItem(const RegularVolume& volume, std::string_view channel)
{
    const PointSet* const points = volume.getPointSet();
    const std::optional<NumberTuples> samples = points ? samplesOf(*points, channel) : std::nullopt;
    const SentGrid grid = sentGridOf(volume);
    if (!samples || !whyNoVolume(grid, samples->numbers.size()).empty())
        return {};
    return volumeItem(gridOf(grid), *samples);
}

} // namespace tavo
