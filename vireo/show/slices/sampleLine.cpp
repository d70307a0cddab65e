#include "vireo/show/slices/sampleLine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace tavo {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
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

    // Of places along one axis of the samples, which is what slices nearly always need: what holds for all of them is
    // found once.
    void takeNearestAlong(std::size_t axis, const SampleLine& line, double* to) const
    {
        const T* const row = m_Numbers + offsetBeside(axis, line.first);
        const Bounds inside = boundsOf(axis);
        for (int i = 0; i < line.count; ++i) {
            const double place = line.first[axis] + i * line.step[axis];
            to[i] = inside.has(place) ? static_cast<double>(row[m_Strides[axis] * indexOf(axis, place)]) : NO_NUMBER;
        }
    }

    void takeBetweenAlong(std::size_t axis, const SampleLine& line, double* to) const
    {
        const double last = line.first[axis] + (line.count - 1) * line.step[axis];
        const double greatest = m_Size[axis] - 1.0;
        const int from = static_cast<int>(std::clamp(std::min(line.first[axis], last), 0.0, greatest));
        const int end = static_cast<int>(std::clamp(std::ceil(std::max(line.first[axis], last)), 0.0, greatest)) + 1;
        const std::vector<double> row = rowBetween(axis, line.first, from, end);
        const Bounds inside = boundsOf(axis);
        for (int i = 0; i < line.count; ++i) {
            const double place = line.first[axis] + i * line.step[axis];
            const double clamped = std::clamp(place, double(from), end - 1.0);
            const auto lower = static_cast<int>(clamped);
            const double part = clamped - lower;
            const auto at = static_cast<std::size_t>(lower - from);
            to[i] = !inside.has(place) ? NO_NUMBER : part == 0 ? row[at] : row[at] + part * (row[at + 1] - row[at]);
        }
    }

private:
    struct Bounds
    {
        double from;
        double to;

        bool has(double place) const { return place >= from && place <= to; }
    };

    Bounds boundsOf(std::size_t axis) const { return {-0.5 - ROUNDING, m_Size[axis] - 0.5 + ROUNDING}; }

    std::size_t indexOf(std::size_t axis, double place) const
    {
        return static_cast<std::size_t>(std::clamp(static_cast<int>(place + 0.5), 0, m_Size[axis] - 1));
    }

    // Of the nearest sample, where it is 0 along the axis.
    std::size_t offsetBeside(std::size_t axis, const Vector3d& place) const
    {
        std::size_t offset = 0;
        for (std::size_t i = 0; i < 3; ++i)
            offset += i == axis ? 0 : m_Strides[i] * indexOf(i, place[i]);
        return offset;
    }

    // Numbers beside the axis, at its samples: up to four rows of them, by their weights. What has no weight is left
    // out, lest what is not a number spreads.
    std::vector<double> rowBetween(std::size_t axis, const Vector3d& place, int from, int end) const
    {
        std::vector<double> row(static_cast<std::size_t>(end - from), 0.0);
        const std::size_t others[] = {axis == 0 ? 1U : 0U, axis == 2 ? 1U : 2U};
        for (const unsigned int corner : {0U, 1U, 2U, 3U}) {
            const T* samples = m_Numbers + m_Strides[axis] * static_cast<std::size_t>(from);
            double weight = 1;
            for (const unsigned int i : {0U, 1U}) {
                const std::size_t other = others[i];
                const double inside = std::clamp(place[other], 0.0, m_Size[other] - 1.0);
                const int lower = static_cast<int>(inside);
                const bool isUpper = (corner >> i & 1U) != 0;
                weight *= isUpper ? inside - lower : 1 - (inside - lower);
                samples += m_Strides[other] * static_cast<std::size_t>(std::min(lower + isUpper, m_Size[other] - 1));
            }
            for (std::size_t i = 0; weight != 0 && i < row.size(); ++i)
                row[i] += weight * static_cast<double>(samples[i * m_Strides[axis]]);
        }
        return row;
    }

    const T* m_Numbers;
    Vector3i m_Size;
    std::size_t m_Width;
    std::array<std::size_t, 3> m_Strides;
};

// The axis that a line goes along, if it does and none of it is beside the volume; along the others it may go by what
// rounding leaves.
template <typename T>
std::optional<std::size_t> axisOf(const Lattice<T>& lattice, const SampleLine& line)
{
    constexpr double STRAIGHT = 1e-9; // in samples
    std::optional<std::size_t> axis;
    for (std::size_t i = 0; i < 3; ++i)
        if (std::abs(line.step[i]) * line.count > STRAIGHT) {
            if (axis)
                return {};
            axis = i;
        }
    Vector3d beside = line.first;
    if (axis)
        beside[*axis] = 0;
    return lattice.isInside(beside) ? axis : std::nullopt;
}

template <typename T>
void samplePlaces(
    const Lattice<T>& lattice, std::size_t width, const SampleLine& line, bool isInterpolated, double* numbers)
{
    for (int i = 0; i < line.count; ++i, numbers += width) {
        const Vector3d place = line.first + double(i) * line.step;
        if (!lattice.isInside(place))
            std::fill_n(numbers, width, NO_NUMBER);
        else if (isInterpolated)
            lattice.takeBetween(place, numbers);
        else
            lattice.takeNearest(place, numbers);
    }
}

} // namespace

void sampleLine(const SliceLayer& layer, const SampleLine& line, bool isInterpolated, double* numbers)
{
    constexpr double MANY_SAMPLES = 4; // for a place: it costs less to look at each place by itself
    const std::size_t width = layer.samples.width;
    layer.samples.numbers.visit([&](const auto* samples, std::size_t) {
        const Lattice lattice(layer, samples);
        const std::optional<std::size_t> axis = width == 1 ? axisOf(lattice, line) : std::nullopt;
        if (axis && !isInterpolated)
            lattice.takeNearestAlong(*axis, line, numbers);
        else if (axis && std::abs(line.step[*axis]) < MANY_SAMPLES)
            lattice.takeBetweenAlong(*axis, line, numbers);
        else
            samplePlaces(lattice, width, line, isInterpolated, numbers);
    });
}

} // namespace tavo
