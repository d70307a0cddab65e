#include "vireo/show/plots/PlotReadout.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace tavo {

namespace {

constexpr double MARK_RADIUS = 4;
constexpr double DISTANCE = 10;
constexpr double PADDING = 4;

// Of something of that size, beside the sample and within the canvas.
QRectF placeBeside(const QPointF& sample, const QSizeF& size, const QSizeF& canvas)
{
    const auto along = [](double sample, double length, double room) {
        const double behind = sample + DISTANCE;
        return behind + length <= room ? behind : std::max(0.0, sample - DISTANCE - length);
    };
    return {QPointF(along(sample.x(), size.width(), canvas.width()), along(sample.y(), size.height(), canvas.height())),
        size};
}

} // namespace

PlotReadout::PlotReadout(QWidget* canvas)
    : QWidget(canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName("readout");
}

void PlotReadout::show(const QPointF& sample, const QColor& colour, const QString& text)
{
    m_Sample = sample;
    m_Colour = colour;
    m_Text = text;
    setGeometry(parentWidget()->rect());
    m_Box = placeBeside(sample, QFontMetricsF(font()).size(0, text) + QSizeF(2 * PADDING, 2 * PADDING), size());
    QWidget::show();
    raise();
    update();
}

void PlotReadout::clear()
{
    if (m_Text.isEmpty())
        return;
    m_Text.clear();
    hide();
}

void PlotReadout::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Text), 1.5));
    painter.setBrush(m_Colour);
    painter.drawEllipse(m_Sample, MARK_RADIUS, MARK_RADIUS);

    painter.setPen(QPen(m_Colour, 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(m_Box, PADDING, PADDING);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(m_Box, Qt::AlignCenter, m_Text);
}

} // namespace tavo
