#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace tavo {

enum class NumberType : unsigned char
{
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float32,
    Float64
};

/// Numbers side by side in memory, of a type that is known at run time. They are shared by all copies of the array, and
/// never change.
///
///     const auto owner = std::make_shared<const std::vector<double>>(pressures);
///     const NumberArray numbers(owner, owner->data(), owner->size(), NumberType::Float64);
///     const double first = numbers[0];
class NumberArray
{
public:
    NumberArray() = default;

    /// `owner` keeps the `size` numbers alive that begin at `data`.
    NumberArray(std::shared_ptr<const void> owner, const void* data, std::size_t size, NumberType type)
        : m_Owner(std::move(owner))
        , m_Data(data)
        , m_Size(size)
        , m_Type(type)
    {}

    std::size_t size() const { return m_Size; }
    bool isEmpty() const { return m_Size == 0; }
    NumberType getType() const { return m_Type; }

    /// Where they are, and who keeps them alive.
    const void* getData() const { return m_Data; }
    const std::shared_ptr<const void>& getOwner() const { return m_Owner; }

    /// Whether they are the same numbers in memory.
    bool isSame(const NumberArray& other) const
    {
        return m_Data == other.m_Data && m_Size == other.m_Size && m_Type == other.m_Type;
    }

    /// Calls `visitor(const T* numbers, std::size_t size)` with the type that the numbers have: one test for all of
    /// them.
    template <typename Visitor>
    auto visit(Visitor&& visitor) const
    {
        switch (m_Type) {
        case NumberType::Int8: return visitor(static_cast<const std::int8_t*>(m_Data), m_Size);
        case NumberType::UInt8: return visitor(static_cast<const std::uint8_t*>(m_Data), m_Size);
        case NumberType::Int16: return visitor(static_cast<const std::int16_t*>(m_Data), m_Size);
        case NumberType::UInt16: return visitor(static_cast<const std::uint16_t*>(m_Data), m_Size);
        case NumberType::Int32: return visitor(static_cast<const std::int32_t*>(m_Data), m_Size);
        case NumberType::UInt32: return visitor(static_cast<const std::uint32_t*>(m_Data), m_Size);
        case NumberType::Int64: return visitor(static_cast<const std::int64_t*>(m_Data), m_Size);
        case NumberType::UInt64: return visitor(static_cast<const std::uint64_t*>(m_Data), m_Size);
        case NumberType::Float32: return visitor(static_cast<const float*>(m_Data), m_Size);
        case NumberType::Float64: break;
        }
        return visitor(static_cast<const double*>(m_Data), m_Size);
    }

    /// The i-th number; `i` is not checked.
    double operator[](std::size_t i) const
    {
        return visit([i](const auto* numbers, std::size_t) { return static_cast<double>(numbers[i]); });
    }

private:
    std::shared_ptr<const void> m_Owner;
    const void* m_Data = nullptr;
    std::size_t m_Size = 0;
    NumberType m_Type = NumberType::Float64;
};

} // namespace tavo
