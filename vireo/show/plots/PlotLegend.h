#pragma once

#include <qwt_legend.h>

class QLineEdit;
class QwtPlot;

namespace tavo {

class PlotCurve;

// The legend of a plot. A click hides a curve or shows it, a double click or Alt with a click shows it alone, and the
// pointer lifts it. Where there are many curves, a field filters them by their names.
//
// A picture has all entries in as many columns as there is room for, and says how many it has no room for.
class PlotLegend : public QwtLegend
{
    Q_OBJECT

public:
    static constexpr int MANY_ENTRIES = 20; // which have a filter

    explicit PlotLegend(const QwtPlot& plot);

    // While a picture is drawn, the legend is laid out for that.
    void setInPicture(bool isInPicture) { m_IsInPicture = isInPicture; }

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;
    void renderLegend(QPainter* painter, const QRectF& room, bool fillBackground) const override;
    void updateLegend(const QVariant& itemInfo, const QList<QwtLegendData>& data) override;

signals:
    void toggleWanted(PlotCurve* curve);
    void isolateWanted(PlotCurve* curve);
    void hovered(PlotCurve* curve); // null when the pointer leaves

protected:
    QWidget* createWidget(const QwtLegendData& data) const override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    // Of entries that all take the same room.
    struct Grid
    {
        int numColumns;
        QSize cell;
    };

    bool isInGrid() const;
    Grid gridFor(int width) const;
    int filterHeight() const;
    void renderGrid(QPainter& painter, const QRectF& room) const;
    PlotCurve* curveOf(const QWidget* entry) const;
    bool handle(QWidget* entry, const QEvent& event);
    void showFilter();
    void filter();

    const QwtPlot& m_Plot;
    QLineEdit* m_Filter;
    QList<QWidget*> m_Entries; // in the order of the curves
    bool m_IsInPicture = false;
};

} // namespace tavo
