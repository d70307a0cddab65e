#include "vireo/show/plots/PlotCurve.h"

#include <QPainter>
#include <QPen>
#include <qwt_scale_map.h>

#include "tavo/base/text/printable.h"
#include "vireo/show/plots/colours.h"

namespace tavo {

namespace {

constexpr double MARK_DIAMETER = 5;
constexpr std::size_t LONGEST_NAME = 60;
constexpr double DRAWN_ABOVE_GRID = 20;

// Wide pens take Qt long: they are for few points.
constexpr int MOST_ROUND_MARKS = 20'000;

void drawMarks(QPainter& painter, const QPolygonF& marks)
{
    QPen pen = painter.pen();
    pen.setCapStyle(marks.size() <= MOST_ROUND_MARKS ? Qt::RoundCap : Qt::SquareCap);
    pen.setWidthF(marks.size() <= MOST_ROUND_MARKS ? MARK_DIAMETER : 2);
    painter.setPen(pen);
    painter.drawPoints(marks);
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
    setItemAttribute(QwtPlotItem::Legend);
    setZ(DRAWN_ABOVE_GRID);
    showName();
}

void PlotCurve::apply(CurveUpdate& update)
{
    if (update.colour) {
        m_Colour = QColor::fromRgba(*update.colour);
        m_HasOwnColour = true;
    }
    if (update.samples)
        m_Kind = update.samples->kind;
    m_Samples.apply(update);
    m_Polylines.reset();
    showName();
}

void PlotCurve::showGround(bool isDark)
{
    if (!m_HasOwnColour)
        m_Colour = colourOfCurve(m_Number, isDark);
}

void PlotCurve::showName()
{
    QString name = QString::fromStdString(printable(m_Name, LONGEST_NAME));
    if (m_Samples.numInfinite() > 0)
        name += QStringLiteral(" (%1 infinite)").arg(m_Samples.numInfinite());
    setTitle(QwtText(name, QwtText::PlainText));
}

const Polylines& PlotCurve::polylines(const PixelMap& xMap, const PixelMap& yMap) const
{
    if (m_Polylines && xMap == m_XMap && yMap == m_YMap)
        return *m_Polylines;
    m_XMap = xMap;
    m_YMap = yMap;
    m_Polylines = m_Kind == CurveKind::Points ? marksOf(m_Samples, xMap, yMap) : polylinesOf(m_Samples, xMap, yMap);
    return *m_Polylines;
}

void PlotCurve::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF&) const
{
    const Polylines& polylines = this->polylines(pixelMapOf(xMap), pixelMapOf(yMap));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(m_Colour, 1.3));
    for (const QPolygonF& line : polylines.lines)
        painter->drawPolyline(line);
    drawMarks(*painter, polylines.marks);
}

QwtGraphic PlotCurve::legendIcon(int, const QSizeF& size) const
{
    QwtGraphic icon;
    icon.setDefaultSize(size);
    icon.setRenderHint(QwtGraphic::RenderPensUnscaled, true);
    QPainter painter(&icon);
    painter.setPen(QPen(m_Colour, m_Kind == CurveKind::Points ? MARK_DIAMETER : 2));
    const double middle = size.height() / 2;
    if (m_Kind == CurveKind::Points)
        painter.drawPoint(QPointF(size.width() / 2, middle));
    else
        painter.drawLine(QPointF(0, middle), QPointF(size.width(), middle));
    return icon;
}

} // namespace tavo
