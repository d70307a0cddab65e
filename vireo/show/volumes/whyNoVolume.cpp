#include "vireo/show/volumes/whyNoVolume.h"

#include <QString>
#include <cmath>
#include <limits>

#include "vireo/show/scenes/SceneBox.h"

namespace tavo {

namespace {

constexpr double FLATTEST = 1e-6; // the volume that three axes of length 1 span

std::string written(double number)
{
    return QString::number(number, 'g', 10).toStdString();
}

template <typename Triple>
std::string writtenTriple(const Triple& numbers)
{
    return written(double(numbers[0])) + " x " + written(double(numbers[1])) + " x " + written(double(numbers[2]));
}

// Of large ones only about.
double numSamplesOf(const GridSize& size)
{
    return double(size[0]) * double(size[1]) * double(size[2]);
}

bool isFinite(const Vector3d& vector)
{
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

bool isPositive(double number)
{
    return number > 0 && std::isfinite(number);
}

std::string whyNoSize(const GridSize& size)
{
    for (std::size_t i = 0; i < 3; ++i) {
        if (size[i] < 1)
            return writtenTriple(size) + " is no size of a volume";
        if (size[i] > std::numeric_limits<int>::max())
            return writtenTriple(size) + " samples are too many along one axis";
    }
    return {};
}

std::string whyNoSpacing(const SentGrid& grid)
{
    const Vector3d spacing(grid.spacing[0], grid.spacing[1], grid.spacing[2]);
    if (!isPositive(spacing[0]) || !isPositive(spacing[1]) || !isPositive(spacing[2]))
        return writtenTriple(spacing) + " is no distance of samples";
    for (std::size_t i = 0; i < 3; ++i)
        if (!(spacing[i] * double(grid.size[i]) <= LARGEST_COORDINATE) || spacing[i] < 1 / LARGEST_COORDINATE)
            return "a distance of " + writtenTriple(spacing) + " is too " + (spacing[i] < 1 ? "small" : "large") +
                   " for floats to tell where " + writtenTriple(grid.size) + " samples are";
    return {};
}

std::string whyNoPlace(const SentGrid& grid)
{
    if (!isFinite(grid.origin))
        return "its origin is not finite";
    if (length(grid.origin) > LARGEST_COORDINATE)
        return "its origin is too far away";
    const auto& [x, y, z] = grid.orientation;
    for (const Vector3d& axis : {x, y, z})
        if (!isFinite(axis) || !isPositive(length(axis)))
            return "an axis of its orientation has no direction";
    if (std::abs(dot(cross(x, y), z)) < FLATTEST * length(x) * length(y) * length(z))
        return "the axes of its orientation lie in a plane";
    return {};
}

} // namespace

std::size_t numChannelsOf(const SentGrid& grid, std::size_t numNumbers)
{
    for (const std::size_t numChannels : {1, 3, 4})
        if (numSamplesOf(grid.size) * double(numChannels) == double(numNumbers))
            return numChannels;
    return 0;
}

std::string whyNoVolume(const SentGrid& grid, std::size_t numNumbers)
{
    std::string why = whyNoSize(grid.size);
    if (why.empty() && numChannelsOf(grid, numNumbers) == 0)
        why = std::to_string(numNumbers) + " numbers are no samples of " + writtenTriple(grid.size) + ", which take " +
              written(numSamplesOf(grid.size)) + ", or three or four times as many for colours";
    if (why.empty())
        why = whyNoSpacing(grid);
    return why.empty() ? whyNoPlace(grid) : why;
}

std::string whyNoTransferFunction(const std::vector<TransferPoint>& points)
{
    if (points.size() < 2)
        return std::to_string(points.size()) + " points are too few";
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto [value, opacity] = points[i];
        if (!std::isfinite(value) || !(opacity >= 0 && opacity <= 1))
            return "point " + std::to_string(i) + " has a value of " + written(value) + " and an opacity of " +
                   written(opacity);
        if (i > 0 && value < points[i - 1].value)
            return "the value of point " + std::to_string(i) + ", " + written(value) + ", is below that before it, " +
                   written(points[i - 1].value);
    }
    if (points.front().value == points.back().value)
        return "all points have the value " + written(points.front().value);
    return {};
}

OpacityCurve opacitiesOf(const std::vector<TransferPoint>& points)
{
    const double from = points.front().value;
    const double to = points.back().value;
    OpacityCurve curve;
    for (const TransferPoint& point : points)
        curve.push_back({(point.value / 2 - from / 2) / (to / 2 - from / 2), point.opacity}); // halved: no overflow
    return curve;
}

VolumeGrid gridOf(const SentGrid& grid)
{
    const auto& [x, y, z] = grid.orientation;
    return {{grid.size[0], grid.size[1], grid.size[2]}, {grid.spacing[0], grid.spacing[1], grid.spacing[2]},
        grid.origin, {(1 / length(x)) * x, (1 / length(y)) * y, (1 / length(z)) * z}};
}

} // namespace tavo
