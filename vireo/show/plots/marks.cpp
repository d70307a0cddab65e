#include "vireo/show/plots/marks.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "vireo/show/plots/polyline.h"

namespace tavo {

namespace {

constexpr std::size_t BLOCK = 512;
constexpr int MARGIN = 3; // pixels around what is seen, from which marks reach into it

// More take Qt long, as points.
constexpr int MOST_POINTS = 20'000;

// Marks have this many pixels a side where they are runs.
constexpr double SIDE_OF_RUN = 2;

// As PixelMap, for very many numbers.
class FastMap
{
public:
    explicit FastMap(const PixelMap& map)
        : m_Map(map)
        , m_Scale((map.lastPixel - map.firstPixel) / (map.lastValue / 2 - map.firstValue / 2))
    {}

    double toPixel(double value) const
    {
        return m_Map.isLog ? m_Map.toPixel(value) : m_Map.firstPixel + (value / 2 - m_Map.firstValue / 2) * m_Scale;
    }

private:
    const PixelMap& m_Map;
    double m_Scale; // by halves, too
};

// Pixels along one axis, from the first that has a number.
struct Span
{
    explicit Span(const PixelMap& map)
        : first(std::floor(std::min(map.firstPixel, map.lastPixel)) - MARGIN)
        , size(std::ceil(std::max(map.firstPixel, map.lastPixel)) + MARGIN - first + 1)
    {}

    // Neither what is not a number nor what is infinite is within.
    bool has(double pixel) const { return pixel >= first && pixel < first + size; }
    std::size_t numberOf(double pixel) const { return static_cast<std::size_t>(pixel - first); }

    double first;
    double size;
};

// Which pixels of a column have a mark.
class Column
{
public:
    explicit Column(std::size_t numRows)
        : m_Words(numRows / BITS + 1)
    {}

    // Whether it had none.
    bool mark(std::size_t row)
    {
        const std::uint64_t before = m_Words[row / BITS];
        m_Words[row / BITS] |= std::uint64_t(1) << row % BITS;
        return m_Words[row / BITS] != before;
    }

    bool has(std::size_t row) const { return m_Words[row / BITS] >> row % BITS & 1; }

    // Whether all pixels from one to another have marks.
    bool isFull(std::size_t first, std::size_t last) const
    {
        for (std::size_t word = first / BITS; word <= last / BITS; ++word) {
            std::uint64_t wanted = ~std::uint64_t(0);
            if (word == first / BITS)
                wanted &= ~std::uint64_t(0) << first % BITS;
            if (word == last / BITS)
                wanted &= ~std::uint64_t(0) >> (BITS - 1 - last % BITS);
            if (~m_Words[word] & wanted)
                return false;
        }
        return true;
    }

private:
    static constexpr std::size_t BITS = 64;

    std::vector<std::uint64_t> m_Words;
};

class MarkMaker
{
public:
    MarkMaker(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap)
        : m_Curve(curve)
        , m_XMap(xMap)
        , m_FastXMap(xMap)
        , m_FastYMap(yMap)
        , m_X(xMap)
        , m_Y(yMap)
        , m_Columns(static_cast<std::size_t>(m_X.size), Column(static_cast<std::size_t>(m_Y.size)))
    {}

    Marks make()
    {
        const Stretch seen = seenOf(m_Curve, m_XMap);
        if (m_Curve.isSorted())
            addColumns(seen);
        else
            addSamples(seen.first, seen.last);
        if (m_Marks.points.size() > MOST_POINTS)
            m_Marks = {{}, runs()};
        return std::move(m_Marks);
    }

private:
    void addColumns(const Stretch& seen)
    {
        const bool isRising = m_XMap.lastPixel > m_XMap.firstPixel;
        std::size_t first = seen.first;
        for (double i = 0; i < m_X.size && first < seen.last; ++i) {
            const double border = isRising ? m_X.first + i + 1 : m_X.first + m_X.size - 1 - i;
            const std::size_t last = std::clamp(m_Curve.lowerBound(m_XMap.toValue(border), first), first, seen.last);
            const Column& column = m_Columns[m_X.numberOf(isRising ? border - 1 : border)];
            m_Curve.visit(
                first, last, [&](const Extent& extent) { return hasRoom(column, extent); },
                [&](std::size_t from, std::size_t to) { addSamples(from, to); });
            first = last;
        }
    }

    // Whether a sample of such a stretch can have a mark of its own.
    bool hasRoom(const Column& column, const Extent& extent) const
    {
        if (extent.isEmpty())
            return false;
        const double a = m_FastYMap.toPixel(extent.from);
        const double b = m_FastYMap.toPixel(extent.to);
        if (std::isnan(a) || std::isnan(b))
            return true; // some of it has no place on a logarithmic axis
        const double first = std::max(std::min(a, b), m_Y.first);
        const double last = std::min(std::max(a, b), m_Y.first + m_Y.size - 1);
        return first <= last && !column.isFull(m_Y.numberOf(first), m_Y.numberOf(last));
    }

    void addSamples(std::size_t first, std::size_t last)
    {
        double x[BLOCK];
        double y[BLOCK];
        for (; first < last; first += std::min(BLOCK, last - first)) {
            const std::size_t count = std::min(BLOCK, last - first);
            m_Curve.read(first, count, x, y);
            for (std::size_t i = 0; i < count; ++i)
                add(m_FastXMap.toPixel(x[i]), m_FastYMap.toPixel(y[i]));
        }
    }

    void add(double x, double y)
    {
        if (m_X.has(x) && m_Y.has(y) && m_Columns[m_X.numberOf(x)].mark(m_Y.numberOf(y)) &&
            m_Marks.points.size() <= MOST_POINTS)
            m_Marks.points.push_back({x, y});
    }

    std::vector<QRectF> runs() const
    {
        std::vector<QRectF> runs;
        const auto numRows = static_cast<std::size_t>(m_Y.size);
        for (std::size_t column = 0; column < m_Columns.size(); ++column)
            for (std::size_t row = 0; row < numRows; ++row) {
                const std::size_t first = row;
                while (row < numRows && m_Columns[column].has(row))
                    ++row;
                const auto height = static_cast<double>(row - first);
                if (height > 0)
                    runs.emplace_back(m_X.first + static_cast<double>(column), m_Y.first + static_cast<double>(first),
                        SIDE_OF_RUN, height - 1 + SIDE_OF_RUN);
            }
        return runs;
    }

    const CurveStore& m_Curve;
    const PixelMap& m_XMap;
    FastMap m_FastXMap;
    FastMap m_FastYMap;
    Span m_X;
    Span m_Y;
    std::vector<Column> m_Columns;
    Marks m_Marks;
};

} // namespace

Marks marksOf(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap)
{
    return MarkMaker(curve, xMap, yMap).make();
}

} // namespace tavo
