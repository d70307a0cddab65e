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

ShownVolume::ShownVolume(VolumeExhibit exhibit, const std::string& scene)
    : m_Name(std::move(exhibit.name))
    , m_Scene(scene)
    , m_Grid(exhibit.volume.grid)
    , m_SecondsPerTime(exhibit.volume.secondsPerTime)
{
    const tavo::Statement together;
    Volume& volume = exhibit.volume;
    const bool isPerson = volume.isOriented;
    const bool hasRange = volume.numChannels == 1 && (isPerson || volume.times.size() > 1);
    const Span range = hasRange ? rangeOf(volume.times) : Span();
    for (NumberColumn& samples : volume.times)
        m_Times.push_back(std::visit([](auto& values) { return tavo::Samples(std::move(values)); }, samples));
    const tavo::Scene shown = tavo::scene(m_Scene);
    shown.view(nameOf(volume.front == Volume::Front::HIGH_Y ? Side::BACK : Side::FRONT));
    const tavo::Item item = showTime(0);
    if (range.getHalfExtent() > 0 && isPerson)
        showAsPerson(item, range);
    else if (range.getHalfExtent() > 0)
        item.range(range.getMin(), range.getMax());
}

tavo::Item ShownVolume::showTime(std::size_t time) const
{
    return tavo::scene(m_Scene).volume(m_Name, m_Times[time], {m_Grid.size[0], m_Grid.size[1], m_Grid.size[2]},
        m_Grid.spacing, m_Grid.origin, {m_Grid.axes[0], m_Grid.axes[1], m_Grid.axes[2]});
}

} // namespace vireo_view
