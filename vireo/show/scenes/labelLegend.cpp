#include "vireo/show/scenes/labelLegend.h"

#include <QFontMetricsF>
#include <QObject>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr double SQUARE = 0.7; // of the height of a row
constexpr double GAP = 6;      // between a square and its text

double textLeft(const LegendRow& row, const QFontMetricsF& font)
{
    return row.colour.isValid() ? SQUARE * font.height() + GAP : 0;
}

} // namespace

std::vector<LegendRow> fittedRows(
    const std::vector<LegendRow>& rows, double height, double textWidth, const QFontMetricsF& font)
{
    const auto most = static_cast<std::size_t>(std::max(std::floor(height / font.height()), 0.0));
    const std::size_t number = rows.size() <= most ? rows.size() : std::max<std::size_t>(most, 1) - 1;
    std::vector<LegendRow> fitted(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(number));
    for (LegendRow& row : fitted)
        row.text = font.elidedText(row.text, Qt::ElideMiddle, textWidth);
    if (number < rows.size() && most > 0)
        fitted.push_back({{}, QObject::tr("and %1 more").arg(rows.size() - number)});
    return fitted;
}

double widthOf(const LegendRow& row, const QFontMetricsF& font)
{
    return textLeft(row, font) + font.horizontalAdvance(row.text);
}

void drawLegend(QPainter& painter, const QPointF& topLeft, const std::vector<LegendRow>& rows, const QString& title)
{
    const QFontMetricsF font(painter.font());
    const double side = SQUARE * font.height();
    QRectF line(topLeft, QSizeF(0, font.height()));
    painter.drawText(line.translated(0, -1.5 * font.height()), Qt::AlignLeft | Qt::TextDontClip, title);
    for (const LegendRow& row : rows) {
        if (row.colour.isValid())
            painter.fillRect(QRectF(line.left(), std::round(line.center().y() - side / 2), side, side), row.colour);
        painter.drawText(
            line.translated(textLeft(row, font), 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, row.text);
        line.translate(0, font.height());
    }
}

} // namespace tavo
