#include "vireo/show/scenes/RangeHistogram.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/colourIcon.h"

namespace tavo {

namespace {

constexpr double MARGIN = 6; // in pixels, at the left and the right
constexpr double GRIP = 9;   // in pixels, below the bars
constexpr double CATCH_RADIUS = 8;
constexpr int LEAST_WIDTH = 80;

} // namespace

RangeHistogram::RangeHistogram(QWidget* parent)
    : QWidget(parent)
    , m_Map(findColourMap(namesOfColourMaps().front()).value())
{
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("How often values are where"));
    setToolTip(tr("How often values are where.\nDrag the limits of the colour map."));
}

void RangeHistogram::setCounts(const ValueCounts& counts)
{
    m_Counts = counts;
    update();
}

void RangeHistogram::setColours(const ColourMap& map, const Range& range)
{
    m_Map = map;
    m_Range = range;
    update();
}

QSize RangeHistogram::sizeHint() const
{
    return {2 * LEAST_WIDTH, 4 * fontMetrics().height()};
}

QSize RangeHistogram::minimumSizeHint() const
{
    return {LEAST_WIDTH, sizeHint().height()};
}

// All values and both limits.
RangeHistogram::Range RangeHistogram::extent() const
{
    if (m_Dragged)
        return m_ExtentOfDrag;
    double least = m_Counts.areNone() ? m_Range.first : m_Counts.least;
    double greatest = m_Counts.areNone() ? m_Range.first : m_Counts.greatest;
    for (const double limit : {m_Range.first, m_Range.second}) {
        if (!std::isfinite(limit))
            continue;
        least = std::min(least, limit);
        greatest = std::max(greatest, limit);
    }
    const double room = least < greatest ? 0 : std::max(0.5 * std::abs(least), 1e-300);
    return {least - room, greatest + room};
}

double RangeHistogram::pixelOf(double value) const
{
    const auto [least, greatest] = extent();
    const double place = (value / 2 - least / 2) / (greatest / 2 - least / 2); // halved, lest the difference overflow
    return MARGIN + std::clamp(place, 0.0, 1.0) * (width() - 2 * MARGIN);
}

double RangeHistogram::valueAt(double pixel) const
{
    const auto [least, greatest] = extent();
    const double place = std::clamp((pixel - MARGIN) / std::max(width() - 2 * MARGIN, 1.0), 0.0, 1.0);
    return least + 2 * place * (greatest / 2 - least / 2);
}

std::optional<RangeHistogram::Limit> RangeHistogram::limitAt(double pixel) const
{
    const double toFrom = std::abs(pixel - pixelOf(m_Range.first));
    const double toTo = std::abs(pixel - pixelOf(m_Range.second));
    if (std::min(toFrom, toTo) > CATCH_RADIUS)
        return {};
    const bool isBeyond = toFrom == toTo && pixel > pixelOf(m_Range.second);
    return toFrom < toTo || (toFrom == toTo && !isBeyond) ? Limit::From : Limit::To;
}

void RangeHistogram::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_ExtentOfDrag = extent();
    m_Dragged = limitAt(event->localPos().x());
}

void RangeHistogram::mouseMoveEvent(QMouseEvent* event)
{
    const double pixel = event->localPos().x();
    if (!m_Dragged) {
        setCursor(limitAt(pixel) ? Qt::SplitHCursor : Qt::ArrowCursor);
        return;
    }
    Range range = m_Range;
    (*m_Dragged == Limit::From ? range.first : range.second) = valueAt(pixel);
    const bool isKept = (range.first < range.second) == (m_Range.first < m_Range.second);
    if (isKept && range.first != range.second)
        emit rangeDragged(range.first, range.second);
}

void RangeHistogram::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_Dragged.reset();
    update();
}

void RangeHistogram::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawBars(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    drawLimit(painter, m_Range.first);
    drawLimit(painter, m_Range.second);
}

// As high as square roots, so that the few are seen beside the many.
void RangeHistogram::drawBars(QPainter& painter) const
{
    const double bottom = height() - GRIP;
    const QRectF ground(MARGIN, 0, width() - 2 * MARGIN, bottom);
    painter.fillRect(ground, palette().color(QPalette::Base));
    const double largest = double(std::max(m_Counts.largest(), std::size_t(1)));
    const double size = ValueCounts::SIZE;
    const auto edge = [&](double i) {
        return m_Counts.least * (1 - i / size) + m_Counts.greatest * (i / size); // which cannot overflow
    };
    for (std::size_t i = 0; i < ValueCounts::SIZE; ++i) {
        if (m_Counts.counts[i] == 0)
            continue;
        const double middle = edge(double(i) + 0.5);
        const double place = (middle / 2 - m_Range.first / 2) / (m_Range.second / 2 - m_Range.first / 2);
        const double left = std::floor(pixelOf(edge(double(i))));
        const double right = std::max(std::floor(pixelOf(edge(double(i) + 1))), left + 1);
        const double barHeight = std::max(1.0, (bottom - 2) * std::sqrt(double(m_Counts.counts[i]) / largest));
        painter.fillRect(QRectF(left, bottom - barHeight, right - left, barHeight), toQColor(m_Map.sample(place)));
    }
    painter.setPen(QColor(128, 128, 128, 160));
    painter.drawRect(ground.adjusted(0, 0, -1, -1));
}

void RangeHistogram::drawLimit(QPainter& painter, double value) const
{
    if (!std::isfinite(value))
        return;
    const double x = std::floor(pixelOf(value)) + 0.5;
    const double bottom = height() - GRIP;
    const QColor ink = palette().color(QPalette::WindowText);
    painter.setPen(QPen(ink, 1));
    painter.drawLine(QPointF(x, 0), QPointF(x, bottom));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const QPointF grip[] = {{x, bottom}, {x + 5, bottom + GRIP - 1}, {x - 5, bottom + GRIP - 1}};
    painter.drawConvexPolygon(grip, 3);
}

} // namespace tavo
