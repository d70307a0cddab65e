#pragma once

#include <qwt_plot_grid.h>

namespace tavo {

// The lines behind the curves. On a screen they are rectangles of a pixel's width, which look the same as lines and are
// drawn in half the time.
class PlotGrid : public QwtPlotGrid
{
public:
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;
};

} // namespace tavo
