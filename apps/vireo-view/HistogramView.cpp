#include "apps/vireo-view/HistogramView.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>

#include "tavo/base/debug/displayException.h"

namespace vireo_view {

namespace {

QColor opaque(const tavo::RGBA8& colour)
{
    return {colour[0], colour[1], colour[2]};
}

} // namespace

HistogramView::HistogramView(QWidget* parent)
    : QWidget(parent)
{}

void HistogramView::setHistogram(const Histogram& histogram)
{
    m_Histogram = histogram;
    update();
}

void HistogramView::setTransferFunction(const TransferFunction& transferFunction)
{
    m_TransferFunction = transferFunction;
    update();
}

void HistogramView::paintEvent(QPaintEvent*)
{
    tavo::runGuarded([this] {
        QPainter painter(this);
        // Neither the darkest colours nor the line vanish in it.
        painter.fillRect(rect(), QColor(40, 44, 60));
        if (m_Histogram.getSpan().isEmpty())
            return;
        drawColumns(painter);
        drawOpacity(painter);
    });
}

void HistogramView::drawColumns(QPainter& painter) const
{
    const std::vector<double> heights = m_Histogram.getLogCounts();
    const double highest = *std::max_element(heights.begin(), heights.end());
    const double columnWidth = double(width()) / static_cast<double>(heights.size());
    for (std::size_t i = 0; i < heights.size(); ++i) {
        const auto column = static_cast<double>(i);
        const double density = m_Histogram.getBins().reach(column + 0.5);
        const double columnHeight = height() * heights[i] / highest;
        painter.fillRect(QRectF(column * columnWidth, height() - columnHeight, columnWidth, columnHeight),
            opaque(m_TransferFunction.look(density)));
    }
}

// From 0 at the lower edge to 1 at the upper one.
void HistogramView::drawOpacity(QPainter& painter) const
{
    QPolygonF line;
    for (int x = 0; x < width(); ++x) {
        const double density = m_Histogram.getSpan().valueAt((x + 0.5) / width());
        const double opacity = m_TransferFunction.partAt(density) * m_TransferFunction.getOpacity();
        line.append(QPointF(x + 0.5, (height() - 1) * (1 - opacity)));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    // Dark beside bright, so that it is seen on every colour.
    for (const QPen& pen : {QPen(Qt::black, 3.5), QPen(QColor(255, 220, 60), 1.5)}) {
        painter.setPen(pen);
        painter.drawPolyline(line);
    }
}

} // namespace vireo_view
