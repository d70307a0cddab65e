#include "vireo/show/plots/AxisNumbers.h"

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
    QwtText text(tick >= 0 ? m_Labels.value(tick) : QString(), QwtText::PlainText);
    text.setRenderFlags(Qt::AlignCenter);
    return text;
}

} // namespace tavo
