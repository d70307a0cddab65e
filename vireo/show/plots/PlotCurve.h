#pragma once

#include <qwt_plot_item.h>
#include <string>

#include "vireo/show/plots/CurveStore.h"

namespace tavo {

// A curve as an item of a Qwt plot.
class PlotCurve : public QwtPlotItem
{
public:
    PlotCurve(const std::string& name, QRgb colour);

    const std::string& getName() const { return m_Name; }
    const CurveStore& getSamples() const { return m_Samples; }

    void apply(CurveUpdate& update);

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;
    QwtGraphic legendIcon(int index, const QSizeF& size) const override;

private:
    std::string m_Name;
    CurveStore m_Samples;
    CurveKind m_Kind = CurveKind::Line;
    QColor m_Colour;
};

} // namespace tavo
