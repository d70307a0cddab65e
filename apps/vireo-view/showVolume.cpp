#include "apps/vireo-view/showVolume.h"

#include <cmath>
#include <utility>

#include "apps/vireo-view/Span.h"

namespace vireo_view {

namespace {

// Of all times, so that a colour is the same number at each.
Span rangeOf(const std::vector<NumberColumn>& times)
{
    Span range;
    for (const NumberColumn& samples : times)
        std::visit(
            [&range](const auto& values) {
                for (const auto value : values)
                    if (const auto number = static_cast<double>(value); std::isfinite(number))
                        range.include(number);
            },
            samples);
    return range;
}

// Of a person the skin is seen, through which shines what is below it.
void showAsPerson(const tavo::Item& item, const Span& range)
{
    item.colourMap("inferno").transferFunction(
        {{range.valueAt(0), 0}, {range.valueAt(0.15), 0}, {range.valueAt(0.27), 0.3}, {range.valueAt(0.47), 0.9}});
}

} // namespace

tavo::Samples samplesOf(NumberColumn& samples)
{
    return std::visit([](auto& values) { return tavo::Samples(std::move(values)); }, samples);
}

ShownVolume::ShownVolume(VolumeExhibit exhibit, const std::string& scene)
    : m_Name(std::move(exhibit.name))
    , m_View(scene)
    , m_IsInSlices(false)
    , m_SecondsPerTime(exhibit.volume.secondsPerTime)
{
    const tavo::Statement together;
    Volume& volume = exhibit.volume;
    const bool isPerson = volume.isOriented;
    const bool hasRange = volume.numChannels == 1 && (isPerson || volume.times.size() > 1);
    const Span range = hasRange ? rangeOf(volume.times) : Span();
    for (NumberColumn& samples : volume.times)
        m_Times.push_back({samplesOf(samples), volume.grid});
    const tavo::Scene shown = tavo::scene(m_View);
    shown.view(nameOf(volume.front == Volume::Front::HIGH_Y ? Side::BACK : Side::FRONT));
    const tavo::Item item = showInScene(0);
    if (range.getHalfExtent() > 0 && isPerson)
        showAsPerson(item, range);
    else if (range.getHalfExtent() > 0)
        item.range(range.getMin(), range.getMax());
}

ShownVolume::ShownVolume(VolumeExhibit exhibit, const std::string& slices, const LayersOnSlices& layers)
    : m_Name(std::move(exhibit.name))
    , m_View(slices)
    , m_IsInSlices(true)
    , m_SecondsPerTime(exhibit.volume.secondsPerTime)
{
    const tavo::Statement together;
    for (NumberColumn& samples : exhibit.volume.times)
        m_Times.push_back(sentVolumeOf(samplesOf(samples), exhibit.volume));
    showTime(0);
    showOnSlices(m_View, layers);
}

void ShownVolume::showTime(std::size_t time) const
{
    if (m_IsInSlices)
        showSlices(m_View, m_Times[time]);
    else
        showInScene(time);
}

tavo::Item ShownVolume::showInScene(std::size_t time) const
{
    const VoxelGrid& grid = m_Times[time].grid;
    return tavo::scene(m_View).volume(m_Name, m_Times[time].samples, {grid.size[0], grid.size[1], grid.size[2]},
        grid.spacing, grid.origin, {grid.axes[0], grid.axes[1], grid.axes[2]});
}

} // namespace vireo_view
