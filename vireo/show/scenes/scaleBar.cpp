#include "vireo/show/scenes/scaleBar.h"

#include <QPainter>
#include <cmath>

#include "vireo/show/plots/NumberFormat.h"

namespace tavo {

namespace {

// Of 1, 2 and 5 times powers of ten, the greatest that is not above.
double roundedDown(double value)
{
    constexpr double ROUNDING = 1 - 1e-9;
    const double decade = tenTo(static_cast<int>(std::floor(std::log10(value / ROUNDING))));
    for (const double step : {5, 2})
        if (step * decade * ROUNDING <= value)
            return step * decade;
    return decade;
}

} // namespace

ScaleBar scaleBarOf(double unitsPerPixel, double mostPixels, const QString& unit)
{
    const double most = unitsPerPixel * mostPixels;
    if (!(most > 0) || !std::isfinite(most))
        return {};
    const double length = roundedDown(most);
    const NumberFormat format(0, length, length, unit);
    const QString counted = format.unit();
    return {length, length / unitsPerPixel, format.label(length) + (counted.isEmpty() ? "" : " ") + counted};
}

void drawScaleBar(QPainter& painter, const ScaleBar& bar, const QPointF& leftEnd)
{
    constexpr double TICK_LENGTH = 4;
    const QPointF rightEnd = leftEnd + QPointF(bar.pixels, 0);
    painter.drawLine(leftEnd, rightEnd);
    for (const QPointF& end : {leftEnd, rightEnd})
        painter.drawLine(end - QPointF(0, TICK_LENGTH), end + QPointF(0, TICK_LENGTH));
    const double height = painter.fontMetrics().height();
    painter.drawText(QRectF(leftEnd - QPointF(0, height + TICK_LENGTH), QSizeF(bar.pixels, height)),
        Qt::AlignCenter | Qt::TextDontClip, bar.label);
}

} // namespace tavo
