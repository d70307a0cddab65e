#include "vireo/show/slices/SliceSight.h"

#include <algorithm>

namespace tavo {

namespace {

constexpr int GAP = 2; // in pixels, between cells

// The i-th of so many equal parts of a length, with gaps between them.
std::pair<int, int> part(int length, int number, int i)
{
    const int from = (length + GAP) * i / number;
    return {from, std::max((length + GAP) * (i + 1) / number - GAP - from, 1)};
}

QRect cellAt(const QSize& view, const QSize& table, int column, int row)
{
    const auto [x, width] = part(view.width(), table.width(), column);
    const auto [y, height] = part(view.height(), table.height(), row);
    return {x, y, width, height};
}

QPointF middleOf(const QRect& cell)
{
    return QPointF(cell.topLeft()) + QPointF(cell.width(), cell.height()) / 2;
}

} // namespace

SliceCells SliceCells::of(const QSize& view, bool hasVolume)
{
    constexpr double LONG = 2.2;
    const int number = hasVolume ? 4 : 3;
    QSize table(2, 2);
    if (view.width() > LONG * view.height())
        table = {number, 1};
    else if (view.height() > LONG * view.width())
        table = {1, number};
    const auto cell = [&](int i) { return cellAt(view, table, i % table.width(), i / table.width()); };
    SliceCells cells{
        {cell(table.height() == 2 ? 2 : 0), cell(table.height() == 2 ? 0 : 1), cell(table.height() == 2 ? 1 : 2)}, {}};
    if (hasVolume)
        cells.volume = cell(3);
    return cells;
}

SliceSight SliceSight::fitting(const VolumeGrid& grid, const std::array<SlicePlane, 3>& planes, const SliceCells& cells)
{
    constexpr double FILLED = 0.94; // of a cell, whose edge is left to letters
    const Vector3d extent = grid.extent();
    SliceSight sight;
    for (std::size_t i = 0; i < 3; ++i) {
        const QRect& cell = cells.planes[i];
        const double fit =
            std::min(cell.width() / extent[planes[i].across], cell.height() / extent[planes[i].up]) * FILLED;
        sight.scale = i == 0 ? fit : std::min(sight.scale, fit);
        sight.centre[i] = 0.5 * (grid.size[i] - 1) * grid.spacing[i];
    }
    return sight;
}

void SliceSight::zoom(double factor, double scaleOfAll, const VolumeGrid& grid, const SlicePlane& plane,
    const QRect& cell, const QPointF& place)
{
    constexpr double LARGEST_SAMPLE = 256; // in pixels
    constexpr double SMALLEST = 1.0 / 16;  // of what shows all
    const double greatest = std::max(LARGEST_SAMPLE / grid.smallestSpacing(), scaleOfAll);
    const Vector3d before = indexAt(grid, plane, cell, place, {});
    scale = std::clamp(scale * factor, scaleOfAll * SMALLEST, greatest);
    const Vector3d after = indexAt(grid, plane, cell, place, {});
    for (const std::size_t axis : {plane.across, plane.up})
        centre[axis] += (before[axis] - after[axis]) * grid.spacing[axis];
    keepInView(grid);
}

void SliceSight::keepInView(const VolumeGrid& grid)
{
    for (std::size_t i = 0; i < 3; ++i)
        centre[i] = std::clamp(centre[i], -0.5 * grid.spacing[i], (grid.size[i] - 0.5) * grid.spacing[i]);
}

Vector3d SliceSight::indexAt(const VolumeGrid& grid, const SlicePlane& plane, const QRect& cell, const QPointF& place,
    const Vector3i& voxel) const
{
    const QPointF from = place - middleOf(cell);
    Vector3d index;
    index[plane.through] = voxel[plane.through];
    index[plane.across] = (centre[plane.across] + plane.signAcross() * from.x() / scale) / grid.spacing[plane.across];
    index[plane.up] = (centre[plane.up] - plane.signUp() * from.y() / scale) / grid.spacing[plane.up];
    return index;
}

QPointF SliceSight::placeOf(
    const VolumeGrid& grid, const SlicePlane& plane, const QRect& cell, const Vector3d& index) const
{
    const auto from = [&](std::size_t axis) { return (index[axis] * grid.spacing[axis] - centre[axis]) * scale; };
    return middleOf(cell) + QPointF(plane.signAcross() * from(plane.across), -plane.signUp() * from(plane.up));
}

} // namespace tavo
