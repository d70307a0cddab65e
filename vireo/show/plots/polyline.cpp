#include "vireo/show/plots/polyline.h"

#include <algorithm>
#include <cmath>

#include "vireo/show/plots/denseLines.h"

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;

// Qt loses lines that end too far away.
constexpr double FARTHEST_PIXEL = 1e6;

// Of a line that goes to and fro. What is thinned out keeps six points of each piece.
constexpr int MOST_POINTS = 1 << 18;
constexpr int KEPT_OF_PIECE = 6;

// So many times lines may cover the view: with smooth edges, and at all.
constexpr double MOST_SMOOTH = 4;
constexpr double MOST_COVERED = 16;

// Where there are so many samples in a column, they are not looked at one by one.
constexpr std::size_t MANY_IN_COLUMN = 16;

template <typename Visitor>
void visitSamples(const CurveStore& curve, const Stretch& stretch, Visitor&& visit)
{
    double x[BLOCK];
    double y[BLOCK];
    for (std::size_t i = stretch.first; i < stretch.last; i += BLOCK) {
        const std::size_t count = std::min(BLOCK, stretch.last - i);
        curve.read(i, count, x, y);
        for (std::size_t j = 0; j < count; ++j)
            visit(x[j], y[j]);
    }
}

QPointF pixelOf(double x, double y, const PixelMap& xMap, const PixelMap& yMap)
{
    return {std::clamp(xMap.toPixel(x), -FARTHEST_PIXEL, FARTHEST_PIXEL),
        std::clamp(yMap.toPixel(y), -FARTHEST_PIXEL, FARTHEST_PIXEL)};
}

bool isPlace(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
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

// Puts the lines together.
class LineMaker
{
public:
    LineMaker(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, bool isHeld)
        : m_Curve(curve)
        , m_XMap(xMap)
        , m_YMap(yMap)
        , m_IsHeld(isHeld)
    {}

    Polylines make()
    {
        const Stretch seen = seenOf(m_Curve, m_XMap);
        const double numColumns = std::abs(m_XMap.lastPixel - m_XMap.firstPixel) + 1;
        if (m_Curve.isSorted() && static_cast<double>(seen.last - seen.first) > MANY_IN_COLUMN * numColumns)
            addColumns(seen);
        else
            addSamples(seen);
        m_Column.drawInto(m_Line);
        endLine();
        if (!m_Curve.isSorted())
            leaveOutWhatIsCovered();
        return std::move(m_Polylines);
    }

private:
    void addSamples(const Stretch& stretch)
    {
        visitSamples(m_Curve, stretch, [this](double x, double y) { addSample(x, y); });
    }

    void addSample(double x, double y)
    {
        const QPointF point = pixelOf(x, y, m_XMap, m_YMap);
        if (!m_XMap.hasPlace(x) || !m_YMap.hasPlace(y) || !isPlace(point))
            return addGap(x);
        if (!m_Column.has(point))
            m_Column.drawInto(m_Line);
        m_Column.add(point);
        if (m_Line.size() > MOST_POINTS && !m_Curve.isSorted())
            m_Line = thinnedOut(m_Line, 4 * KEPT_OF_PIECE);
    }

    void leaveOutWhatIsCovered()
    {
        const QRectF view =
            QRectF(QPointF(m_XMap.firstPixel, m_YMap.firstPixel), QPointF(m_XMap.lastPixel, m_YMap.lastPixel))
                .normalized();
        double covered = 0;
        for (const QPolygonF& line : m_Polylines.lines)
            covered += coveredPixels(line, view);
        const double times = covered / (view.width() * view.height() + 1);
        m_Polylines.areDense = times > MOST_SMOOTH;
        if (times > MOST_COVERED)
            for (QPolygonF& line : m_Polylines.lines)
                line = thinnedOut(line, static_cast<int>(std::ceil(KEPT_OF_PIECE * times / MOST_COVERED)));
    }

    // What is held reaches up to it.
    void addGap(double x)
    {
        m_Column.drawInto(m_Line);
        if (m_IsHeld && !m_Line.isEmpty() && m_XMap.hasPlace(x))
            m_Line.push_back({pixelOf(x, m_YMap.firstValue, m_XMap, m_YMap).x(), m_Line.back().y()});
        endLine();
    }

    void addColumns(const Stretch& seen)
    {
        std::size_t first = seen.first;
        std::size_t length = 0;
        const double step = m_XMap.lastPixel > m_XMap.firstPixel ? 1 : -1;
        const auto numColumns = static_cast<std::size_t>(std::abs(m_XMap.lastPixel - m_XMap.firstPixel)) + 1;
        const double firstBorder = step > 0 ? std::floor(m_XMap.firstPixel) : std::ceil(m_XMap.firstPixel);
        for (std::size_t i = 0; i <= numColumns && first < seen.last; ++i) {
            const double border = m_XMap.toValue(firstBorder + step * static_cast<double>(i));
            const std::size_t last = std::clamp(m_Curve.lowerBound(border, first + length), first, seen.last);
            addColumn({first, last});
            length = last - first;
            first = last;
        }
        addSamples({first, seen.last});
    }

    void addColumn(const Stretch& column)
    {
        if (column.last - column.first < MANY_IN_COLUMN)
            return addSamples(column);
        const Extremes extremes = m_Curve.extremes(column.first, column.last);
        if (extremes.extent.isEmpty())
            return addGap(m_Curve.x(column.first));
        if (m_YMap.isLog && extremes.extent.from <= 0) // which are gaps between the others
            return addSamples(column);
        const std::size_t lowest = std::min(extremes.lowest, extremes.highest);
        const std::size_t highest = std::max(extremes.lowest, extremes.highest);
        addSample(m_Curve.x(column.first), m_Curve.y(column.first));
        addSample(m_Curve.x(lowest), m_Curve.y(lowest));
        addSample(m_Curve.x(highest), m_Curve.y(highest));
        addSample(m_Curve.x(column.last - 1), m_Curve.y(column.last - 1));
    }

    void endLine()
    {
        if (m_Line.size() == 1)
            m_Polylines.marks.push_back(m_Line.front());
        else if (m_Line.size() > 1)
            m_Polylines.lines.push_back(m_Line);
        m_Line.clear();
    }

    const CurveStore& m_Curve;
    const PixelMap& m_XMap;
    const PixelMap& m_YMap;
    bool m_IsHeld; // each sample until the next one
    Polylines m_Polylines;
    QPolygonF m_Line;
    Column m_Column;
};

QPolygonF withSteps(const QPolygonF& line)
{
    QPolygonF steps;
    for (const QPointF& point : line) {
        if (!steps.isEmpty() && steps.back().y() != point.y())
            steps.push_back({point.x(), steps.back().y()});
        steps.push_back(point);
    }
    return steps;
}

} // namespace

Stretch seenOf(const CurveStore& curve, const PixelMap& xMap)
{
    if (!curve.isSorted())
        return {0, curve.size()};
    const double from = std::min(xMap.firstValue, xMap.lastValue);
    const double to = std::max(xMap.firstValue, xMap.lastValue);
    const std::size_t first = curve.lowerBound(from);
    const std::size_t last = curve.lowerBound(std::nextafter(to, INFINITY), first);
    return {first - (first > 0), std::min(curve.size(), last + 1)};
}

Polylines polylinesOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap)
{
    return LineMaker(curve, xMap, yMap, false).make();
}

Polylines stepsOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap)
{
    Polylines steps = LineMaker(curve, xMap, yMap, true).make();
    for (QPolygonF& line : steps.lines)
        line = withSteps(line);
    return steps;
}

} // namespace tavo
