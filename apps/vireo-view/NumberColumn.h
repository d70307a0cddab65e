#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace vireo_view {

// Numbers one after the other, of the type that they have in their file, so that they take no more memory than there.
using NumberColumn = std::variant<std::vector<std::int8_t>, std::vector<std::uint8_t>, std::vector<std::int16_t>,
    std::vector<std::uint16_t>, std::vector<std::int32_t>, std::vector<std::uint32_t>, std::vector<float>,
    std::vector<double>>;

// In the order of the alternatives above.
enum class NumberKind
{
    INT8,
    UINT8,
    INT16,
    UINT16,
    INT32,
    UINT32,
    FLOAT,
    DOUBLE,
};

NumberColumn columnOf(NumberKind kind);

std::size_t sizeInBytes(NumberKind kind);

bool isInteger(NumberKind kind);

// Whether the kind has this number, or rounds it to one that it has.
bool canHold(NumberKind kind, double value);

// A number of that kind out of the bytes that memory would have of it; the other way round if they are swapped.
double decodeNumber(NumberKind kind, const char* bytes, bool isSwapped);

inline std::size_t sizeOf(const NumberColumn& column)
{
    return std::visit([](const auto& values) { return values.size(); }, column);
}

inline double numberAt(const NumberColumn& column, std::size_t i)
{
    return std::visit([i](const auto& values) { return static_cast<double>(values[i]); }, column);
}

// The kind of the column must be able to hold it.
inline void append(NumberColumn& column, double value)
{
    std::visit(
        [value](auto& values) {
            using Value = typename std::remove_reference_t<decltype(values)>::value_type;
            values.push_back(static_cast<Value>(value));
        },
        column);
}

// The numbers of columns of one length in turn: x, y, z, x, y, z ... They keep their type if all have the same, and
// become doubles otherwise. The columns lose theirs.
NumberColumn interleaved(const std::vector<NumberColumn*>& columns);

} // namespace vireo_view
