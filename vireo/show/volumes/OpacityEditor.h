#pragma once

#include <QWidget>
#include <optional>
#include <utility>

#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/scenes/valueCounts.h"
#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

// How opaque a volume is by its values, from the beginning of its range to the end, over how often the values are: a
// line through points. Points are dragged; a double click makes one, and the right button takes it away. Heights are
// square roots, since small opacities matter most.
class OpacityEditor : public QWidget
{
    Q_OBJECT

public:
    explicit OpacityEditor(QWidget* parent = nullptr);

    void setCounts(const ValueCounts& counts);
    void setCurve(const OpacityCurve& curve, const ColourMap& map, const std::pair<double, double>& range);

    // Where a point is, in pixels of the widget.
    QPointF pixelOf(const OpacityPoint& point) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void curveChosen(const tavo::OpacityCurve& curve);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    OpacityPoint pointAt(const QPointF& pixel) const;
    std::optional<std::size_t> grabbedAt(const QPointF& pixel) const;
    void drawBars(QPainter& painter) const;

    ValueCounts m_Counts;
    OpacityCurve m_Curve = usualOpacities();
    ColourMap m_Map;
    std::pair<double, double> m_Range{0, 1};
    std::optional<std::size_t> m_Dragged;
};

} // namespace tavo
