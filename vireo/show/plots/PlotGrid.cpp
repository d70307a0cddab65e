#include "vireo/show/plots/PlotGrid.h"

#include <QPaintEngine>
#include <QPainter>
#include <qwt_scale_div.h>
#include <qwt_scale_map.h>

namespace tavo {

namespace {

// Whether a pen without a width draws what a rectangle of the width 1 fills.
bool hasPixelsOfOne(const QPainter& painter)
{
    return painter.paintEngine()->type() == QPaintEngine::Raster && painter.device()->devicePixelRatioF() == 1 &&
           painter.transform().type() <= QTransform::TxTranslate;
}

} // namespace

void PlotGrid::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const
{
    if (!hasPixelsOfOne(*painter))
        return QwtPlotGrid::draw(painter, xMap, yMap, canvas);
    const QRect place = canvas.toRect();
    const QColor colour = majorPen().color();
    for (const double value : xScaleDiv().ticks(QwtScaleDiv::MajorTick))
        if (const int x = qRound(xMap.transform(value)); x >= place.left() && x <= place.right())
            painter->fillRect(x, place.top(), 1, place.height(), colour);
    for (const double value : yScaleDiv().ticks(QwtScaleDiv::MajorTick))
        if (const int y = qRound(yMap.transform(value)); y >= place.top() && y <= place.bottom())
            painter->fillRect(place.left(), y, place.width(), 1, colour);
}

} // namespace tavo
