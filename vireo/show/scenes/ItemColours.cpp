#include "vireo/show/scenes/ItemColours.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/scenes/byteOf.h"
#include "vireo/show/scenes/valueCounts.h"
#include "vireo/show/volumes/volumeItem.h"

namespace tavo {

namespace {

constexpr const char* COLOURS = "colours";
constexpr std::size_t SWATCH_SIZE = 8;

std::set<std::int64_t> differentLabels(const NumberArray& numbers, std::size_t most)
{
    std::set<std::int64_t> labels;
    numbers.visit([&](const auto* values, std::size_t size) {
        std::optional<std::int64_t> last; // they come in runs
        for (std::size_t i = 0; i < size && labels.size() < most; ++i) {
            const std::optional<std::int64_t> label = labelOf(values[i]);
            if (label && label != last)
                labels.insert(*label);
            last = label;
        }
    });
    return labels;
}

// Of all but the lowest and the highest 200th; of all, if those are all that differ.
std::pair<double, double> usualRangeOf(const NumberArray& numbers)
{
    constexpr double LEFT_OUT = 0.005;
    const auto range = quantiles(numbers, LEFT_OUT, 1 - LEFT_OUT);
    return range.first < range.second ? range : finiteRangeOf(numbers);
}

// Of the least ones.
std::vector<RGBA8> swatchOfLabels(const std::set<std::int64_t>& labels)
{
    std::vector<RGBA8> colours;
    for (const std::int64_t label : labels)
        if (colours.size() < SWATCH_SIZE / 2)
            colours.push_back(colourOfLabel(label));
    return colours;
}

template <typename T>
void replace(std::optional<T>& value, std::optional<T>& newer)
{
    if (newer)
        value.swap(newer);
}

} // namespace

bool ItemColours::apply(ItemUpdate& update)
{
    for (SceneField& field : update.fields) {
        auto found = std::find_if(
            m_Fields.begin(), m_Fields.end(), [&field](const Field& older) { return older.name == field.name; });
        if (found == m_Fields.end())
            found = m_Fields.insert(m_Fields.end(), Field{field.name});
        found->areSentLabels = field.areLabels;
        found->values.send(field.values);
    }
    m_Colours.send(update.colours);
    replace(m_Sent.shown, update.shown);
    replace(m_Sent.range, update.range);
    replace(m_Sent.colourMap, update.colourMap);
    replace(m_Sent.opacities, update.opacities);
    replace(m_Sent.areCategories, update.areCategories);
    if (update.labelNames)
        m_LabelNames.swap(*update.labelNames);
    const bool areOthersOnFaces = !update.onFaces.empty();
    m_OnFaces.merge(update.onFaces);
    return areOthersOnFaces;
}

bool ItemColours::settle(const ItemShape& shape)
{
    m_IsVolume = shape.grid.has_value();
    m_NumPoints = shape.numPoints();
    m_NumParts = shape.numParts();
    const auto fitsAs = [this](const std::string& name) {
        return [this, name](const NumberTuples& tuples) { return fitOf(tuples, name).has_value(); };
    };
    bool isNew = m_Colours.settle(fitsAs(COLOURS));
    for (Field& field : m_Fields) {
        if (!field.values.settle(fitsAs(field.name)))
            continue;
        field.range.reset();
        field.usualRange.reset();
        field.categories.reset();
        field.areNumbers.reset();
        isNew = true;
    }
    return isNew;
}

bool ItemColours::settleStyle(const ItemChoice& chosen)
{
    const auto before = std::tuple(m_Shown, m_Range, m_IsWhole, m_ColourMap, m_Opacities);
    m_Shown = chosen.shown && has(*chosen.shown) ? chosen.shown : m_Sent.shown;
    const bool areLabelsNew = settleLabels(chosen);
    settleRange(chosen);
    return areLabelsNew || std::tie(m_Shown, m_Range, m_IsWhole, m_ColourMap, m_Opacities) != before;
}

// What is said of a volume's own numbers is not meant for others that it has.
bool ItemColours::areSentAsLabels(const Field& field) const
{
    const bool areOwn = m_IsVolume && field.name == VOLUME_SAMPLES;
    return field.areSentLabels || (areOwn && m_Sent.areCategories.value_or(false));
}

bool ItemColours::settleLabels(const ItemChoice& chosen)
{
    bool isAnyNew = false;
    for (Field& field : m_Fields) {
        const auto found = chosen.fields.find(field.name);
        const auto areChosen = found != chosen.fields.end() ? found->second.areLabels : std::nullopt;
        const bool areLabels = areChosen.value_or(areSentAsLabels(field));
        isAnyNew |= std::exchange(field.areLabels, areLabels) != areLabels;
    }
    return isAnyNew;
}

const std::set<std::int64_t>& ItemColours::categoriesOf(const Field& field) const
{
    if (!field.categories)
        field.categories = differentLabels(field.values.used()->numbers, MOST_CATEGORIES);
    return *field.categories;
}

void ItemColours::settleRange(const ItemChoice& choice)
{
    m_Range = m_Sent.range;
    m_ColourMap = m_Sent.colourMap.value_or(std::string(namesOfColourMaps().front()));
    m_Opacities = opacitiesSent();
    m_IsWhole = false;
    const auto chosen = choice.fields.find(nameOfShown());
    if (chosen == choice.fields.end())
        return;
    m_Opacities = chosen->second.opacities.value_or(m_Opacities);
    m_ColourMap = chosen->second.colourMap.value_or(m_ColourMap);
    if (chosen->second.range || chosen->second.isWhole)
        m_Range = chosen->second.range;
    m_IsWhole = chosen->second.isWhole;
}

// Of numbers that a person has made categories of, or the reverse, nothing was said.
OpacityCurve ItemColours::opacitiesSent() const
{
    const Field* const shown = shownField();
    const bool areLabels = shown && shown->areLabels;
    if (m_Sent.opacities && (!shown || areLabels == areSentAsLabels(*shown)))
        return *m_Sent.opacities;
    return areLabels ? opacitiesOfCategories() : usualOpacities();
}

bool ItemColours::has(const std::string& shown) const
{
    const auto isShown = [&shown](const Field& field) { return field.name == shown; };
    return shown.empty() || (shown == COLOURS && (sent() || waiting())) ||
           std::any_of(m_Fields.begin(), m_Fields.end(), isShown);
}

bool ItemColours::areSentShown() const
{
    return sent() && m_Shown.value_or(COLOURS) == COLOURS;
}

const ItemColours::Field* ItemColours::shownField() const
{
    for (const Field& field : m_Fields)
        if (field.values.used() && m_Shown.value_or(field.name) == field.name)
            return areSentShown() ? nullptr : &field;
    return nullptr;
}

std::string ItemColours::nameOfShown() const
{
    if (areSentShown())
        return COLOURS;
    const Field* const field = shownField();
    return field ? field->name : std::string();
}

bool ItemColours::areOfParts() const
{
    if (areSentShown())
        return fitOf(*sent(), COLOURS)->areOfParts;
    const Field* const field = shownField();
    return field && fitOf(*field->values.used(), field->name)->areOfParts;
}

// Points come first.
std::optional<ItemColours::Fit> ItemColours::fitOf(const NumberTuples& tuples, const std::string& name) const
{
    const bool isKnown = tuples.width != 0;
    for (const bool areOfParts : {false, true}) {
        if (!areOfParts && m_OnFaces.contains(name))
            continue;
        const std::size_t count = areOfParts ? m_NumParts : m_NumPoints;
        if (areOfParts && count == 0)
            return {}; // what has no parts has no numbers of them
        for (const std::size_t width : {isKnown ? tuples.width : 3, isKnown ? tuples.width : 4})
            if (tuples.numbers.size() == width * count)
                return Fit{areOfParts, width};
    }
    return {};
}

std::pair<double, double> ItemColours::rangeOf(const Field& field) const
{
    if (m_Range)
        return *m_Range;
    if (field.areLabels && !categoriesOf(field).empty())
        return {static_cast<double>(*categoriesOf(field).begin()), static_cast<double>(*categoriesOf(field).rbegin())};
    std::optional<std::pair<double, double>>& range = m_IsVolume && !m_IsWhole ? field.usualRange : field.range;
    if (!range)
        range = &range == &field.range ? finiteRangeOf(field.values.used()->numbers)
                                       : usualRangeOf(field.values.used()->numbers);
    return *range;
}

bool ItemColours::haveNumbers(const Field& field)
{
    if (!field.areNumbers)
        field.areNumbers = isAnyFinite(field.values.used()->numbers);
    return *field.areNumbers;
}

std::optional<RGBA8> ItemColours::sentAt(std::size_t source, std::size_t part) const
{
    if (!sent())
        return {};
    const Fit fit = *fitOf(*sent(), COLOURS);
    RGBA8 colour(0, 0, 0, 255);
    sent()->numbers.visit([&](const auto* numbers, std::size_t) {
        for (std::size_t i = 0; i < fit.width; ++i)
            colour[i] = byteOf(numbers[fit.width * (fit.areOfParts ? part : source) + i]);
    });
    return colour;
}

std::vector<RGBA8> ItemColours::swatch() const
{
    if (areSentShown())
        return swatchAsSent();
    const Field* const field = shownField();
    return field ? swatchOf(*field) : std::vector<RGBA8>();
}

std::vector<RGBA8> ItemColours::swatchAsSent() const
{
    const std::size_t size = sent()->numbers.size();
    const std::size_t width = sent()->width != 0 ? sent()->width : size == 4 * m_NumPoints ? 4 : 3;
    std::vector<RGBA8> colours;
    sent()->numbers.visit([&](const auto* numbers, std::size_t) {
        for (std::size_t i = 0; i < SWATCH_SIZE && size >= width; ++i) {
            const auto* const colour = numbers + width * (i * (size / width) / SWATCH_SIZE);
            colours.emplace_back(byteOf(colour[0]), byteOf(colour[1]), byteOf(colour[2]), 255);
        }
    });
    return colours;
}

std::vector<RGBA8> ItemColours::swatchOf(const Field& field) const
{
    if (field.areLabels)
        return swatchOfLabels(categoriesOf(field));
    const ColourMap map = findColourMap(m_ColourMap).value();
    std::vector<RGBA8> colours;
    for (std::size_t i = 0; i < SWATCH_SIZE; ++i)
        colours.push_back(map.sample(double(i) / (SWATCH_SIZE - 1)));
    return colours;
}

// Calls use(source) for the point or the part that each vertex is of.
template <typename Use>
void ItemColours::forEachSource(const DrawnItem& drawn, std::size_t numVertices, bool areOfParts, Use use)
{
    if (!areOfParts)
        return drawn.forEachSource(numVertices, use);
    const std::size_t width = drawn.primitive == PrimitiveKind::Triangles ? 3 : 2;
    for (std::size_t vertex = 0; vertex < numVertices; ++vertex)
        use(drawn.parts[vertex / width]);
}

std::vector<unsigned char> ItemColours::ofVertices(
    const DrawnItem& drawn, std::size_t numVertices, double opacity) const
{
    if (areSentShown())
        return asSent(drawn, numVertices, opacity);
    const Field* const field = shownField();
    return field ? ofField(*field, drawn, numVertices, opacity) : drawn.colours;
}

std::vector<unsigned char> ItemColours::ofField(
    const Field& field, const DrawnItem& drawn, std::size_t numVertices, double opacity) const
{
    const auto [from, to] = rangeOf(field);
    const double half = to / 2 - from / 2; // the whole may be too large
    const bool areOfParts = fitOf(*field.values.used(), field.name)->areOfParts;
    const ColourMap map = findColourMap(m_ColourMap).value();
    const unsigned char alpha = byteOf(opacity);
    std::vector<unsigned char> colours(4 * numVertices);
    unsigned char* next = colours.data();
    field.values.used()->numbers.visit([&, from = from](const auto* numbers, std::size_t) {
        forEachSource(drawn, numVertices, areOfParts, [&](std::size_t source) {
            const auto value = static_cast<double>(numbers[source]);
            RGBA8 colour = ColourMap::colourOfNaN();
            const std::optional<std::int64_t> label = field.areLabels ? labelOf(numbers[source]) : std::nullopt;
            if (label)
                colour = colourOfLabel(*label);
            else if (!field.areLabels && !std::isnan(value))
                colour =
                    map.sample(half != 0 ? (value / 2 - from / 2) / half : 0.5 * ((value >= from) + (value > from)));
            colour[3] = alpha;
            next = std::copy_n(colour.data(), 4, next);
        });
    });
    return colours;
}

std::vector<unsigned char> ItemColours::asSent(const DrawnItem& drawn, std::size_t numVertices, double opacity) const
{
    const auto [areOfParts, width] = fitOf(*sent(), COLOURS).value();
    std::vector<unsigned char> colours(4 * numVertices);
    unsigned char* next = colours.data();
    sent()->numbers.visit([&, areOfParts = areOfParts, width = width]<typename T>(const T* numbers, std::size_t) {
        forEachSource(drawn, numVertices, areOfParts, [&](std::size_t source) {
            const T* const colour = numbers + width * source;
            for (std::size_t component = 0; component < 3; ++component)
                *next++ = byteOf(colour[component]);
            const unsigned char alpha = width == 4 ? byteOf(colour[3]) : 255;
            *next++ = byteOf(opacity * alpha / 255);
        });
    });
    return colours;
}

} // namespace tavo
