#include "vireo/show/plots/PlotMeasure.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/statistics.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr double DRAWN_ABOVE_CURVES = 30;
constexpr double CATCH_DISTANCE = 6;
constexpr double MARGIN = 8;
constexpr double PADDING = 5;
constexpr double COLUMN_DISTANCE = 12;
constexpr double MOST_DIGITS = 6;
const char* const BETWEEN_DISTANCES = "   ";

QString text(double value, int digits = MOST_DIGITS)
{
    return std::isnan(value) ? QStringLiteral("–") : QString::number(value, 'g', digits);
}

QString inverseOf(const QString& unit)
{
    return unit.isEmpty() ? "" : unit == "s" ? " Hz" : unit == "ms" ? " kHz" : " 1/" + unit;
}

QStringList rowOf(const std::string& name, const Statistics& numbers)
{
    constexpr std::size_t LONGEST_NAME = 40;
    return {shownText(name, LONGEST_NAME), text(numbers.difference), text(numbers.mean), text(numbers.minimum),
        text(numbers.maximum), text(numbers.rms), QString::number(numbers.count)};
}

// As wide as the widest text of each column.
std::vector<double> widthsOf(const std::vector<QStringList>& rows, const QFontMetricsF& font)
{
    std::vector<double> widths;
    for (const QStringList& row : rows)
        for (int i = 0; i < row.size(); ++i) {
            if (static_cast<std::size_t>(i) == widths.size())
                widths.push_back(0);
            widths[i] = std::max(widths[i], font.horizontalAdvance(row[i]) + COLUMN_DISTANCE);
        }
    return widths;
}

void drawRow(QPainter& painter, const QStringList& row, const std::vector<double>& widths, QRectF place)
{
    for (int i = 0; i < row.size(); ++i) {
        place.setWidth(widths[i] - COLUMN_DISTANCE);
        painter.drawText(place, (i == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter, row[i]);
        place.moveLeft(place.left() + widths[i]);
    }
}

// What is said of x, and below it a row for each curve, or a column.
struct Table
{
    QStringList above;
    std::vector<QStringList> rows;
    std::size_t numLeftOut = 0; // curves
};

QString moreText(std::size_t number)
{
    return QwtPlot::tr("and %1 more").arg(number);
}

QSizeF sizeOf(const Table& table, const QFontMetricsF& font)
{
    double width = -COLUMN_DISTANCE;
    for (const double column : widthsOf(table.rows, font))
        width += column;
    for (const QString& line : table.above)
        width = std::max(width, font.horizontalAdvance(line));
    if (table.numLeftOut > 0)
        width = std::max(width, font.horizontalAdvance(moreText(table.numLeftOut)));
    const std::size_t numLines = table.above.size() + table.rows.size() + (table.numLeftOut > 0);
    return {width + 2 * PADDING, static_cast<double>(numLines) * font.height() + 2 * PADDING};
}

// As many curves as there is room for, but one at least.
Table tableOfRows(
    const QStringList& above, const std::vector<QStringList>& rows, double height, const QFontMetricsF& font)
{
    Table table{above, rows, 0};
    const int room = static_cast<int>((height - 2 * PADDING) / font.height()) - static_cast<int>(above.size());
    if (static_cast<int>(rows.size()) > std::max(room, 2)) {
        table.rows.resize(std::max(room - 1, 2)); // a line says how many are left out
        table.numLeftOut = rows.size() - table.rows.size();
    }
    return table;
}

Table tableOfColumns(
    const QStringList& above, const std::vector<QStringList>& rows, double width, const QFontMetricsF& font)
{
    constexpr double LONGEST_NAME = 12; // in heights of the font
    Table table{above, std::vector<QStringList>(rows.front().size()), 0};
    double used = 2 * PADDING - COLUMN_DISTANCE;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        QStringList column = rows[i];
        column[0] = font.elidedText(column[0], Qt::ElideMiddle, LONGEST_NAME * font.height());
        const std::vector<double> widths = widthsOf({column}, font);
        used += *std::max_element(widths.begin(), widths.end());
        if (i > 1 && used > width) {
            table.numLeftOut = rows.size() - i;
            break;
        }
        for (int cell = 0; cell < column.size(); ++cell)
            table.rows[cell] += column[cell];
    }
    return table;
}

// Narrow plots have a column for each curve instead of a row.
Table tableFor(
    const QString& distance, const std::vector<QStringList>& rows, const QSizeF& room, const QFontMetricsF& font)
{
    for (const QStringList& above : {QStringList(distance), distance.split(BETWEEN_DISTANCES)}) {
        Table table = tableOfRows(above, rows, room.height(), font);
        if (sizeOf(table, font).width() <= room.width())
            return table;
    }
    return tableOfColumns(distance.split(BETWEEN_DISTANCES), rows, room.width(), font);
}

void drawLines(QPainter& painter, const Table& table, const QFontMetricsF& font, const QRectF& place)
{
    QRectF line(place.left(), place.top(), place.width(), font.height());
    const auto drawText = [&](const QString& text) {
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, text);
        line.translate(0, font.height());
    };
    for (const QString& text : table.above)
        drawText(text);
    const std::vector<double> widths = widthsOf(table.rows, font);
    for (const QStringList& row : table.rows) {
        drawRow(painter, row, widths, line);
        line.translate(0, font.height());
    }
    if (table.numLeftOut > 0)
        drawText(moreText(table.numLeftOut));
}

} // namespace

PlotMeasure::PlotMeasure()
{
    setZ(DRAWN_ABOVE_CURVES);
}

void PlotMeasure::turnOff()
{
    m_Places.reset();
    m_Corner.reset();
    m_Distance.clear();
    m_Rows.clear();
}

std::optional<std::size_t> PlotMeasure::cursorAt(double pixel, const PixelMap& xMap) const
{
    if (!m_Places)
        return {};
    const auto distance = [&](std::size_t i) { return std::abs(xMap.toPixel((*m_Places)[i]) - pixel); };
    const std::size_t nearest = distance(1) < distance(0) ? 1 : 0;
    if (!(distance(nearest) <= CATCH_DISTANCE))
        return {};
    return nearest;
}

void PlotMeasure::measure(const std::vector<const PlotCurve*>& curves, const XScale& x)
{
    if (!m_Places)
        return;
    constexpr int DIGITS_OF_X = 9;
    const auto [from, to] = std::minmax((*m_Places)[0], (*m_Places)[1]);
    const double distance = (to - from) / x.perUnit;
    const QString unit = x.unit.isEmpty() ? "" : ' ' + x.unit;
    m_Distance = "dx " + text(distance, DIGITS_OF_X) + unit;
    if (distance > 0)
        m_Distance += BETWEEN_DISTANCES + QStringLiteral("1/dx ") + text(1 / distance, DIGITS_OF_X) + inverseOf(x.unit);
    m_Rows = {{QString(), "dy", QwtPlot::tr("mean"), QwtPlot::tr("minimum"), QwtPlot::tr("maximum"), QwtPlot::tr("rms"),
        QwtPlot::tr("count")}};
    for (const PlotCurve* curve : curves)
        for (const PlotCurve::Edge& edge : curve->edges())
            m_Rows.push_back(rowOf(edge.name, statisticsBetween(*edge.samples, from, to)));
}

void PlotMeasure::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const
{
    if (!m_Places)
        return;
    const PixelMap map = pixelMapOf(xMap);
    // Qt loses what is drawn too far away.
    const auto pixelOf = [&](double x) { return std::clamp(map.toPixel(x), canvas.left() - 10, canvas.right() + 10); };
    const double a = pixelOf((*m_Places)[0]);
    const double b = pixelOf((*m_Places)[1]);
    const QPalette colours = plot()->palette();
    QColor ink = colours.color(QPalette::Text);
    painter->setPen(QPen(ink, 1));
    for (const double x : {a, b})
        painter->drawLine(QPointF(x, canvas.top()), QPointF(x, canvas.bottom()));
    ink.setAlphaF(0.06);
    painter->fillRect(QRectF(QPointF(std::min(a, b), canvas.top()), QPointF(std::max(a, b), canvas.bottom())), ink);
    drawTable(*painter, xMap, yMap, canvas);
}

// How much of a place curves lie on, by slices of it.
double PlotMeasure::coverOf(const QRectF& place, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    constexpr int NUM_SLICES = 16;
    const double width = place.width() / NUM_SLICES;
    const PixelMap x = pixelMapOf(xMap);
    double covered = 0;
    for (const QwtPlotItem* item : plot()->itemList()) {
        const auto* const curve = dynamic_cast<const PlotCurve*>(item);
        if (!curve || !curve->isVisible())
            continue;
        QwtScaleMap map = plot()->canvasMap(curve->yAxis());
        map.setPaintInterval(yMap.p1(), yMap.p2());
        const PixelMap y = pixelMapOf(map);
        for (int i = 0; i < NUM_SLICES; ++i) {
            const double left = place.left() + i * width;
            const Extent extent = curve->yExtentWithin(x.toValue(left), x.toValue(left + width));
            const double top = std::max(y.toPixel(extent.to), place.top());
            const double bottom = std::min(y.toPixel(extent.from), place.bottom());
            covered += !extent.isEmpty() && top <= bottom ? width * (bottom - top + 1) : 0;
        }
    }
    return covered;
}

// The corner where it hides the least. It stays where it was, unless another is much better: it must not jump to and
// fro while data come.
QRectF PlotMeasure::placeOfTable(
    const QSizeF& size, const QRectF& room, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    const auto placeAt = [&](Qt::Corner corner) {
        const bool isLeft = corner == Qt::TopLeftCorner || corner == Qt::BottomLeftCorner;
        const bool isTop = corner == Qt::TopLeftCorner || corner == Qt::TopRightCorner;
        return QRectF(
            {isLeft ? room.left() : room.right() - size.width(), isTop ? room.top() : room.bottom() - size.height()},
            size);
    };
    double least = m_Corner ? coverOf(placeAt(*m_Corner), xMap, yMap) / 2 : INFINITY;
    for (const Qt::Corner corner : {Qt::TopLeftCorner, Qt::BottomLeftCorner, Qt::BottomRightCorner, Qt::TopRightCorner})
        if (const double covered = coverOf(placeAt(corner), xMap, yMap); covered < least) {
            least = covered;
            m_Corner = corner;
        }
    return placeAt(m_Corner.value_or(Qt::TopLeftCorner));
}

void PlotMeasure::drawTable(
    QPainter& painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const
{
    painter.setFont(plot()->font());
    const QFontMetricsF font(painter.font(), painter.device());
    const QRectF room = canvas.adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    const Table table = tableFor(m_Distance, m_Rows, room.size(), font);
    const QRectF box(QPointF(0, 0), sizeOf(table, font));
    const double scale = std::min({1.0, room.width() / box.width(), room.height() / box.height()});
    if (!(scale > 0))
        return;
    QColor ground = plot()->palette().color(QPalette::Base);
    ground.setAlphaF(0.9);
    painter.save();
    painter.translate(placeOfTable(box.size() * scale, room, xMap, yMap).topLeft());
    painter.scale(scale, scale);
    painter.setPen(QPen(plot()->palette().color(QPalette::Text), 0));
    painter.setBrush(ground);
    painter.drawRoundedRect(box, PADDING, PADDING);
    drawLines(painter, table, font, box.adjusted(PADDING, PADDING, -PADDING, -PADDING));
    painter.restore();
}

} // namespace tavo
