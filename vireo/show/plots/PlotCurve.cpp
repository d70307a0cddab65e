#include "vireo/show/plots/PlotCurve.h"

#include <QPainter>
#include <QPen>
#include <algorithm>
#include <cmath>
#include <limits>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include "vireo/show/plots/PlotSight.h"
#include "vireo/show/plots/areas.h"
#include "vireo/show/plots/colours.h"
#include "vireo/show/plots/plainText.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr double MARK_DIAMETER = 5;
constexpr double AREA_OPACITY = 0.35;
constexpr std::size_t LONGEST_NAME = 60;
constexpr double DRAWN_ABOVE_GRID = 20;
constexpr double LIFTED_BY = 2;
constexpr QSize LEGEND_ICON(18, 8); // in which dashes can be told from a line

// Wide pens take Qt long: they are for few points.
constexpr int MOST_ROUND_MARKS = 20'000;

void drawMarks(QPainter& painter, const QPolygonF& marks, double liftedBy)
{
    const bool isRound = marks.size() <= MOST_ROUND_MARKS;
    QPen pen = painter.pen();
    pen.setStyle(Qt::SolidLine);
    pen.setCapStyle(isRound ? Qt::RoundCap : Qt::SquareCap);
    pen.setWidthF((isRound ? MARK_DIAMETER : 2) + liftedBy);
    painter.setPen(pen);
    painter.drawPoints(marks);
}

// Bars have no zero to stand on along a logarithmic axis. Half a decade below the smallest shows it as one, too.
Extent withGround(Extent extent)
{
    constexpr double HALF_A_DECADE = 3.1622776601683795;
    extent.from = std::max(extent.from / HALF_A_DECADE, std::numeric_limits<double>::denorm_min());
    return extent;
}

// What a logarithmic axis shows of an extent, in which the smallest number above zero need not be.
Extent positivePart(Extent extent, double smallest)
{
    if (extent.isEmpty() || extent.from > 0)
        return extent;
    if (extent.to < smallest)
        return {};
    extent.from = smallest;
    return extent;
}

} // namespace

PixelMap pixelMapOf(const QwtScaleMap& map)
{
    return {map.s1(), map.s2(), map.p1(), map.p2(), map.transformation() != nullptr};
}

PlotCurve::PlotCurve(const std::string& name, std::size_t number)
    : m_Name(name)
    , m_Number(number)
{
    setZ(DRAWN_ABOVE_GRID);
    setLegendIconSize(LEGEND_ICON);
    showName();
}

void PlotCurve::apply(CurveUpdate& update)
{
    const QColor colourBefore = m_Colour;
    const CurveKind kindBefore = m_Kind;
    const Qt::PenStyle styleBefore = m_PenStyle;
    m_HasLooks = m_HasLooks || update.colour || update.style;
    m_HasCome = m_HasCome || update.hasSamples();
    if (update.colour) {
        m_Colour = QColor::fromRgba(*update.colour);
        m_HasOwnColour = true;
    }
    if (update.style)
        applyStyle(*update.style);
    if (update.samples)
        applySamples(*update.samples);
    m_Samples.apply(update);
    if (hasBars())
        m_Distance = leastDistance(m_Samples);
    m_Polylines.reset();
    countNotPositive();
    showName();
    setItemAttribute(QwtPlotItem::Legend, m_HasCome);
    if (m_Colour != colourBefore || m_Kind != kindBefore || m_PenStyle != styleBefore)
        legendChanged();
}

void PlotCurve::dropSamples()
{
    m_Samples.clear();
    m_Low.clear();
    m_NumNotCounted = 0;
    m_Polylines.reset();
}

void PlotCurve::showGround(bool isDark)
{
    if (m_HasOwnColour)
        return;
    m_Colour = colourOfCurve(m_Number, isDark);
    legendChanged();
}

void PlotCurve::setLog(bool isXLog, bool isYLog)
{
    if (isXLog == m_IsXLog && isYLog == m_IsYLog)
        return;
    m_IsXLog = isXLog;
    m_IsYLog = isYLog;
    countNotPositive();
    showName();
}

// An interval of a histogram in which nothing lies is no news.
void PlotCurve::countNotPositive()
{
    m_NumNotPositive = m_Kind == CurveKind::Histogram ? 0 : m_Samples.numNotPositive(m_IsXLog, m_IsYLog);
}

void PlotCurve::setHidden(bool isHidden)
{
    if (isHidden == !isVisible())
        return;
    setVisible(!isHidden);
    showName();
    legendChanged();
}

// Both edges of a band stand over the same x.
std::size_t PlotCurve::numInfinite() const
{
    return m_Samples.numInfiniteX() + m_Samples.numInfinite() + m_Low.numInfinite() + m_NumNotCounted;
}

QStringList PlotCurve::notes() const
{
    QStringList notes;
    if (const std::size_t number = numInfinite(); number > 0)
        notes += QStringLiteral("%1 infinite").arg(number);
    const double farthest = std::max({m_Samples.xExtent().to, -m_Samples.xExtent().from, m_Samples.yExtent().to,
        -m_Samples.yExtent().from, m_Low.yExtent().to, -m_Low.yExtent().from});
    if (farthest > PlotSight::LARGEST)
        notes += QStringLiteral("goes beyond %1").arg(PlotSight::LARGEST);
    if (m_NumNotPositive > 0)
        notes += QStringLiteral("%1 not above zero").arg(m_NumNotPositive);
    return notes;
}

void PlotCurve::showName()
{
    QString name = shownText(m_Name, LONGEST_NAME);
    if (hasNotes())
        name += " (" + notes().join(", ") + ')';
    QwtText title = plainText(name);
    if (!isVisible())
        title.setColor(Qt::gray);
    setTitle(title);
}

void PlotCurve::applySamples(CurveSamples& samples)
{
    m_Kind = samples.kind;
    m_NumNotCounted = m_Kind == CurveKind::Histogram ? numInfiniteOf(samples.y) : 0;
    if (m_Kind == CurveKind::Histogram)
        samples = histogramOf(samples.y);
    m_Low.clear();
    if (!samples.low.isEmpty())
        m_Low.replace({samples.x, samples.low, {}, m_Kind});
}

void PlotCurve::applyStyle(const std::string& style)
{
    const QStringList words = QString::fromStdString(style).split(' ', Qt::SkipEmptyParts);
    m_PenStyle = words.contains("dashed") ? Qt::DashLine : words.contains("dotted") ? Qt::DotLine : Qt::SolidLine;
    m_PenWidth = words.contains("thick") ? 2.5 : 1;
    m_HasMarks = words.contains("marks");
    m_IsOnY2 = words.contains("y2");
    setYAxis(m_IsOnY2 ? QwtPlot::yRight : QwtPlot::yLeft);
}

std::vector<PlotCurve::Edge> PlotCurve::edges() const
{
    if (m_Kind == CurveKind::Band)
        return {{m_Name + " low", &m_Low}, {m_Name + " high", &m_Samples}};
    return {{m_Name, &m_Samples}};
}

double PlotCurve::barWidth() const
{
    constexpr double PART = 0.8;
    return m_Distance * (m_Kind == CurveKind::Histogram ? 1 : PART);
}

Extent PlotCurve::xExtent() const
{
    Extent extent = m_Samples.xExtent();
    if (hasBars() && !extent.isEmpty()) {
        extent.from -= barWidth() / 2;
        extent.to += barWidth() / 2;
    }
    return m_IsXLog ? positivePart(extent, m_Samples.smallestPositiveX()) : extent;
}

bool PlotCurve::isGap(std::size_t sample) const
{
    const double y = m_Samples.y(sample);
    return !std::isfinite(y) || !std::isfinite(m_Samples.x(sample)) || (m_IsXLog && m_Samples.x(sample) <= 0) ||
           (m_IsYLog && y <= 0);
}

bool PlotCurve::needsMargin() const
{
    if (m_Kind != CurveKind::Line)
        return m_Kind == CurveKind::Points || isSteps();
    const std::size_t size = m_Samples.size();
    return m_HasMarks || (size > 1 && ((!isGap(0) && isGap(1)) || (!isGap(size - 1) && isGap(size - 2))));
}

Extent PlotCurve::yExtentWithin(double firstX, double lastX) const
{
    Extent extent = m_Samples.yExtentWithin(firstX, lastX);
    double smallest = m_IsYLog ? m_Samples.smallestPositiveY() : 0;
    if (m_Kind == CurveKind::Band) {
        extent.include(m_Low.yExtentWithin(firstX, lastX));
        smallest = m_IsYLog ? std::min(smallest, m_Low.smallestPositiveY()) : 0;
    }
    if (m_IsYLog)
        extent = positivePart(extent, smallest);
    if (!hasBars() || extent.isEmpty())
        return extent;
    if (m_IsYLog)
        return withGround(extent);
    extent.include(0);
    return extent;
}

void PlotCurve::trace(const PixelMap& xMap, const PixelMap& yMap) const
{
    if (m_Polylines && xMap == m_XMap && yMap == m_YMap)
        return;
    m_XMap = xMap;
    m_YMap = yMap;
    const bool isPoints = m_Kind == CurveKind::Points;
    if (isPoints)
        m_Polylines = Polylines();
    else
        m_Polylines = isSteps() ? stepsOf(m_Samples, xMap, yMap) : polylinesOf(m_Samples, xMap, yMap);
    m_Marks = isPoints || m_HasMarks ? marksOf(m_Samples, xMap, yMap) : Marks();
}

void PlotCurve::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF&) const
{
    drawAs(*painter, pixelMapOf(xMap), pixelMapOf(yMap), false);
}

void PlotCurve::drawLifted(QPainter& painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    drawAs(painter, pixelMapOf(xMap), pixelMapOf(yMap), true);
}

void PlotCurve::drawAs(QPainter& painter, const PixelMap& xMap, const PixelMap& yMap, bool isLifted) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    QColor faint = m_Colour;
    faint.setAlphaF(m_Colour.alphaF() * AREA_OPACITY);
    if (hasBars()) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(m_Colour, isLifted ? LIFTED_BY : 0));
        painter.setBrush(faint);
        for (const QRectF& bar : barsOf(m_Samples, xMap, yMap, barWidth()))
            painter.drawRect(bar);
    } else if (m_Kind == CurveKind::Band) {
        painter.setPen(isLifted ? QPen(m_Colour, LIFTED_BY) : QPen(Qt::NoPen));
        painter.setBrush(faint);
        for (const QPolygonF& area : bandOf(m_Low, m_Samples, xMap, yMap))
            painter.drawPolygon(area);
    } else {
        drawLines(painter, xMap, yMap, isLifted ? LIFTED_BY : 0);
    }
}

void PlotCurve::drawLines(QPainter& painter, const PixelMap& xMap, const PixelMap& yMap, double liftedBy) const
{
    trace(xMap, yMap);
    painter.setPen(QPen(m_Colour, m_PenWidth + liftedBy, m_PenStyle));
    painter.setRenderHint(QPainter::Antialiasing, !m_Polylines->areDense);
    for (const QPolygonF& line : m_Polylines->lines)
        painter.drawPolyline(line);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMarks(painter, m_Polylines->marks, liftedBy);
    drawMarks(painter, m_Marks.points, liftedBy);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const QRectF& run : m_Marks.runs)
        painter.fillRect(run.adjusted(0, 0, liftedBy, liftedBy), m_Colour);
}

QwtGraphic PlotCurve::legendIcon(int, const QSizeF& size) const
{
    QwtGraphic icon;
    icon.setDefaultSize(size);
    icon.setRenderHint(QwtGraphic::RenderPensUnscaled, true);
    QPainter painter(&icon);
    QColor colour = m_Colour;
    if (!isVisible())
        colour.setAlphaF(colour.alphaF() * AREA_OPACITY);
    const double middle = size.height() / 2;
    if (hasBars() || m_Kind == CurveKind::Band) {
        QColor faint = colour;
        faint.setAlphaF(colour.alphaF() * AREA_OPACITY);
        painter.fillRect(QRectF(QPointF(0, 0), size), faint);
    }
    painter.setPen(QPen(colour, m_Kind == CurveKind::Points ? MARK_DIAMETER : 2, m_PenStyle));
    if (m_Kind == CurveKind::Points)
        painter.drawPoint(QPointF(size.width() / 2, middle));
    else if (hasBars())
        painter.drawRect(QRectF(QPointF(0, 0), size).adjusted(1, 1, -1, -1));
    else if (m_Kind != CurveKind::Band)
        painter.drawLine(QPointF(0, middle), QPointF(size.width(), middle));
    return icon;
}

} // namespace tavo
