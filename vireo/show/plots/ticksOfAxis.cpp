#include "vireo/show/plots/ticksOfAxis.h"

#include <algorithm>
#include <cmath>

#include "vireo/show/plots/NumberFormat.h"
#include "vireo/show/plots/divideAxis.h"

namespace tavo {

namespace {

// Written with as many digits as a plot would give a number of that size.
AxisTicks singleTick(double value, const QString& unit)
{
    constexpr double SMALLEST_PART = 1e-5;
    const double step = value == 0 ? 1 : std::abs(value) * SMALLEST_PART;
    const NumberFormat format(value, value + step, step, unit);
    return {{value}, {format.label(value)}, format.unit(), format.offset()};
}

} // namespace

AxisTicks ticksOfAxis(
    double from, double to, double pixels, Qt::Orientation orientation, const QFontMetricsF& font, const QString& unit)
{
    if (!(from < to))
        return singleTick(from, unit);
    AxisUpdate axis;
    axis.name = AxisUpdate::Name{{}, unit.toStdString()};
    const AxisDivision division = divideAxis(axis, {from, to}, pixels, orientation, font);
    const QList<double> places = division.ticks.ticks(QwtScaleDiv::MajorTick);
    return {{places.begin(), places.end()}, division.labels, division.unit, division.offset};
}

} // namespace tavo
