#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace tavo {

/// `N` values of type `T`, side by side in memory with nothing around them, so an array of vectors is also an array of
/// `T`. The values start at zero. Subscripts are not checked.
///
///     const StaticVector<float, 3> x(1, 0, 0);
///     const StaticVector<float, 3> y(0, 1, 0);
///     const StaticVector<float, 3> z = cross(x, y);
///     const float diagonal = length(x + 2 * z);
template <typename T, unsigned int N>
class StaticVector
{
public:
    StaticVector() = default;

    /// Takes one argument per component, and converts each to `T`.
    template <typename... Components>
    requires(sizeof...(Components) == N) explicit(N == 1) StaticVector(Components... components)
        : m_Values{static_cast<T>(components)...}
    {}

    T& operator[](std::size_t i) { return m_Values[i]; }
    const T& operator[](std::size_t i) const { return m_Values[i]; }

    T* data() { return m_Values.data(); }
    const T* data() const { return m_Values.data(); }
    static constexpr unsigned int size() { return N; }

    bool operator==(const StaticVector&) const = default;

    StaticVector& operator+=(const StaticVector& other)
    {
        return combine(other, [](T a, T b) { return a + b; });
    }
    StaticVector& operator-=(const StaticVector& other)
    {
        return combine(other, [](T a, T b) { return a - b; });
    }
    StaticVector& operator*=(T factor)
    {
        for (T& value : m_Values)
            value *= factor;
        return *this;
    }

    friend StaticVector operator+(StaticVector a, const StaticVector& b) { return a += b; }
    friend StaticVector operator-(StaticVector a, const StaticVector& b) { return a -= b; }
    friend StaticVector operator*(StaticVector a, T factor) { return a *= factor; }
    friend StaticVector operator*(T factor, StaticVector a) { return a *= factor; }

private:
    template <typename Operation>
    StaticVector& combine(const StaticVector& other, Operation operation)
    {
        for (std::size_t i = 0; i < N; ++i)
            m_Values[i] = static_cast<T>(operation(m_Values[i], other.m_Values[i]));
        return *this;
    }

    std::array<T, N> m_Values{};
};

/// The scalar product.
template <typename T, unsigned int N>
T dot(const StaticVector<T, N>& a, const StaticVector<T, N>& b)
{
    T sum{};
    for (unsigned int i = 0; i < N; ++i)
        sum += a[i] * b[i];
    return sum;
}

/// The vector product.
template <typename T>
StaticVector<T, 3> cross(const StaticVector<T, 3>& a, const StaticVector<T, 3>& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// The Euclidean length.
template <typename T, unsigned int N>
T length(const StaticVector<T, N>& v)
{
    return std::sqrt(dot(v, v));
}

/// Four zero bytes: transparent black.
inline const StaticVector<unsigned char, 4> NULL_VECTOR4UB;

} // namespace tavo
