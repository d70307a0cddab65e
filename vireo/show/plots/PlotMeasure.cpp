#include "vireo/show/plots/PlotMeasure.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include "tavo/base/text/printable.h"
#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/statistics.h"

namespace tavo {

namespace {

constexpr double DRAWN_ABOVE_CURVES = 30;
constexpr double CATCH_DISTANCE = 6;
constexpr double MARGIN = 8;
constexpr double PADDING = 5;
constexpr double COLUMN_DISTANCE = 12;
constexpr double MOST_DIGITS = 6;

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
    return {QString::fromStdString(printable(name, LONGEST_NAME)), text(numbers.difference), text(numbers.mean),
        text(numbers.minimum), text(numbers.maximum), text(numbers.rms), QString::number(numbers.count)};
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

} // namespace

PlotMeasure::PlotMeasure()
{
    setZ(DRAWN_ABOVE_CURVES);
}

void PlotMeasure::turnOff()
{
    m_Places.reset();
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
        m_Distance += "   1/dx " + text(1 / distance, DIGITS_OF_X) + inverseOf(x.unit);
    m_Rows = {{QString(), "dy", QwtPlot::tr("mean"), QwtPlot::tr("minimum"), QwtPlot::tr("maximum"), QwtPlot::tr("rms"),
        QwtPlot::tr("count")}};
    for (const PlotCurve* curve : curves)
        for (const PlotCurve::Edge& edge : curve->edges())
            m_Rows.push_back(rowOf(edge.name, statisticsBetween(*edge.samples, from, to)));
}

void PlotMeasure::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap&, const QRectF& canvas) const
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
    drawTable(*painter, canvas);
}

void PlotMeasure::drawTable(QPainter& painter, const QRectF& canvas) const
{
    painter.setFont(plot()->font());
    const QFontMetricsF font(painter.font(), painter.device());
    const double lineHeight = font.height();
    const int room = static_cast<int>((canvas.height() - 2 * MARGIN - 2 * PADDING) / lineHeight) - 1;
    std::vector<QStringList> rows = m_Rows;
    if (static_cast<int>(rows.size()) > room) {
        const int numMore = static_cast<int>(rows.size()) - std::max(room - 1, 1);
        rows.resize(rows.size() - numMore);
        rows.push_back({QwtPlot::tr("and %1 more").arg(numMore)});
    }
    const std::vector<double> widths = widthsOf(rows, font);
    double width = -COLUMN_DISTANCE;
    for (const double column : widths)
        width += column;
    width = std::max(width, font.horizontalAdvance(m_Distance));
    QRectF box(canvas.left() + MARGIN, canvas.top() + MARGIN, width + 2 * PADDING,
        (static_cast<double>(rows.size()) + 1) * lineHeight + 2 * PADDING);
    QColor ground = plot()->palette().color(QPalette::Base);
    ground.setAlphaF(0.9);
    const QColor ink = plot()->palette().color(QPalette::Text);
    painter.setPen(QPen(ink, 0));
    painter.setBrush(ground);
    painter.drawRoundedRect(box, PADDING, PADDING);
    QRectF line(box.left() + PADDING, box.top() + PADDING, width, lineHeight);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, m_Distance);
    for (const QStringList& row : rows) {
        line.translate(0, lineHeight);
        drawRow(painter, row, widths, line);
    }
}

} // namespace tavo
