#include "vireo/show/scenes/OrientationMark.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/SceneView.h"

namespace tavo {

namespace {

using Side = SceneCamera::Side;

constexpr double RADIUS_OF_END = 9;
constexpr Side SIDES[3][2] = {{Side::Left, Side::Right}, {Side::Front, Side::Back}, {Side::Bottom, Side::Top}};

QColor colourOf(int axis)
{
    const QColor colours[] = {{220, 50, 47}, {60, 160, 40}, {40, 90, 220}}; // those of frames
    return colours[axis];
}

Side oppositeOf(Side side)
{
    for (const auto& [negative, positive] : SIDES) {
        if (side == negative)
            return positive;
        if (side == positive)
            return negative;
    }
    return side;
}

QColor mixed(const QColor& one, const QColor& other, double share)
{
    const auto mix = [share](int a, int b) { return qRound(share * a + (1 - share) * b); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

void drawEnd(QPainter& painter, const OrientationMark::End& end, bool isHovered, const QColor& ground)
{
    const QColor colour = colourOf(end.axis);
    const bool isFull = end.isPositive || isHovered;
    painter.setPen(QPen(isHovered ? mixed(colour, Qt::white, 0.5) : colour, isHovered ? 2 : 1.5));
    painter.setBrush(isFull ? colour : mixed(colour, ground, 0.25));
    painter.drawEllipse(end.place, RADIUS_OF_END, RADIUS_OF_END);
    if (!isFull)
        return;
    const QString letter = QStringLiteral("xyz").mid(end.axis, 1);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(end.place, QSizeF()).adjusted(-20, -20, 20, 20), Qt::AlignCenter,
        end.isPositive ? letter : QChar(0x2212) + letter);
}

} // namespace

OrientationMark::OrientationMark(SceneView& view)
    : m_View(view)
{
    m_View.installEventFilter(this);
}

std::array<OrientationMark::End, 6> OrientationMark::endsOf(const SceneCamera& camera, const QRectF& room)
{
    std::array<End, 6> ends;
    const double reach = 0.5 * std::min(room.width(), room.height()) - RADIUS_OF_END - 1;
    for (int i = 0; i < 6; ++i) {
        const int axis = i / 2;
        const bool isPositive = i % 2;
        Vector3d direction;
        direction[static_cast<std::size_t>(axis)] = isPositive ? 1 : -1;
        const Vector3d seen = camera.modelView().turned(direction);
        ends[static_cast<std::size_t>(i)] = {
            SIDES[axis][isPositive], axis, isPositive, room.center() + reach * QPointF(seen[0], -seen[1]), seen[2]};
    }
    std::stable_sort(ends.begin(), ends.end(), [](const End& a, const End& b) { return a.nearness < b.nearness; });
    return ends;
}

std::optional<OrientationMark::End> OrientationMark::endAt(
    const QPointF& place, const SceneCamera& camera, const QRectF& room)
{
    const std::array<End, 6> ends = endsOf(camera, room);
    const auto isThere = [&place](const End& end) {
        const QPointF away = end.place - place;
        return std::hypot(away.x(), away.y()) <= RADIUS_OF_END;
    };
    const auto found = std::find_if(ends.rbegin(), ends.rend(), isThere);
    return found != ends.rend() ? std::optional(*found) : std::nullopt;
}

void OrientationMark::draw(
    QPainter& painter, const QRectF& room, const SceneCamera& camera, const QColor& ground, std::optional<Side> lit)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(12);
    font.setBold(true);
    painter.setFont(font);
    for (const End& end : endsOf(camera, room)) {
        if (end.isPositive) {
            painter.setPen(QPen(colourOf(end.axis), 2));
            painter.drawLine(room.center(), end.place);
        }
        drawEnd(painter, end, end.side == lit, ground);
    }
    painter.restore();
}

bool OrientationMark::eventFilter(QObject*, QEvent* event)
{
    const auto side = [this, event] { return sideAt(static_cast<QMouseEvent*>(event)->localPos()); };
    switch (event->type()) {
    case QEvent::MouseMove:
        if (!static_cast<QMouseEvent*>(event)->buttons())
            hover(side());
        return m_Pressed.has_value();
    case QEvent::Leave: hover({}); return false;
    case QEvent::MouseButtonDblClick: // the second one of two clicks
    case QEvent::MouseButtonPress:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            m_Pressed = side();
        return m_Pressed.has_value();
    case QEvent::MouseButtonRelease:
        if (!m_Pressed || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
            return false;
        if (side() == m_Pressed)
            lookFrom(*m_Pressed);
        m_Pressed.reset();
        hover(side());
        return true;
    default: return false;
    }
}

std::optional<Side> OrientationMark::sideAt(const QPointF& place) const
{
    const std::optional<QRectF> room = m_View.markRoom();
    const std::optional<End> end = room ? endAt(place, m_View.getCamera(), *room) : std::nullopt;
    return end ? std::optional(end->side) : std::nullopt;
}

void OrientationMark::hover(std::optional<Side> side)
{
    if (side == m_Hovered)
        return;
    m_Hovered = side;
    m_View.update();
}

void OrientationMark::lookFrom(Side side)
{
    SceneCamera there = m_View.getCamera();
    there.look(side);
    m_View.lookFrom(there == m_View.getCamera() ? oppositeOf(side) : side);
}

} // namespace tavo
