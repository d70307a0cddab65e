#include "vireo/show/volumes/OpacityEditor.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/colourIcon.h"

namespace tavo {

namespace {

constexpr double MARGIN = 6; // in pixels, on all sides
constexpr double RADIUS = 4;
constexpr double CATCH_RADIUS = 9;
constexpr int LEAST_WIDTH = 80;
constexpr std::size_t FEWEST_POINTS = 2;

} // namespace

OpacityEditor::OpacityEditor(QWidget* parent)
    : QWidget(parent)
    , m_Map(findColourMap(namesOfColourMaps().front()).value())
{
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("How opaque values are"));
    setToolTip(
        tr("How opaque values are.\nDrag the points; a double click makes one, the right button takes it away."));
}

void OpacityEditor::setCounts(const ValueCounts& counts)
{
    m_Counts = counts;
    update();
}

void OpacityEditor::setCurve(const OpacityCurve& curve, const ColourMap& map, const std::pair<double, double>& range)
{
    if (curve.size() != m_Curve.size())
        m_Dragged.reset();
    m_Curve = curve;
    m_Map = map;
    m_Range = range;
    update();
}

QSize OpacityEditor::sizeHint() const
{
    return {2 * LEAST_WIDTH, 6 * fontMetrics().height()};
}

QSize OpacityEditor::minimumSizeHint() const
{
    return {LEAST_WIDTH, sizeHint().height()};
}

QPointF OpacityEditor::pixelOf(const OpacityPoint& point) const
{
    const double place = std::clamp(point.place, 0.0, 1.0);
    return {MARGIN + place * (width() - 2 * MARGIN),
        height() - MARGIN - std::sqrt(std::clamp(point.opacity, 0.0, 1.0)) * (height() - 2 * MARGIN)};
}

OpacityPoint OpacityEditor::pointAt(const QPointF& pixel) const
{
    const double place = (pixel.x() - MARGIN) / std::max(width() - 2 * MARGIN, 1.0);
    const double root = (height() - MARGIN - pixel.y()) / std::max(height() - 2 * MARGIN, 1.0);
    const double clamped = std::clamp(root, 0.0, 1.0);
    return {std::clamp(place, 0.0, 1.0), clamped * clamped};
}

// The nearest, if it is near enough.
std::optional<std::size_t> OpacityEditor::grabbedAt(const QPointF& pixel) const
{
    std::optional<std::size_t> nearest;
    double distance = CATCH_RADIUS;
    for (std::size_t i = 0; i < m_Curve.size(); ++i) {
        const QPointF to = pixelOf(m_Curve[i]) - pixel;
        if (std::hypot(to.x(), to.y()) > distance)
            continue;
        distance = std::hypot(to.x(), to.y());
        nearest = i;
    }
    return nearest;
}

void OpacityEditor::mousePressEvent(QMouseEvent* event)
{
    const std::optional<std::size_t> grabbed = grabbedAt(event->localPos());
    if (event->button() == Qt::LeftButton)
        m_Dragged = grabbed;
    if (event->button() != Qt::RightButton || !grabbed || m_Curve.size() <= FEWEST_POINTS)
        return;
    m_Dragged.reset();
    OpacityCurve curve = m_Curve;
    curve.erase(curve.begin() + static_cast<std::ptrdiff_t>(*grabbed));
    emit curveChosen(curve);
}

// Points stay in their order.
void OpacityEditor::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_Dragged || *m_Dragged >= m_Curve.size()) {
        setCursor(grabbedAt(event->localPos()) ? Qt::PointingHandCursor : Qt::ArrowCursor);
        return;
    }
    OpacityCurve curve = m_Curve;
    OpacityPoint& point = curve[*m_Dragged];
    point = pointAt(event->localPos());
    if (*m_Dragged > 0)
        point.place = std::max(point.place, curve[*m_Dragged - 1].place);
    if (*m_Dragged + 1 < curve.size())
        point.place = std::min(point.place, curve[*m_Dragged + 1].place);
    emit curveChosen(curve);
}

void OpacityEditor::mouseReleaseEvent(QMouseEvent*)
{
    m_Dragged.reset();
}

void OpacityEditor::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || grabbedAt(event->localPos()))
        return;
    OpacityCurve curve = m_Curve;
    const OpacityPoint point = pointAt(event->localPos());
    const auto after = std::upper_bound(curve.begin(), curve.end(), point.place,
        [](double place, const OpacityPoint& other) { return place < other.place; });
    curve.insert(after, point);
    emit curveChosen(curve);
}

void OpacityEditor::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawBars(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette().color(QPalette::WindowText);
    painter.setPen(QPen(ink, 1.5));
    // Square roots of what is straight are not.
    QPolygonF line;
    for (int i = 0; i <= width() - 2 * int(MARGIN); ++i) {
        const double place = i / (width() - 2 * MARGIN);
        line << pixelOf({place, opacityAt(m_Curve, place)});
    }
    painter.drawPolyline(line);
    painter.setBrush(palette().color(QPalette::Base));
    for (const OpacityPoint& point : m_Curve)
        painter.drawEllipse(pixelOf(point), RADIUS, RADIUS);
}

// Of the values that are in the range.
void OpacityEditor::drawBars(QPainter& painter) const
{
    const QRectF ground(MARGIN, MARGIN, width() - 2 * MARGIN, height() - 2 * MARGIN);
    painter.fillRect(ground, palette().color(QPalette::Base));
    const double largest = double(std::max(m_Counts.largest(), std::size_t(1)));
    const auto placeOf = [&](double i) {
        const double part = i / double(ValueCounts::SIZE);
        const double value = m_Counts.least * (1 - part) + m_Counts.greatest * part;
        return (value / 2 - m_Range.first / 2) / (m_Range.second / 2 - m_Range.first / 2);
    };
    for (std::size_t i = 0; i < ValueCounts::SIZE; ++i) {
        const double from = placeOf(double(i));
        const double to = placeOf(double(i) + 1);
        if (m_Counts.counts[i] == 0 || !(std::max(from, to) >= 0 && std::min(from, to) <= 1))
            continue;
        const QPointF start = pixelOf({std::min(from, to), 0});
        const double end = pixelOf({std::max(from, to), 0}).x();
        const double barHeight = ground.height() * std::sqrt(double(m_Counts.counts[i]) / largest);
        QColor colour = toQColor(m_Map.sample(0.5 * (from + to)));
        colour.setAlpha(160);
        painter.fillRect(QRectF(start.x(), start.y() - barHeight, std::max(end - start.x(), 1.0), barHeight), colour);
    }
    painter.setPen(QColor(128, 128, 128, 160));
    painter.drawRect(ground.adjusted(0, 0, -1, -1));
}

} // namespace tavo
