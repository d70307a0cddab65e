#include "vireo/show/colours/ColourMap.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tavo/base/text/printable.h"
#include "vireo/show/colours/cielab.h"
#include "vireo/show/colours/publishedColours.h"

namespace tavo {

namespace {

using Kind = ColourMap::Kind;
using Entries = ColourMap::Entries;

Entries entriesOf(const PublishedColours& colours)
{
    Entries entries;
    std::transform(colours.begin(), colours.end(), entries.begin(),
        [](std::uint32_t colour) { return RGBA8(colour >> 16, colour >> 8 & 0xFF, colour & 0xFF, 255); });
    return entries;
}

// Colours on the curve through some that are evenly spread: each piece a cubic whose slopes are those of its neighbours
// (Catmull and Rom). Lightness goes straight from each to the next, so that it is even.
Lab between(const std::vector<Lab>& points, double place, bool isClosed)
{
    const int numPieces = static_cast<int>(points.size()) - 1;
    const double along = place * numPieces;
    const int piece = std::min(static_cast<int>(along), numPieces - 1);
    const double t = along - piece;
    const auto point = [&](int i) {
        const int wrapped = isClosed ? (i + numPieces) % numPieces : std::clamp(i, 0, numPieces);
        return points[static_cast<std::size_t>(wrapped)];
    };
    const Lab before = point(piece - 1), from = point(piece), to = point(piece + 1), after = point(piece + 2);
    const auto cubic = [t](double p0, double p1, double p2, double p3) {
        return p1 + t / 2 * (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0)));
    };
    return {
        from.l + t * (to.l - from.l), cubic(before.a, from.a, to.a, after.a), cubic(before.b, from.b, to.b, after.b)};
}

Entries entriesOf(const std::vector<Lab>& points, bool isClosed)
{
    Entries entries;
    const double last = isClosed ? 256 : 255;
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i] = toSRGB(between(points, static_cast<double>(i) / last, isClosed));
    return entries;
}

// Published, or else a curve of our own.
struct NamedMap
{
    std::string_view name;
    Kind kind;
    const PublishedColours* published;
    std::vector<Lab> points;
};

const std::vector<NamedMap>& namedMaps()
{
    static const std::vector<NamedMap> MAPS = {
        {"viridis", Kind::SEQUENTIAL, &VIRIDIS, {}},
        {"plasma", Kind::SEQUENTIAL, &PLASMA, {}},
        {"inferno", Kind::SEQUENTIAL, &INFERNO, {}},
        {"magma", Kind::SEQUENTIAL, &MAGMA, {}},
        {"grey", Kind::SEQUENTIAL, nullptr, {{0, 0, 0}, {100, 0, 0}}},
        {"heat", Kind::SEQUENTIAL, nullptr, {{0, 0, 0}, {25, 42, 34}, {50, 62, 60}, {75, 20, 76}, {100, 0, 0}}},
        {"bone", Kind::SEQUENTIAL, nullptr, {{0, 0, 0}, {26, 5, -16}, {50, -2, -12}, {76, -8, -3}, {100, 0, 0}}},
        // For those to whom red and green are alike.
        {"blue-yellow", Kind::SEQUENTIAL, nullptr,
            {{12, 10, -36}, {32, 4, -24}, {51, 0, 0}, {71, 0, 30}, {90, -8, 60}}},
        {"blue-red", Kind::DIVERGING, nullptr, {{32, 16, -56}, {62, -4, -34}, {92, 0, 0}, {62, 38, 26}, {32, 54, 34}}},
        {"cycle", Kind::CYCLIC, nullptr, {{40, 20, -44}, {60, 44, -14}, {80, 0, 30}, {60, -36, 6}, {40, 20, -44}}},
    };
    return MAPS;
}

} // namespace

ColourMap::ColourMap(Kind kind, const Entries& entries)
    : m_Kind(kind)
    , m_Entries(entries)
{}

RGBA8 ColourMap::sample(double place) const
{
    if (std::isnan(place))
        return colourOfNaN();
    const double last = static_cast<double>(SIZE - 1);
    return m_Entries[static_cast<std::size_t>(std::lround(std::clamp(place, 0.0, 1.0) * last))];
}

std::optional<ColourMap> findColourMap(std::string_view name)
{
    const std::vector<NamedMap>& maps = namedMaps();
    const auto found = std::find_if(maps.begin(), maps.end(), [&](const NamedMap& map) { return map.name == name; });
    if (found == maps.end())
        return std::nullopt;
    return ColourMap(found->kind,
        found->published ? entriesOf(*found->published) : entriesOf(found->points, found->kind == Kind::CYCLIC));
}

const std::vector<std::string_view>& namesOfColourMaps()
{
    static const std::vector<std::string_view> NAMES = [] {
        std::vector<std::string_view> names;
        const std::vector<NamedMap>& maps = namedMaps();
        std::transform(
            maps.begin(), maps.end(), std::back_inserter(names), [](const NamedMap& map) { return map.name; });
        return names;
    }();
    return NAMES;
}

std::string whyNoColourMap(std::string_view name)
{
    constexpr std::size_t LONGEST = 80;
    std::string text = "there is no map \"" + printable(name, LONGEST) + "\"; the maps are";
    for (const std::string_view known : namesOfColourMaps())
        text.append(known == namesOfColourMaps().front() ? " " : ", ").append(known);
    return text;
}

} // namespace tavo
