#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/show/Tuples.h"

namespace tavo {

/// How many samples a volume has along x, y and z.
class GridSize
{
public:
    template <std::integral X, std::integral Y, std::integral Z>
    GridSize(X x, Y y, Z z)
        : m_Numbers{clamped(x), clamped(y), clamped(z)}
    {}
    template <std::integral T>
    GridSize(const StaticVector<T, 3>& size)
        : GridSize(size[0], size[1], size[2])
    {}

    std::int64_t operator[](std::size_t i) const { return m_Numbers[i]; }

private:
    // What is too large stays large, and does not turn negative.
    template <std::integral T>
    static constexpr std::int64_t clamped(T number)
    {
        constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
        const bool isTooLarge = number > 0 && static_cast<std::uint64_t>(number) > largest;
        return static_cast<std::int64_t>(isTooLarge ? largest : static_cast<std::uint64_t>(number));
    }

    std::array<std::int64_t, 3> m_Numbers;
};

/// How far the samples of a volume are apart along x, y and z: one number for all, or three.
class Spacing
{
public:
    Spacing(double all)
        : Spacing(all, all, all)
    {}
    Spacing(double x, double y, double z)
        : m_Numbers{x, y, z}
    {}
    template <Number T>
    Spacing(const StaticVector<T, 3>& spacing)
        : Spacing(double(spacing[0]), double(spacing[1]), double(spacing[2]))
    {}

    double operator[](std::size_t i) const { return m_Numbers[i]; }

private:
    std::array<double, 3> m_Numbers;
};

/// Where the axes of a volume point in the scene. Their lengths do not matter.
///
///     const tavo::Orientation lying{{1, 0, 0}, {0, 0, -1}, {0, 1, 0}};
struct Orientation
{
    Vector3d x{1, 0, 0};
    Vector3d y{0, 1, 0};
    Vector3d z{0, 0, 1};
};

/// How opaque samples of a value are, from 0 to 1.
struct TransferPoint
{
    double value;
    double opacity;
};

/// The samples of a volume, x fastest, so that sample (x, y, z) is number (z * ny + y) * nx + x: as many numbers as
/// there are samples; or three or four times as many, or a range of so many StaticVectors or arrays, that are colours.
/// They are copied, and keep their type. Of a vector that is moved in, and of one that is shared and constant, nothing
/// is copied; nor of one that is shared, if nobody else holds it any more: move the pointer in.
class Samples : public Tuples<3, 4>
{
public:
    using Tuples::Tuples;

    template <Number T>
    requires(sizeof(T) <= sizeof(double)) Samples(std::shared_ptr<const std::vector<T>> shared)
    {
        if (shared && !isShowOff())
            NumberArray::operator=(NumberArray(shared, shared->data(), shared->size(), numberTypeOf<T>()));
    }

    template <Number T>
    requires(sizeof(T) <= sizeof(double)) Samples(std::shared_ptr<std::vector<T>> shared)
    {
        if (shared && shared.use_count() == 1)
            *this = Samples(std::shared_ptr<const std::vector<T>>(std::move(shared)));
        else if (shared)
            *this = Samples(std::as_const(*shared)); // whoever else holds it may change it
    }
};

} // namespace tavo
