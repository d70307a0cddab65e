#include "vireo/show/plots/LinesAcross.h"

#include <QPainter>
#include <algorithm>
#include <limits>
#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include "vireo/show/plots/Extent.h"
#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr double DRAWN_ABOVE_CURVES = 25; // many samples would hide a limit, and below the cursors
constexpr double DISTANCE = 4;            // of a label from its line
constexpr double OPACITY_OF_GROUND = 0.7; // behind a label
constexpr std::size_t LONGEST_LABEL = 120;

using Place = LinesAcross::Place;

QString labelOf(const LineAcross& line)
{
    return shownText(line.label, LONGEST_LABEL);
}

QRectF rectOf(const Place& line, const QRectF& canvas)
{
    return line.isVertical ? QRectF(line.pixel - 0.5, canvas.top(), 1, canvas.height())
                           : QRectF(canvas.left(), line.pixel - 0.5, canvas.width(), 1);
}

// Where a label may be, the best places first: right of a vertical line or left of it, and farther and farther down;
// above a horizontal line or below it, and farther and farther left.
std::vector<QRectF> candidates(const Place& line, double height, const QRectF& canvas)
{
    std::vector<QRectF> places;
    if (line.isVertical)
        for (double top = canvas.top() + DISTANCE; top + height <= canvas.bottom(); top += height)
            for (const double left : {line.pixel + DISTANCE, line.pixel - DISTANCE - line.width})
                places.emplace_back(left, top, line.width, height);
    else
        for (double right = canvas.right() - DISTANCE; right - line.width >= canvas.left();
             right -= line.width + DISTANCE)
            for (const double top : {line.pixel - DISTANCE - height, line.pixel + DISTANCE})
                places.emplace_back(right - line.width, top, line.width, height);
    return places;
}

// How bad it would be to have a label there.
int penaltyOf(
    const QRectF& label, const QRectF& canvas, const std::vector<QRectF>& labels, const std::vector<QRectF>& lines)
{
    constexpr int ON_A_LABEL = 100, CUT_OFF = 10, ON_A_LINE = 1;
    const auto isMet = [&label](const QRectF& other) { return label.intersects(other); };
    return ON_A_LABEL * std::any_of(labels.begin(), labels.end(), isMet) + CUT_OFF * !canvas.contains(label) +
           ON_A_LINE * std::any_of(lines.begin(), lines.end(), isMet);
}

} // namespace

LinesAcross::LinesAcross()
{
    setZ(DRAWN_ABOVE_CURVES);
}

void LinesAcross::apply(const PlotUpdate& update)
{
    const auto remove = [this](const auto& isMeant) {
        m_Lines.erase(std::remove_if(m_Lines.begin(), m_Lines.end(), isMeant), m_Lines.end());
    };
    if (update.isCleared)
        m_Lines.clear();
    for (const std::string& label : update.removedLines)
        remove([&](const LineAcross& line) { return line.label == label; });
    for (const LineAcross& added : update.lines) {
        remove(
            [&](const LineAcross& line) { return line.label == added.label && line.isVertical == added.isVertical; });
        if (m_Lines.size() == LineAcross::MOST)
            m_Lines.erase(m_Lines.begin());
        m_Lines.push_back(added);
    }
}

Extent LinesAcross::yExtent(bool isLog) const
{
    Extent extent;
    for (const LineAcross& line : m_Lines)
        if (!line.isVertical && (line.place > 0 || !isLog))
            extent.include(line.place);
    return extent;
}

std::vector<QRectF> LinesAcross::placesOfLabels(
    const std::vector<Place>& lines, double labelHeight, const QRectF& canvas)
{
    std::vector<QRectF> drawn;
    for (const Place& line : lines)
        drawn.push_back(rectOf(line, canvas));
    std::vector<QRectF> labels;
    for (const Place& line : lines) {
        QRectF best;
        int least = std::numeric_limits<int>::max();
        for (const QRectF& label : candidates(line, labelHeight, canvas))
            if (const int penalty = penaltyOf(label, canvas, labels, drawn); penalty < least) {
                best = label;
                least = penalty;
            }
        labels.push_back(best);
    }
    return labels;
}

void LinesAcross::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const
{
    painter->setPen(QPen(plot()->palette().color(QPalette::Text), 1, Qt::DashLine));
    painter->setFont(plot()->font());
    const QFontMetricsF font(painter->font(), painter->device());
    std::vector<Place> places;
    QStringList labels;
    for (const LineAcross& line : m_Lines) {
        const double pixel = pixelMapOf(line.isVertical ? xMap : yMap).toPixel(line.place);
        const bool isSeen = line.isVertical ? canvas.left() <= pixel && pixel <= canvas.right()
                                            : canvas.top() <= pixel && pixel <= canvas.bottom();
        if (!isSeen)
            continue;
        labels += labelOf(line);
        places.push_back({line.isVertical, pixel, font.horizontalAdvance(labels.back())});
        if (line.isVertical)
            painter->drawLine(QPointF(pixel, canvas.top()), QPointF(pixel, canvas.bottom()));
        else
            painter->drawLine(QPointF(canvas.left(), pixel), QPointF(canvas.right(), pixel));
    }
    const std::vector<QRectF> rects = placesOfLabels(places, font.height(), canvas);
    QColor ground = plot()->palette().color(QPalette::Base);
    ground.setAlphaF(OPACITY_OF_GROUND);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        painter->fillRect(rects[i], ground);
        painter->drawText(rects[i], Qt::AlignCenter | Qt::TextDontClip, labels[static_cast<int>(i)]);
    }
}

} // namespace tavo
