#pragma once

#include <QStringList>
#include <array>
#include <optional>
#include <qwt_plot_item.h>
#include <vector>

#include "vireo/show/plots/PixelMap.h"

namespace tavo {

class PlotCurve;

// Two cursors along x, and a table of what lies between them. It is worked out when a cursor or a curve changes, not
// when it is drawn.
class PlotMeasure : public QwtPlotItem
{
public:
    PlotMeasure();

    bool isOn() const { return m_Places.has_value(); }
    void turnOn(double from, double to) { m_Places = {from, to}; }
    void turnOff();

    // The cursor that a person means by a pixel along x.
    std::optional<std::size_t> cursorAt(double pixel, const PixelMap& xMap) const;
    void moveCursor(std::size_t cursor, double x) { (*m_Places)[cursor] = x; }

    struct XScale
    {
        QString unit;
        double perUnit = 1; // so much x is one of it
    };

    // Measures between the cursors, if there are any.
    void measure(const std::vector<const PlotCurve*>& curves, const XScale& x);

    // The distance of the cursors, and its inverse. Below it, a row for each curve under a row of names.
    const QString& distance() const { return m_Distance; }
    const std::vector<QStringList>& rows() const { return m_Rows; }

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;

private:
    void drawTable(QPainter& painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const;
    QRectF placeOfTable(const QSizeF& size, const QRectF& room, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const;
    double coverOf(const QRectF& place, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const;

    std::optional<std::array<double, 2>> m_Places;
    QString m_Distance;
    std::vector<QStringList> m_Rows;
    mutable std::optional<Qt::Corner> m_Corner; // where the table was drawn last
};

} // namespace tavo
