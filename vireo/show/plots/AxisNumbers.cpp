#include "vireo/show/plots/AxisNumbers.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr double LARGEST_WRITTEN_OUT = 1e9;
constexpr double SMALLEST_WRITTEN_OUT = 1e-6;

// How many digits behind the point tell multiples of a step apart.
int decimalsOf(double step)
{
    constexpr double ROUNDING = 1e-9;
    return std::max(0, static_cast<int>(-std::floor(std::log10(step) + ROUNDING)));
}

QString writtenOut(double value, int decimals)
{
    QLocale locale = QLocale::c();
    QString text = locale.toString(value, 'f', decimals);
    constexpr QChar THIN_SPACE(0x2009);
    return text.replace(locale.groupSeparator(), THIN_SPACE);
}

} // namespace

QwtText AxisNumbers::label(double value) const
{
    const QList<double> ticks = scaleDiv().ticks(QwtScaleDiv::MajorTick);
    if (ticks.size() < 2)
        return {QString::number(value, 'g', 9), QwtText::PlainText};
    const double step = std::abs(ticks[1] - ticks[0]);
    const double largest = std::max(std::abs(ticks.first()), std::abs(ticks.last()));
    if (std::abs(value) < step * 1e-6)
        value = 0; // and not what the sum of steps leaves of it
    if (largest < LARGEST_WRITTEN_OUT && step > SMALLEST_WRITTEN_OUT)
        return {writtenOut(value, decimalsOf(step)), QwtText::PlainText};
    const int digits = static_cast<int>(std::floor(std::log10(largest)) - std::floor(std::log10(step) + 1e-9));
    return {QString::number(value, 'e', std::clamp(digits, 0, 16)), QwtText::PlainText};
}

} // namespace tavo
