#pragma once

#include <QFont>
#include <QStringList>
#include <optional>
#include <qwt_scale_div.h>
#include <string>
#include <tuple>

#include "vireo/show/plots/PlotUpdate.h"

class QFontMetricsF;

namespace tavo {

// Where an axis has its ticks, and what stands at the major ones.
struct AxisDivision
{
    QwtScaleDiv ticks;
    QStringList labels;
    QString unit;   // in which the labels count
    QString offset; // from where, empty if from zero
};

// Of an axis of so many pixels: as many ticks as there is room for their labels, which never touch each other.
AxisDivision divideAxis(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels,
    Qt::Orientation orientation, const QFontMetricsF& font);

// Divides one axis, and knows its last answer: most new samples leave the axes as they are, and to measure labels takes
// longer than to draw a curve.
class AxisDivider
{
public:
    const AxisDivision& divide(const AxisUpdate& axis, const AxisUpdate::Range& range, double pixels,
        Qt::Orientation orientation, const QFont& font);

private:
    using Question = std::tuple<std::string, bool, bool, double, double, double, Qt::Orientation, QFont>;

    std::optional<Question> m_Question;
    AxisDivision m_Answer;
};

} // namespace tavo
