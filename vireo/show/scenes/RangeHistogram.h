#pragma once

#include <QWidget>
#include <optional>
#include <utility>

#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/scenes/valueCounts.h"

namespace tavo {

// How often values are where, in the colours that they have, with the two limits of the colour map to drag.
class RangeHistogram : public QWidget
{
    Q_OBJECT

public:
    using Range = std::pair<double, double>;

    explicit RangeHistogram(QWidget* parent = nullptr);

    // Of none, while nobody knows them.
    void setCounts(const ValueCounts& counts);
    const ValueCounts& getCounts() const { return m_Counts; }
    void setColours(const ColourMap& map, const Range& range);

    // Where a value is, in pixels of the widget.
    double pixelOf(double value) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void rangeDragged(double from, double to);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Limit
    {
        From,
        To
    };

    Range extent() const;
    double valueAt(double pixel) const;
    std::optional<Limit> limitAt(double pixel) const;
    void drawBars(QPainter& painter) const;
    void drawLimit(QPainter& painter, double value) const;

    ValueCounts m_Counts;
    ColourMap m_Map;
    Range m_Range{0, 1};
    std::optional<Limit> m_Dragged;
    Range m_ExtentOfDrag; // which stays while it lasts
};

} // namespace tavo
