#include "vireo/show/scenes/colourBar.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <algorithm>

#include "vireo/show/plots/ticksOfAxis.h"

namespace tavo {

namespace {

constexpr double TICK_LENGTH = 5;
constexpr double GAP = 3;

// One column, the last colour on top.
QImage columnOf(const ColourMap& map)
{
    const int size = static_cast<int>(ColourMap::SIZE);
    QImage column(1, size, QImage::Format_RGB32);
    for (int i = 0; i < size; ++i) {
        const RGBA8& colour = map.entries()[static_cast<std::size_t>(size - 1 - i)];
        column.setPixel(0, i, qRgb(colour[0], colour[1], colour[2]));
    }
    return column;
}

} // namespace

ColourBarNumbers colourBarNumbers(
    const QRectF& bar, double from, double to, const QString& field, const QFontMetricsF& font)
{
    const AxisTicks ticks = ticksOfAxis(std::min(from, to), std::max(from, to), bar.height(), Qt::Vertical, font);
    ColourBarNumbers numbers;
    for (std::size_t i = 0; i < ticks.places.size(); ++i) {
        const double place = from != to ? (ticks.places[i] - from) / (to - from) : 0.5;
        numbers.ticks.push_back({bar.bottom() - place * bar.height(), ticks.labels[static_cast<int>(i)]});
    }
    numbers.title = field;
    for (const QString& part : {ticks.unit, ticks.offset})
        if (!part.isEmpty())
            numbers.title += (numbers.title.isEmpty() ? "" : "  ") + part;
    return numbers;
}

double widthOfColourBar(const QRectF& bar, double from, double to, const QString& field, const QFontMetricsF& font)
{
    const ColourBarNumbers numbers = colourBarNumbers(bar, from, to, field, font);
    double width = font.horizontalAdvance(numbers.title);
    for (const ColourBarNumbers::Tick& tick : numbers.ticks)
        width = std::max(width, bar.width() + TICK_LENGTH + GAP + font.horizontalAdvance(tick.label));
    return width;
}

void drawColourBar(
    QPainter& painter, const QRectF& bar, const ColourMap& map, double from, double to, const QString& field)
{
    painter.drawImage(bar, columnOf(map));
    painter.drawRect(bar);
    const QFontMetricsF font(painter.font());
    const ColourBarNumbers numbers = colourBarNumbers(bar, from, to, field, font);
    for (const ColourBarNumbers::Tick& tick : numbers.ticks) {
        painter.drawLine(QLineF(bar.right(), tick.y, bar.right() + TICK_LENGTH, tick.y));
        const QRectF box(bar.right() + TICK_LENGTH + GAP, tick.y - font.height() / 2, 0, font.height());
        painter.drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, tick.label);
    }
    const QRectF box(bar.left(), bar.top() - GAP - 1.5 * font.height(), 0, font.height());
    painter.drawText(box, Qt::AlignLeft | Qt::TextDontClip, numbers.title);
}

} // namespace tavo
