#include "vireo/show/volumes/ItemVolume.h"

#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/byteOf.h"
#include "vireo/volume/opacityOfLayer.h"

namespace tavo {

namespace {

// Those that are shown; or, if it has one colour, those that came first, by which it is opaque.
const ItemColours::Field* fieldOf(const ItemColours& colours)
{
    if (const ItemColours::Field* const shown = colours.shownField())
        return shown;
    const std::vector<ItemColours::Field>& fields = colours.fields();
    const auto first = std::find_if(
        fields.begin(), fields.end(), [](const ItemColours::Field& field) { return field.values.used() != nullptr; });
    return first != fields.end() ? &*first : nullptr;
}

const NumberTuples* samplesOf(const ItemColours& colours)
{
    if (colours.areSentShown())
        return colours.sent();
    const ItemColours::Field* const field = fieldOf(colours);
    return field ? field->values.used() : nullptr;
}

// Whether its samples are categories, which each have a colour.
bool areCategories(const ItemColours& colours)
{
    const ItemColours::Field* const field = colours.areSentShown() ? nullptr : fieldOf(colours);
    return field && field->areLabels;
}

VolumeDrawing::Look lookOf(const ItemColours& colours, const RGBA8& one, double opacity)
{
    VolumeDrawing::Look look{{one}, {0, 1}, colours.opacities(), opacity};
    if (colours.areSentShown())
        return look;
    look.range = colours.rangeOf(*fieldOf(colours));
    if (colours.shownField() && areCategories(colours)) {
        const CategoryEntries entries(colours.categoriesOf(*fieldOf(colours)));
        look.colours.clear(); // there may be none
        for (const std::int64_t category : entries.categories())
            look.colours.push_back(colourOfLabel(category));
    } else if (colours.shownField()) {
        const ColourMap map = findColourMap(colours.colourMap()).value();
        look.colours.assign(map.entries().begin(), map.entries().end());
    }
    return look;
}

constexpr double VISIBLE = 0.1; // of what is behind it, what it hides

// In a layer as thick as the smallest distance of samples; none where there is no number.
class SampleOpacity
{
public:
    SampleOpacity(const NumberTuples& samples, const VolumeDrawing::Look& look, bool areCategories)
        : m_Samples(samples)
        , m_Look(look)
        , m_AreCategories(areCategories)
    {}

    double operator()(std::size_t sample) const
    {
        if (m_Samples.width == 1)
            return ofNumber(m_Samples.numbers[sample]);
        const auto component = [&](std::size_t i) {
            return m_Samples.numbers.visit([&](const auto* numbers, std::size_t) {
                return byteOf(numbers[m_Samples.width * sample + i]) / 255.0;
            });
        };
        if (m_Samples.width == 4)
            return component(3);
        return opacityAt(m_Look.opacities, std::max({component(0), component(1), component(2)}));
    }

    double ofNumber(double value) const
    {
        const bool isNone = !std::isfinite(value) || (m_AreCategories && std::trunc(value) == 0);
        return isNone ? 0 : opacityAt(m_Look.opacities, placeInRange(value, m_Look.range));
    }

private:
    const NumberTuples& m_Samples;
    const VolumeDrawing::Look& m_Look;
    bool m_AreCategories;
};

// That together with those before it hides something.
std::optional<std::size_t> firstAlong(const VolumeRay& ray, const SampleOpacity& opacityOf, double opacity)
{
    std::optional<std::size_t> first;
    double seen = 1; // of what is behind
    ray.forEach([&](std::size_t sample) {
        seen *= 1 - opacityOfLayer(opacity * opacityOf(sample), ray.thickness());
        if (1 - seen >= VISIBLE)
            first = sample;
        return !first;
    });
    return first;
}

std::optional<std::size_t> greatestAlong(const VolumeRay& ray, const NumberArray& samples)
{
    std::optional<std::size_t> greatest;
    ray.forEach([&](std::size_t sample) {
        const double value = samples[sample];
        if (std::isfinite(value) && (!greatest || value > samples[*greatest]))
            greatest = sample;
        return true;
    });
    return greatest;
}

} // namespace

std::optional<std::size_t> ItemVolume::sampleAlong(
    const VolumeRay& ray, const ItemColours& colours, double opacity, bool isMaximum)
{
    const NumberTuples* const samples = samplesOf(colours);
    if (!samples)
        return {};
    const VolumeDrawing::Look look = lookOf(colours, {}, opacity);
    const SampleOpacity opacityOf(*samples, look, areCategories(colours));
    if (!isMaximum || areCategories(colours) || samples->width != 1)
        return firstAlong(ray, opacityOf, opacity);
    const std::optional<std::size_t> greatest = greatestAlong(ray, samples->numbers);
    double most = 0;
    for (const OpacityPoint& point : look.opacities)
        most = std::max(most, point.opacity);
    const bool isSeen = greatest && opacity * opacityOf(*greatest) >= VISIBLE * most;
    return isSeen && most > 0 ? greatest : std::nullopt;
}

void ItemVolume::prepare(
    GLContext& context, const VolumeGrid& grid, const ItemColours& colours, const RGBA8& one, double opacity)
{
    const NumberTuples* const samples = samplesOf(colours);
    const bool isOfCategories = m_Drawing && m_Drawing->getCategories();
    if (!samples || isOfCategories != areCategories(colours) ||
        (m_Drawing && !m_Drawing->getSamples().numbers.isSame(samples->numbers)))
        m_Drawing.reset();
    if (samples && !m_Drawing) {
        VolumeDrawing::Categories categories;
        if (areCategories(colours))
            categories = std::make_shared<const CategoryEntries>(colours.categoriesOf(*fieldOf(colours)));
        m_Drawing = VolumeDrawing::make(context, grid, *samples, std::move(categories));
    }
    if (m_Drawing)
        m_Drawing->setLook(lookOf(colours, one, opacity));
}

} // namespace tavo
