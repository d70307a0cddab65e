#pragma once

#include <QStringList>
#include <qwt_scale_div.h>

#include "vireo/show/plots/PlotUpdate.h"

class QFontMetricsF;

namespace tavo {

// Where an axis has its ticks, and what stands at the major ones.
struct AxisDivision
{
    QwtScaleDiv ticks;
    QStringList labels;
    QString unit;   // in which the labels count
    QString offset; // from where, empty if from zero
};

// Of an axis of so many pixels: as many ticks as there is room for their labels, which never touch each other.
AxisDivision divideAxis(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels,
    Qt::Orientation orientation, const QFontMetricsF& font);

} // namespace tavo
