#pragma once

#include <QStringList>
#include <vector>

class QFontMetricsF;

namespace tavo {

// Where an axis of numbers has its major ticks, and what stands at them, for those that know nothing of Qwt.
struct AxisTicks
{
    std::vector<double> places; // from the first to the last
    QStringList labels;
    QString unit;   // in which the labels count
    QString offset; // from where, empty if from zero
};

// Of an axis that goes up, of so many pixels: the ticks that a plot's axis would have. An axis without length has one.
AxisTicks ticksOfAxis(double from, double to, double pixels, Qt::Orientation orientation, const QFontMetricsF& font,
    const QString& unit = {});

} // namespace tavo
