#pragma once

#include <qwt_plot_item.h>
#include <string>

#include "vireo/show/plots/polyline.h"

namespace tavo {

PixelMap pixelMapOf(const QwtScaleMap& map);

// A curve as an item of a Qwt plot.
class PlotCurve : public QwtPlotItem
{
public:
    // The `number` chooses its colour, unless it is sent one.
    PlotCurve(const std::string& name, std::size_t number);

    const std::string& getName() const { return m_Name; }
    const CurveStore& getSamples() const { return m_Samples; }

    const QColor& getColour() const { return m_Colour; }

    void apply(CurveUpdate& update);

    // Takes a colour for a light or a dark ground.
    void showGround(bool isDark);

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;
    QwtGraphic legendIcon(int index, const QSizeF& size) const override;

private:
    void showName();
    const Polylines& polylines(const PixelMap& xMap, const PixelMap& yMap) const;

    std::string m_Name;
    CurveStore m_Samples;
    CurveKind m_Kind = CurveKind::Line;
    std::size_t m_Number;
    bool m_HasOwnColour = false;
    QColor m_Colour;

    // As they were drawn last: they stay while neither the data nor what is seen of them change.
    mutable std::optional<Polylines> m_Polylines;
    mutable PixelMap m_XMap;
    mutable PixelMap m_YMap;
};

} // namespace tavo
