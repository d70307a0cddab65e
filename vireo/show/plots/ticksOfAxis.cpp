#include "vireo/show/plots/ticksOfAxis.h"

#include <algorithm>
#include <cmath>

#include "vireo/show/plots/NumberFormat.h"
#include "vireo/show/plots/divideAxis.h"

namespace tavo {

namespace {

// What the last digit of a number counts that is written with six digits, or with thousandths if that is more; without
// the zeros at its end.
double stepOf(double value)
{
    constexpr double SMALLEST_PART = 1e-5;
    constexpr double SMALLEST_STEP = 1e-3;
    constexpr double ROUNDING = 1e-15;
    const double size = std::abs(value);
    const double finest = std::max(std::min(size * SMALLEST_PART, SMALLEST_STEP), size * ROUNDING);
    int exponent = static_cast<int>(std::floor(std::log10(finest)));
    const auto isMultipleOf = [size, half = tenTo(exponent) / 2](
                                  double larger) { return std::abs(size - std::round(size / larger) * larger) < half; };
    while (tenTo(exponent + 1) <= size && isMultipleOf(tenTo(exponent + 1)))
        ++exponent;
    return tenTo(exponent);
}

// Far from zero it is written from an offset, as the numbers of a short axis are.
AxisTicks singleTick(double value, const QString& unit)
{
    constexpr double LEAST_LENGTH = 0.02; // whose offsets have no digits behind the point
    const double step = value == 0 ? 1 : stepOf(value);
    const double length = std::abs(value) > 1 ? std::max(step, LEAST_LENGTH) : step;
    const NumberFormat format(value, value + length, step, unit);
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
    if (places.isEmpty()) // of the smallest numbers, which are too few to divide
        return singleTick(to, unit);
    return {{places.begin(), places.end()}, division.labels, division.unit, division.offset};
}

} // namespace tavo
