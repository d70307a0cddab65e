#include "vireo/show/volumes/ItemVolume.h"

#include <algorithm>

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

VolumeDrawing::Look lookOf(const ItemColours& colours, const RGBA8& one, double opacity)
{
    VolumeDrawing::Look look{{one}, {0, 1}, colours.opacities(), opacity};
    if (colours.areSentShown())
        return look;
    look.range = colours.rangeOf(*fieldOf(colours));
    if (colours.shownField()) {
        const ColourMap map = findColourMap(colours.colourMap()).value();
        look.colours.assign(map.entries().begin(), map.entries().end());
    }
    return look;
}

} // namespace

void ItemVolume::prepare(
    GLContext& context, const VolumeGrid& grid, const ItemColours& colours, const RGBA8& one, double opacity)
{
    const NumberTuples* const samples = samplesOf(colours);
    if (!samples || (m_Drawing && !m_Drawing->getSamples().numbers.isSame(samples->numbers)))
        m_Drawing.reset();
    if (samples && !m_Drawing)
        m_Drawing = VolumeDrawing::make(context, grid, *samples);
    if (m_Drawing)
        m_Drawing->setLook(lookOf(colours, one, opacity));
}

} // namespace tavo
