#include "vireo/show/scenes/bearings.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "vireo/show/plots/NumberFormat.h"
#include "vireo/show/plots/ticksOfAxis.h"

namespace tavo {

namespace {

constexpr double TICK_LENGTH = 5;
constexpr double GAP = 3;        // between a tick and its label
constexpr double SHORTEST = 2;   // in heights of the font: a shorter edge has its range instead of ticks
constexpr double LEAST = 3;      // in pixels: a shorter edge has nothing
constexpr double LONGEST = 5000; // in pixels: a longer edge has no more numbers
constexpr unsigned int NUM_CORNERS = 8;

// A box in the picture. The bits of a corner's number say for each axis whether it lies at the greater end.
class BoxInPicture
{
public:
    BoxInPicture(const Box3d& box, const ToPicture& toPicture)
        : m_Box(box)
    {
        for (unsigned int i = 0; i < NUM_CORNERS; ++i) {
            const std::optional<QPointF> place = toPicture(corner(i));
            m_IsSeen = m_IsSeen && place;
            m_Places[i] = place.value_or(QPointF());
            m_Centre += m_Places[i] / NUM_CORNERS;
        }
    }

    bool isSeen() const { return m_IsSeen; }
    const QPointF& centre() const { return m_Centre; }

    Vector3d corner(unsigned int number) const
    {
        Vector3d point;
        for (unsigned int axis = 0; axis < 3; ++axis)
            point[axis] = (number >> axis & 1 ? m_Box.getMax() : m_Box.getMin())[axis];
        return point;
    }

    QLineF edge(unsigned int from, unsigned int axis) const { return {m_Places[from], m_Places[from | 1 << axis]}; }

    // Whether the outside of the face at a corner, across an axis, is seen. Where one looks along a face it is not.
    bool isFacing(unsigned int corner, unsigned int axis) const
    {
        const unsigned int right = 1 << (axis + 1) % 3;
        const unsigned int up = 1 << (axis + 2) % 3;
        const unsigned int first = corner & 1 << axis;
        const double area = twiceArea(first, first | right, first | right | up, first | up);
        constexpr double ROUNDING = 1e-9;
        return (first ? -area : area) > ROUNDING * extent();
    }

    // Whether an edge has one face that is seen, and one that is not.
    bool isOutline(unsigned int from, unsigned int axis) const
    {
        return isFacing(from, (axis + 1) % 3) != isFacing(from, (axis + 2) % 3);
    }

private:
    // Positive if the corners go round clockwise in the picture, whose y points down.
    double twiceArea(unsigned int a, unsigned int b, unsigned int c, unsigned int d) const
    {
        const QPointF one = m_Places[c] - m_Places[a];
        const QPointF other = m_Places[d] - m_Places[b];
        return one.x() * other.y() - one.y() * other.x();
    }

    // The square of the longest way from the centre.
    double extent() const
    {
        double longest = 0;
        for (const QPointF& place : m_Places)
            longest = std::max(longest, QPointF::dotProduct(place - m_Centre, place - m_Centre));
        return longest;
    }

    Box3d m_Box;
    std::array<QPointF, NUM_CORNERS> m_Places;
    QPointF m_Centre;
    bool m_IsSeen = true;
};

bool isUpright(const QLineF& edge)
{
    return std::abs(edge.dy()) > std::abs(edge.dx());
}

// Whether numbers would rather stand at the first one.
bool isBetter(const QLineF& one, const QLineF& other)
{
    constexpr double SAME = 0.5;
    const QPointF a = one.center();
    const QPointF b = other.center();
    if (isUpright(one))
        return std::abs(a.x() - b.x()) > SAME ? a.x() < b.x() : a.y() > b.y();
    return std::abs(a.y() - b.y()) > SAME ? a.y() > b.y() : a.x() < b.x();
}

// The corner where the numbered edge of an axis begins.
std::optional<unsigned int> numberedEdge(const BoxInPicture& box, unsigned int axis, bool hasOutline, double shortest)
{
    std::optional<unsigned int> best;
    for (unsigned int from = 0; from < NUM_CORNERS; ++from) {
        if (from >> axis & 1 || (hasOutline && !box.isOutline(from, axis)))
            continue;
        const QLineF edge = box.edge(from, axis);
        if (edge.length() >= shortest && (!best || isBetter(edge, box.edge(*best, axis))))
            best = from;
    }
    return best;
}

// Data in a line, or all in one place, have a box without faces.
bool hasOutline(const BoxInPicture& box)
{
    for (unsigned int axis = 0; axis < 3; ++axis)
        for (unsigned int from = 0; from < NUM_CORNERS; ++from)
            if (box.isOutline(from, axis))
                return true;
    return false;
}

QPointF acrossFrom(const QLineF& edge, const QPointF& centre)
{
    const QPointF across = QPointF(edge.dy(), -edge.dx()) / edge.length();
    return QPointF::dotProduct(edge.center() - centre, across) < 0 ? -across : across;
}

// A box for a text of that size, on the line from a place in a direction, as near as can be to that distance.
QRectF boxBeside(const QPointF& place, const QPointF& direction, double distance, const QSizeF& size)
{
    const double half = (std::abs(direction.x()) * size.width() + std::abs(direction.y()) * size.height()) / 2;
    const QPointF centre = place + (distance + half) * direction;
    return {centre - QPointF(size.width(), size.height()) / 2, size};
}

// A slanting edge has as many ticks as its width or its height has room for.
AxisTicks ticksAlong(const QLineF& edge, double from, double to, const QFontMetricsF& font)
{
    const auto room = [](double pixels) { return std::min(std::abs(pixels), LONGEST); };
    AxisTicks across = ticksOfAxis(from, to, room(edge.dx()), Qt::Horizontal, font);
    AxisTicks up = ticksOfAxis(from, to, room(edge.dy()), Qt::Vertical, font);
    return across.places.size() > up.places.size() ? across : up;
}

bool doTouch(const QRectF& one, const QRectF& other)
{
    return one.adjusted(-GAP, -GAP / 2, GAP, GAP / 2).intersects(other);
}

// In perspective ticks come closer far away: leaves every second label, or fourth and so on, so that none touch.
void thinOut(std::vector<Bearing::Tick>& ticks)
{
    for (std::size_t step = 1; step < ticks.size(); step *= 2) {
        bool isTight = false;
        for (std::size_t i = step; i < ticks.size(); i += step)
            isTight = isTight || doTouch(ticks[i - step].labelBox, ticks[i].labelBox);
        if (!isTight)
            return;
        for (std::size_t i = step; i < ticks.size(); i += 2 * step)
            ticks[i].label.clear();
    }
}

// Where two axes meet, the first one's labels stay.
void makeRoomFor(std::vector<Bearing::Tick>& ticks, const std::vector<Bearing>& others)
{
    for (Bearing::Tick& tick : ticks)
        for (const Bearing& other : others)
            for (const Bearing::Tick& taken : other.ticks)
                if (!taken.label.isEmpty() && doTouch(tick.labelBox, taken.labelBox))
                    tick.label.clear();
}

QString titleOf(const QString& name, const AxisTicks& ticks)
{
    QString title = name;
    for (const QString& part : {ticks.unit, ticks.offset})
        if (!part.isEmpty())
            title += "  " + part;
    return title;
}

// As exact as the numbers of an axis with ten of them.
QString rangeOf(double from, double to)
{
    constexpr double NUM_STEPS = 10;
    const double step = tenTo(static_cast<int>(std::floor(std::log10((to - from) / NUM_STEPS))));
    const NumberFormat format(from, to, step, {});
    return titleOf(format.label(from) + " to " + format.label(to), {{}, {}, format.unit(), format.offset()});
}

// Of an edge that has room for one number or none.
void nameRange(Bearing& bearing, const QString& name, double from, double to)
{
    const auto numLabels = std::count_if(
        bearing.ticks.begin(), bearing.ticks.end(), [](const Bearing::Tick& tick) { return !tick.label.isEmpty(); });
    if (numLabels > 1 || !(from < to))
        return;
    bearing.ticks.clear();
    bearing.title = name + "  " + rangeOf(from, to);
}

// How far labels reach from their edge.
double reachOf(const Bearing& bearing)
{
    double reach = TICK_LENGTH;
    for (const Bearing::Tick& tick : bearing.ticks) {
        const QPointF size(tick.labelBox.width() * std::abs(bearing.outwards.x()),
            tick.labelBox.height() * std::abs(bearing.outwards.y()));
        reach = std::max(reach, TICK_LENGTH + GAP + size.x() + size.y());
    }
    return reach;
}

// The edge of an axis that begins at a corner, with its ticks.
Bearing bearingAlong(unsigned int axis, unsigned int from, const BoxInPicture& box, const ToPicture& toPicture,
    const AxisTicks& ticks, const QFontMetricsF& font)
{
    Bearing bearing;
    bearing.axis = static_cast<int>(axis);
    bearing.edge = box.edge(from, axis);
    bearing.outwards = acrossFrom(bearing.edge, box.centre());
    for (std::size_t i = 0; i < ticks.places.size(); ++i) {
        Vector3d point = box.corner(from);
        point[axis] = ticks.places[i];
        const QPointF place = toPicture(point).value_or(QPointF());
        const QString& label = ticks.labels[static_cast<int>(i)];
        bearing.ticks.push_back(
            {place, label, boxBeside(place, bearing.outwards, TICK_LENGTH + GAP, font.size(0, label))});
    }
    return bearing;
}

} // namespace

std::vector<Bearing> bearingsOf(
    const Box3d& box, const ToPicture& toPicture, const QFontMetricsF& font, const std::array<QString, 3>& names)
{
    const BoxInPicture inPicture(box, toPicture);
    std::vector<Bearing> bearings;
    if (!inPicture.isSeen())
        return bearings;
    const bool isOutlined = hasOutline(inPicture);
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const auto from = numberedEdge(inPicture, axis, isOutlined, LEAST);
        if (!from)
            continue;
        const QLineF edge = inPicture.edge(*from, axis);
        const double least = box.getMin()[axis];
        const double greatest = box.getMax()[axis];
        AxisTicks ticks;
        if (edge.length() >= SHORTEST * font.height())
            ticks = ticksAlong(edge, least, greatest, font);
        Bearing bearing = bearingAlong(axis, *from, inPicture, toPicture, ticks, font);
        thinOut(bearing.ticks);
        makeRoomFor(bearing.ticks, bearings);
        bearing.title = titleOf(names[axis], ticks);
        nameRange(bearing, names[axis], least, greatest);
        bearing.titleBox =
            boxBeside(bearing.edge.center(), bearing.outwards, reachOf(bearing) + GAP, font.size(0, bearing.title));
        bearings.push_back(std::move(bearing));
    }
    return bearings;
}

std::vector<QLineF> edgesBehind(const Box3d& box, const ToPicture& toPicture)
{
    const BoxInPicture inPicture(box, toPicture);
    std::vector<QLineF> edges;
    for (unsigned int axis = 0; axis < 3 && inPicture.isSeen(); ++axis)
        for (unsigned int from = 0; from < NUM_CORNERS; ++from)
            if (!(from >> axis & 1) &&
                !(inPicture.isFacing(from, (axis + 1) % 3) && inPicture.isFacing(from, (axis + 2) % 3)))
                edges.push_back(inPicture.edge(from, axis));
    return edges;
}

void drawBearings(QPainter& painter, const std::vector<Bearing>& bearings)
{
    for (const Bearing& bearing : bearings) {
        painter.drawLine(bearing.edge);
        for (const Bearing::Tick& tick : bearing.ticks) {
            painter.drawLine(tick.place, tick.place + TICK_LENGTH * bearing.outwards);
            painter.drawText(tick.labelBox, Qt::AlignCenter | Qt::TextDontClip, tick.label);
        }
        painter.drawText(bearing.titleBox, Qt::AlignCenter | Qt::TextDontClip, bearing.title);
    }
}

} // namespace tavo
