#include "vireo/show/slices/SlicePlane.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

using Axes = std::array<std::size_t, 3>;

// Which axis of the samples leads most nearly to the right, to the front and upwards.
Axes axesOfPatient(const VolumeGrid& grid)
{
    Axes axes{0, 1, 2};
    Axes best = axes;
    double greatest = -1;
    do {
        double sum = 0;
        for (std::size_t i = 0; i < 3; ++i)
            sum += std::abs(grid.axes[axes[i]][i]);
        if (sum > greatest) {
            greatest = sum;
            best = axes;
        }
    } while (std::next_permutation(axes.begin(), axes.end()));
    return best;
}

std::array<SlicePlane, 3> planesOfSamples()
{
    return {SlicePlane{"xy", 2, 0, 1, false, false}, SlicePlane{"xz", 1, 0, 2, false, false},
        SlicePlane{"yz", 0, 1, 2, false, false}};
}

} // namespace

std::array<SlicePlane, 3> slicePlanesOf(const SliceLayer& volume, const SliceSides& sides)
{
    if (!volume.isOriented)
        return planesOfSamples();
    const auto [right, front, up] = axesOfPatient(volume.grid);
    const auto isBackwards = [&](std::size_t axis, std::size_t i) { return volume.grid.axes[axis][i] < 0; };
    const bool isAcrossReversed = isBackwards(right, 0) != sides.isRightOnTheLeft;
    const bool isFrontReversed = isBackwards(front, 1);
    const bool isUpReversed = isBackwards(up, 2);
    const auto name = [](const char* text) { return QCoreApplication::translate("tavo::SlicesView", text); };
    return {SlicePlane{name("axial"), up, right, front, isAcrossReversed, isFrontReversed},
        SlicePlane{name("coronal"), front, right, up, isAcrossReversed, isUpReversed},
        SlicePlane{name("sagittal"), right, front, up, isFrontReversed != sides.isFrontOnTheLeft, isUpReversed}};
}

QChar sideOf(const VolumeGrid& grid, std::size_t axis, bool isReversed)
{
    constexpr const char* SIDES[] = {"LR", "PA", "IS"};
    const Vector3d& direction = grid.axes[axis];
    std::size_t main = 0;
    for (std::size_t i = 1; i < 3; ++i)
        if (std::abs(direction[i]) > std::abs(direction[main]))
            main = i;
    return SIDES[main][(direction[main] > 0) != isReversed ? 1 : 0];
}

} // namespace tavo
