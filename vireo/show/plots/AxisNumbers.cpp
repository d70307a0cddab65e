#include "vireo/show/plots/AxisNumbers.h"

#include <QPainter>

#include "vireo/show/plots/plainText.h"

namespace tavo {

void AxisNumbers::setLabels(const QStringList& labels)
{
    if (m_Labels == labels)
        return;
    m_Labels = labels;
    invalidateCache();
}

QwtText AxisNumbers::label(double value) const
{
    const int tick = scaleDiv().ticks(QwtScaleDiv::MajorTick).indexOf(value);
    return plainText(tick >= 0 ? m_Labels.value(tick) : QString());
}

void AxisNumbers::drawLabel(QPainter* painter, double value) const
{
    QwtText text = tickLabel(painter->font(), value);
    const QSizeF size = text.textSize(painter->font());
    text.setRenderFlags(Qt::AlignHCenter);
    painter->save();
    painter->setWorldTransform(labelTransformation(labelPosition(value), size), true);
    text.draw(painter, QRectF(QPointF(0, 0), size));
    painter->restore();
}

} // namespace tavo
