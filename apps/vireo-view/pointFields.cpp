#include "apps/vireo-view/pointFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "tavo/base/text/printable.h"

namespace vireo_view {

namespace {

using Names = std::initializer_list<std::string_view>;

constexpr std::size_t LONGEST_NAME = 100;

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::string withoutPrefix(const std::string& name)
{
    constexpr std::string_view PREFIX = "scalar_";
    return lowerCase(name).starts_with(PREFIX) && name.size() > PREFIX.size() ? name.substr(PREFIX.size()) : name;
}

bool isCategory(const std::string& name)
{
    const std::string known = lowerCase(withoutPrefix(name));
    constexpr std::array<std::string_view, 8> NAMES = {
        "label", "labels", "class", "classification", "category", "label_id", "class_id", "classid"};
    return std::find(NAMES.begin(), NAMES.end(), known) != NAMES.end();
}

bool areWhole(const NumberColumn& column)
{
    return std::visit(
        [](const auto& values) {
            return std::all_of(values.begin(), values.end(), [](auto value) {
                const auto number = static_cast<double>(value);
                return std::isnan(number) || number == std::floor(number);
            });
        },
        column);
}

// The least and the greatest number, without NaN.
std::pair<double, double> rangeOf(const NumberColumn& column)
{
    std::pair<double, double> range(INFINITY, -INFINITY);
    std::visit(
        [&](const auto& values) {
            for (const auto value : values) {
                range.first = std::min(range.first, static_cast<double>(value));
                range.second = std::max(range.second, static_cast<double>(value));
            }
        },
        column);
    return range;
}

// The columns of a file, of which those that mean something are taken out.
class Fields
{
public:
    explicit Fields(std::vector<NamedColumn> columns)
        : m_Columns(std::move(columns))
    {}

    NamedColumn* find(std::string_view name)
    {
        const auto found = std::find_if(m_Columns.begin(), m_Columns.end(),
            [name](const NamedColumn& column) { return lowerCase(column.name) == name; });
        return found == m_Columns.end() ? nullptr : &*found;
    }

    bool has(Names names)
    {
        return std::all_of(names.begin(), names.end(), [this](std::string_view name) { return find(name); });
    }

    // Their numbers in turn.
    NumberColumn take(Names names)
    {
        std::vector<NumberColumn*> taken;
        for (const std::string_view name : names)
            taken.push_back(&find(name)->values);
        NumberColumn all = interleaved(taken);
        for (const std::string_view name : names)
            m_Columns.erase(m_Columns.begin() + (find(name) - m_Columns.data()));
        return all;
    }

    std::vector<NamedColumn>& rest() { return m_Columns; }

private:
    std::vector<NamedColumn> m_Columns;
};

void takeColours(Geometry& geometry, Fields& fields)
{
    struct Choice
    {
        Names opaque;
        Names translucent;
    };
    const Names longNames = {"red", "green", "blue"}, longNames4 = {"red", "green", "blue", "alpha"};
    const Names shortNames = {"r", "g", "b"}, shortNames4 = {"r", "g", "b", "a"};
    const Names diffuse = {"diffuse_red", "diffuse_green", "diffuse_blue"};
    for (const Choice& choice : {Choice{longNames, longNames4}, {shortNames, shortNames4}, {diffuse, diffuse}}) {
        if (!fields.has(choice.opaque))
            continue;
        const bool isTranslucent = fields.has(choice.translucent);
        const Names names = isTranslucent ? choice.translucent : choice.opaque;
        return setColours(geometry, fields.take(names), static_cast<unsigned int>(names.size()));
    }
}

void takeFields(Geometry& geometry, Fields& fields)
{
    takeColours(geometry, fields);
    UniqueNames names;
    for (NamedColumn& column : fields.rest())
        addField(geometry, names, column.name, std::move(column.values));
}

} // namespace

void setColours(Geometry& geometry, NumberColumn colours, unsigned int numChannels)
{
    geometry.numChannels = numChannels;
    if (std::holds_alternative<std::vector<std::uint8_t>>(colours)) {
        geometry.colours = std::move(colours);
        return;
    }
    constexpr double BYTE = 255, WORD = 65535;
    const double largest = rangeOf(colours).second;
    const double scale = largest <= 1 ? BYTE : largest <= BYTE ? 1 : BYTE / WORD;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(sizeOf(colours));
    std::visit(
        [&](const auto& values) {
            for (const auto value : values) {
                const double byte = std::round(scale * static_cast<double>(value));
                bytes.push_back(static_cast<std::uint8_t>(byte >= 0 ? std::min(byte, BYTE) : 0.0));
            }
        },
        colours);
    geometry.colours = std::move(bytes);
}

void addField(Geometry& geometry, UniqueNames& names, const std::string& name, NumberColumn values)
{
    if (isCategory(name) && sizeOf(geometry.labels) == 0 && areWhole(values))
        geometry.labels = std::move(values);
    else
        geometry.scalars.push_back({names.add(tavo::printable(withoutPrefix(name), LONGEST_NAME)), std::move(values)});
}

Geometry geometryOf(std::vector<NamedColumn> columns)
{
    Geometry geometry;
    Fields fields(std::move(columns));
    geometry.positions = fields.take({"x", "y", "z"});
    if (fields.has({"nx", "ny", "nz"}))
        geometry.normals = fields.take({"nx", "ny", "nz"});
    takeFields(geometry, fields);
    return geometry;
}

Geometry::OfFaces faceFieldsOf(std::vector<NamedColumn> columns)
{
    Geometry geometry;
    Fields fields(std::move(columns));
    takeFields(geometry, fields);
    return {std::move(geometry.colours), std::move(geometry.labels), std::move(geometry.scalars)};
}

} // namespace vireo_view
