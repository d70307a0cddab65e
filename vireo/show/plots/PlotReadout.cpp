#include "vireo/show/plots/PlotReadout.h"

#include <QPainter>

namespace tavo {

namespace {

constexpr double MARK_RADIUS = 4;
constexpr double DISTANCE = 10;
constexpr double PADDING = 4;

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

    QRectF box = painter.boundingRect(QRectF(), Qt::AlignLeft, m_Text);
    box.adjust(-PADDING, -PADDING, PADDING, PADDING);
    box.moveTopLeft(m_Sample + QPointF(DISTANCE, DISTANCE));
    if (box.right() > width())
        box.moveRight(m_Sample.x() - DISTANCE);
    if (box.bottom() > height())
        box.moveBottom(m_Sample.y() - DISTANCE);
    painter.setPen(QPen(m_Colour, 1));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(box, PADDING, PADDING);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(box, Qt::AlignCenter, m_Text);
}

} // namespace tavo
