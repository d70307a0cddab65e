#include "apps/vireo-view/NumberColumn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace vireo_view {

namespace {

template <typename Value>
double decode(const char* bytes, bool isSwapped)
{
    std::array<char, sizeof(Value)> ordered{};
    std::copy_n(bytes, sizeof(Value), ordered.begin());
    if (isSwapped)
        std::reverse(ordered.begin(), ordered.end());
    Value value;
    std::memcpy(&value, ordered.data(), sizeof value);
    return static_cast<double>(value);
}

template <typename Value>
bool isWithin(double value)
{
    return value >= static_cast<double>(std::numeric_limits<Value>::lowest()) &&
           value <= static_cast<double>(std::numeric_limits<Value>::max()) && value == std::floor(value);
}

// Calls a template with the type of that kind.
template <typename Function>
auto withTypeOf(NumberKind kind, Function function)
{
    switch (kind) {
    case NumberKind::INT8: return function(std::int8_t());
    case NumberKind::UINT8: return function(std::uint8_t());
    case NumberKind::INT16: return function(std::int16_t());
    case NumberKind::UINT16: return function(std::uint16_t());
    case NumberKind::INT32: return function(std::int32_t());
    case NumberKind::UINT32: return function(std::uint32_t());
    case NumberKind::FLOAT: return function(float());
    default: return function(double());
    }
}

template <typename Value>
NumberColumn interleavedAs(const std::vector<NumberColumn*>& columns)
{
    const std::size_t size = sizeOf(*columns.front());
    std::vector<Value> all(size * columns.size());
    for (std::size_t c = 0; c < columns.size(); ++c) {
        std::visit(
            [&](auto& values) {
                for (std::size_t i = 0; i < size; ++i)
                    all[i * columns.size() + c] = static_cast<Value>(values[i]);
            },
            *columns[c]);
        *columns[c] = NumberColumn();
    }
    return all;
}

} // namespace

NumberColumn columnOf(NumberKind kind)
{
    return withTypeOf(kind, [](auto value) -> NumberColumn { return std::vector<decltype(value)>(); });
}

std::size_t sizeInBytes(NumberKind kind)
{
    return withTypeOf(kind, [](auto value) { return sizeof value; });
}

bool isInteger(NumberKind kind)
{
    return kind != NumberKind::FLOAT && kind != NumberKind::DOUBLE;
}

bool canHold(NumberKind kind, double value)
{
    if (!isInteger(kind))
        return true;
    return withTypeOf(kind, [value](auto type) { return isWithin<decltype(type)>(value); });
}

double decodeNumber(NumberKind kind, const char* bytes, bool isSwapped)
{
    return withTypeOf(kind, [&](auto type) { return decode<decltype(type)>(bytes, isSwapped); });
}

NumberColumn interleaved(const std::vector<NumberColumn*>& columns)
{
    const std::size_t kind = columns.front()->index();
    const bool areOfOneKind = std::all_of(
        columns.begin(), columns.end(), [kind](const NumberColumn* column) { return column->index() == kind; });
    return withTypeOf(areOfOneKind ? static_cast<NumberKind>(kind) : NumberKind::DOUBLE,
        [&](auto type) { return interleavedAs<decltype(type)>(columns); });
}

} // namespace vireo_view
