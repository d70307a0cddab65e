#pragma once

#include <QPointF>
#include <QRect>
#include <QSize>
#include <array>

#include "vireo/show/slices/SlicePlane.h"

namespace tavo {

// Where the three planes are in the view, and the volume, in pixels of the screen. Its cell is empty where it is not
// shown.
struct SliceCells
{
    std::array<QRect, 3> planes;
    QRect volume;

    // Two by two, or, in a view that is far from square, side by side.
    static SliceCells of(const QSize& view, bool hasVolume);
};

// Which part of a volume is seen, and how large: the same in all planes, so that what is as long in two of them is as
// long on the screen.
struct SliceSight
{
    double scale = 1; // pixels of the screen for a unit of length
    Vector3d centre;  // what is in the middle of each cell: lengths along the axes of the samples

    // All of the volume.
    static SliceSight fitting(const VolumeGrid& grid, const std::array<SlicePlane, 3>& planes, const SliceCells& cells);

    // Magnifies, with what is at that place of a cell staying there, within limits that go by how much shows all.
    void zoom(double factor, double scaleOfAll, const VolumeGrid& grid, const SlicePlane& plane, const QRect& cell,
        const QPointF& place);

    // Some of the volume stays in view.
    void keepInView(const VolumeGrid& grid);

    // What is at a place of a cell, counted in samples, in the slice through a sample; and the opposite.
    Vector3d indexAt(const VolumeGrid& grid, const SlicePlane& plane, const QRect& cell, const QPointF& place,
        const Vector3i& voxel) const;
    QPointF placeOf(const VolumeGrid& grid, const SlicePlane& plane, const QRect& cell, const Vector3d& index) const;

    bool operator==(const SliceSight& other) const = default;
};

} // namespace tavo
