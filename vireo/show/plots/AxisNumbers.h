#pragma once

#include <qwt_scale_draw.h>

namespace tavo {

// The numbers on an axis, all with as many digits as it takes to tell them apart.
class AxisNumbers : public QwtScaleDraw
{
public:
    QwtText label(double value) const override;
};

} // namespace tavo
