#include "vireo/show/plots/polyline.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;

// Qt loses lines that end too far away.
constexpr double FARTHEST_PIXEL = 1e6;

// Calls `visit(x, y)` for the samples that are seen, and one more at either end, up to which lines lead.
template <typename Visitor>
void visitSeen(const CurveStore& curve, double firstX, double lastX, Visitor&& visit)
{
    std::size_t i = 0;
    std::size_t end = curve.size();
    if (curve.isSorted()) {
        i = curve.lowerBound(firstX);
        i -= i > 0;
        end = std::min(end, curve.lowerBound(std::nextafter(lastX, INFINITY)) + 1);
    }
    double x[BLOCK];
    double y[BLOCK];
    while (i < end) {
        const std::size_t count = std::min(BLOCK, end - i);
        curve.read(i, count, x, y);
        for (std::size_t j = 0; j < count; ++j)
            visit(x[j], y[j]);
        i += count;
    }
}

QPointF pixelOf(double x, double y, const ToPixels& xMap, const ToPixels& yMap)
{
    return {std::clamp(xMap(x), -FARTHEST_PIXEL, FARTHEST_PIXEL), std::clamp(yMap(y), -FARTHEST_PIXEL, FARTHEST_PIXEL)};
}

// The samples of a line that lie in one column of pixels.
class Column
{
public:
    bool has(const QPointF& point) const { return m_NumPoints > 0 && std::floor(point.x()) == m_Place; }

    void add(const QPointF& point)
    {
        if (m_NumPoints == 0) {
            m_Place = std::floor(point.x());
            m_Lowest = m_Highest = {point, 0};
            m_First = point;
        }
        if (point.y() < m_Lowest.point.y())
            m_Lowest = {point, m_NumPoints};
        if (point.y() > m_Highest.point.y())
            m_Highest = {point, m_NumPoints};
        m_Last = point;
        ++m_NumPoints;
    }

    void drawInto(QPolygonF& line)
    {
        if (m_NumPoints == 0)
            return;
        const bool lowestFirst = m_Lowest.number < m_Highest.number;
        for (const QPointF& point :
            {m_First, (lowestFirst ? m_Lowest : m_Highest).point, (lowestFirst ? m_Highest : m_Lowest).point, m_Last})
            if (line.isEmpty() || line.back() != point)
                line.push_back(point);
        m_NumPoints = 0;
    }

private:
    struct Extreme
    {
        QPointF point;
        std::size_t number = 0;
    };

    double m_Place = 0;
    std::size_t m_NumPoints = 0;
    QPointF m_First;
    QPointF m_Last;
    Extreme m_Lowest;
    Extreme m_Highest;
};

void endLine(QPolygonF& line, Polylines& polylines)
{
    if (line.size() == 1)
        polylines.marks.push_back(line.front());
    else if (line.size() > 1)
        polylines.lines.push_back(line);
    line.clear();
}

} // namespace

Polylines polylinesOf(const CurveStore& curve, const ToPixels& xMap, const ToPixels& yMap, double firstX, double lastX)
{
    Polylines polylines;
    QPolygonF line;
    Column column;
    visitSeen(curve, firstX, lastX, [&](double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y)) {
            column.drawInto(line);
            endLine(line, polylines);
            return;
        }
        const QPointF point = pixelOf(x, y, xMap, yMap);
        if (!column.has(point))
            column.drawInto(line);
        column.add(point);
    });
    column.drawInto(line);
    endLine(line, polylines);
    return polylines;
}

Polylines marksOf(const CurveStore& curve, const ToPixels& xMap, const ToPixels& yMap, double firstX, double lastX)
{
    Polylines polylines;
    visitSeen(curve, firstX, lastX, [&](double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y))
            return;
        const QPointF point = pixelOf(x, y, xMap, yMap);
        if (polylines.marks.isEmpty() || polylines.marks.back().toPoint() != point.toPoint())
            polylines.marks.push_back(point);
    });
    return polylines;
}

} // namespace tavo
