#pragma once

#include <QImage>
#include <QPainter>
#include <cstdint>
#include <set>

#include "vireo/show/slices/SliceDistance.h"
#include "vireo/show/slices/SliceSight.h"
#include "vireo/show/slices/SlicesModel.h"

namespace tavo {

// The slice of a plane that goes through the crosshair, with what lies on it, on black. Its cost goes by the pixels.
QImage drawSlice(const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight, const QSize& size);

// The labels in that slice, but for 0.
std::set<std::int64_t> labelsInSlice(
    const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight, const QSize& size);

// Which slice it is, among which, as voxels are counted: from 0.
QString numberOfSlice(const SlicesModel& model, const SlicePlane& plane);

// What stands over a slice: the crosshair, which leaves out its middle, the sides of the patient, and which slice it
// is. A pixel of a widget is so many of the screen.
void drawSliceMarks(QPainter& painter, const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight,
    const QRect& cell, double pixelRatio);

// A line in the slice that it was drawn in, with its length.
void drawSliceDistance(QPainter& painter, const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight,
    const QRect& cell, const SliceDistance& distance, double pixelRatio);

} // namespace tavo
