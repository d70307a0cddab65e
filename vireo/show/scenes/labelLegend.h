#pragma once

#include <QColor>
#include <QPointF>
#include <QString>
#include <vector>

class QFontMetricsF;
class QPainter;

namespace tavo {

// One of the categories that colours show.
struct LegendRow
{
    QColor colour; // none for a line that says how many more there are
    QString text;

    bool operator==(const LegendRow& other) const = default;
};

// As many rows as a height has room for, with texts no wider than that; a last one says how many more there are.
std::vector<LegendRow> fittedRows(
    const std::vector<LegendRow>& rows, double height, double textWidth, const QFontMetricsF& font);

// Of a row, its colour included.
double widthOf(const LegendRow& row, const QFontMetricsF& font);

// Draws rows downwards from a corner, below a title, with the pen and the font that are set.
void drawLegend(QPainter& painter, const QPointF& topLeft, const std::vector<LegendRow>& rows, const QString& title);

} // namespace tavo
