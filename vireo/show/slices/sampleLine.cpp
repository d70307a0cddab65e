#include "vireo/show/slices/sampleLine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tavo {

namespace {

constexpr double ROUNDING = 1e-6; // in samples: so far outside of its cell, a place is taken to be in it

// The samples of a volume by their places.
template <typename T>
class Lattice
{
public:
    Lattice(const SliceLayer& layer, const T* numbers)
        : m_Numbers(numbers)
        , m_Size(layer.grid.size)
        , m_Width(layer.samples.width)
        , m_Strides{m_Width, m_Width * static_cast<std::size_t>(m_Size[0]),
              m_Width * static_cast<std::size_t>(m_Size[0]) * static_cast<std::size_t>(m_Size[1])}
    {}

    bool isInside(const Vector3d& place) const
    {
        for (std::size_t i = 0; i < 3; ++i)
            if (!(place[i] >= -0.5 - ROUNDING && place[i] <= m_Size[i] - 0.5 + ROUNDING))
                return false;
        return true;
    }

    void takeNearest(const Vector3d& place, double* to) const
    {
        std::size_t index = 0;
        for (std::size_t i = 0; i < 3; ++i)
            index +=
                m_Strides[i] * static_cast<std::size_t>(std::clamp(static_cast<int>(place[i] + 0.5), 0, m_Size[i] - 1));
        for (std::size_t i = 0; i < m_Width; ++i)
            to[i] = static_cast<double>(m_Numbers[index + i]);
    }

    // What has no weight is left out, lest what is not a number spreads.
    void takeBetween(const Vector3d& place, double* to) const
    {
        std::array<std::array<std::size_t, 2>, 3> offsets;
        std::array<std::array<double, 2>, 3> weights;
        for (std::size_t i = 0; i < 3; ++i) {
            const double inside = std::clamp(place[i], 0.0, m_Size[i] - 1.0);
            const int lower = static_cast<int>(inside);
            offsets[i] = {m_Strides[i] * static_cast<std::size_t>(lower),
                m_Strides[i] * static_cast<std::size_t>(std::min(lower + 1, m_Size[i] - 1))};
            weights[i] = {1 - (inside - lower), inside - lower};
        }
        std::fill_n(to, m_Width, 0.0);
        for (std::size_t corner = 0; corner < 8; ++corner) {
            const std::size_t x = corner & 1, y = corner >> 1 & 1, z = corner >> 2;
            const double weight = weights[0][x] * weights[1][y] * weights[2][z];
            if (weight == 0)
                continue;
            const T* const sample = m_Numbers + offsets[0][x] + offsets[1][y] + offsets[2][z];
            for (std::size_t i = 0; i < m_Width; ++i)
                to[i] += weight * static_cast<double>(sample[i]);
        }
    }

private:
    const T* m_Numbers;
    Vector3i m_Size;
    std::size_t m_Width;
    std::array<std::size_t, 3> m_Strides;
};

} // namespace

void sampleLine(const SliceLayer& layer, const SampleLine& line, bool isInterpolated, double* numbers)
{
    const std::size_t width = layer.samples.width;
    layer.samples.numbers.visit([&](const auto* samples, std::size_t) {
        const Lattice lattice(layer, samples);
        for (int i = 0; i < line.count; ++i, numbers += width) {
            const Vector3d place = line.first + double(i) * line.step;
            if (!lattice.isInside(place))
                std::fill_n(numbers, width, std::numeric_limits<double>::quiet_NaN());
            else if (isInterpolated)
                lattice.takeBetween(place, numbers);
            else
                lattice.takeNearest(place, numbers);
        }
    });
}

} // namespace tavo
