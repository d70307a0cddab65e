#pragma once

#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <cstdint>
#include <set>

#include "vireo/show/slices/SlicesModel.h"

namespace tavo {

// How much of a picture's width is left to what tells the colours that lie on the volume; 0 where nothing does, or the
// picture is too small.
int widthOfSliceLegend(const SlicesModel& model, const QSize& picture, const QFontMetrics& font);

// Draws a bar with the colours of the overlay, and the names of these labels, with the pen and the font that are set.
void drawSliceLegend(
    QPainter& painter, const SlicesModel& model, const std::set<std::int64_t>& labels, const QRect& place);

} // namespace tavo
