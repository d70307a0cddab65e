#pragma once

#include <QRectF>
#include <qwt_plot_item.h>
#include <string>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"

class QFontMetricsF;

namespace tavo {

struct Extent;

// The lines across a plot, with their labels.
class LinesAcross : public QwtPlotItem
{
public:
    LinesAcross();

    void apply(const PlotUpdate& update);

    // What y has to go over so that the horizontal lines are seen.
    Extent yExtent(bool isLog) const;

    struct Place
    {
        bool isVertical;
        double pixel; // along x or y
        double width; // of the label
    };

    // Where the labels are: each at its line, and, as long as there is room, on no other line or label.
    static std::vector<QRectF> placesOfLabels(
        const std::vector<Place>& lines, double labelHeight, const QRectF& canvas);

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;

private:
    std::vector<LineAcross> m_Lines;
};

} // namespace tavo
