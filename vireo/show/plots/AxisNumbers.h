#pragma once

#include <QStringList>
#include <qwt_scale_draw.h>

namespace tavo {

// The numbers on an axis, which are made for all of its ticks together.
class AxisNumbers : public QwtScaleDraw
{
public:
    // One for each major tick.
    void setLabels(const QStringList& labels);

    QwtText label(double value) const override;

protected:
    // Centres lines below each other, as Qwt does not.
    void drawLabel(QPainter* painter, double value) const override;

private:
    QStringList m_Labels;
};

} // namespace tavo
