#include "vireo/show/scenes/ClipHandles.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "vireo/show/scenes/SceneView.h"

namespace tavo {

namespace {

constexpr double RADIUS = 6;            // in pixels
constexpr double REACH = 9;             // of the pointer
constexpr double DEGREES_OF_STEP = 120; // of the wheel, in eighths

Vector3d axisOf(std::size_t face)
{
    Vector3d axis;
    axis[face / 2] = 1;
    return axis;
}

// What of a line is in front of the eye, in the picture.
std::optional<QLineF> seenPart(const SceneCamera& camera, const SceneCamera::Size& size, Vector3d from, Vector3d to)
{
    double nearer = camera.project(from, size).depth;
    double farther = camera.project(to, size).depth;
    if (nearer > farther) {
        std::swap(from, to);
        std::swap(nearer, farther);
    }
    const double least = 1e-3 * farther;
    if (!camera.isOrthographic() && farther <= 0)
        return {};
    if (!camera.isOrthographic() && nearer < least)
        from = from + ((least - nearer) / (farther - nearer)) * (to - from);
    const SceneCamera::Pixel one = camera.project(from, size);
    const SceneCamera::Pixel other = camera.project(to, size);
    return QLineF(one.x, one.y, other.x, other.y);
}

} // namespace

ClipHandles::ClipHandles(SceneView& view)
    : m_View(view)
{
    m_View.installEventFilter(this);
}

bool ClipHandles::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove: return move(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        if (!m_Drag || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
            return m_Drag.has_value();
        m_Drag.reset();
        return true;
    case QEvent::Leave: hover({}); return false;
    case QEvent::Wheel: return turnWheel(static_cast<QWheelEvent&>(*event));
    default: return false;
    }
}

std::vector<ClipHandles::Handle> ClipHandles::handles() const
{
    std::vector<Handle> handles;
    const std::optional<SceneBox>& box = m_View.getModel().getClipBox().shown();
    const SceneCamera& camera = m_View.getCamera();
    for (std::size_t face = 0; box && face < ClipBox::NUM_FACES; ++face) {
        const SceneCamera::Pixel pixel = camera.project(middleOfFace(*box, face), m_View.viewSize());
        if (camera.isOrthographic() || pixel.depth > 0)
            handles.push_back({face, {pixel.x, pixel.y}, pixel.depth});
    }
    std::stable_sort(
        handles.begin(), handles.end(), [](const Handle& a, const Handle& b) { return a.depth > b.depth; });
    return handles;
}

std::optional<std::size_t> ClipHandles::faceAt(const QPointF& place) const
{
    const std::vector<Handle> all = handles();
    const auto found = std::find_if(all.rbegin(), all.rend(), [&place](const Handle& handle) {
        return std::hypot(handle.place.x() - place.x(), handle.place.y() - place.y()) <= REACH;
    });
    return found != all.rend() ? std::optional(found->face) : std::nullopt;
}

bool ClipHandles::press(const QMouseEvent& event)
{
    if (m_Drag)
        return true;
    const std::optional<std::size_t> face = faceAt(event.localPos());
    if (!face || event.button() != Qt::LeftButton)
        return false;
    m_View.setFocus();
    m_View.hover({});
    m_Drag = Drag{*face, middleOfFace(*m_View.getModel().getClipBox().shown(), *face), 0, 0, event.localPos().y()};
    m_Drag->held = placeOnAxis(*m_Drag, event.localPos());
    return true;
}

// Of the axis through the middle of the face, counted from there: what the pointer is nearest to. Where one looks along
// the axis, the pointer moves it up and down.
double ClipHandles::placeOnAxis(const Drag& drag, const QPointF& pixel) const
{
    const SceneCamera& camera = m_View.getCamera();
    const Ray ray = rayThrough(camera, m_View.viewSize(), {pixel.x(), pixel.y()});
    const Vector3d axis = axisOf(drag.face);
    const Vector3d away = ray.start - drag.middle;
    const double square = dot(ray.direction, ray.direction);
    const double along = dot(axis, ray.direction);
    const double across = square - along * along;
    if (across > 1e-3 * square)
        return (square * dot(axis, away) - along * dot(ray.direction, away)) / across;
    const double depth = camera.project(drag.middle, m_View.viewSize()).depth;
    return (drag.startY - pixel.y()) * camera.unitsPerPixel(depth, m_View.viewSize());
}

bool ClipHandles::move(const QMouseEvent& event)
{
    if (!m_Drag) {
        hover(event.buttons() ? std::nullopt : faceAt(event.localPos()));
        return false;
    }
    const double moved = placeOnAxis(*m_Drag, event.localPos()) - m_Drag->held;
    const double last = std::exchange(m_Drag->moved, moved);
    const std::size_t face = m_Drag->face;
    m_View.changeClipBox([&](ClipBox& clip, const SceneBox&) {
        if (clip.slabAxis() == face / 2 && !(event.modifiers() & Qt::ShiftModifier))
            clip.moveSlab(moved - last);
        else
            clip.moveFace(face, m_Drag->middle[face / 2] + moved);
    });
    return true;
}

bool ClipHandles::turnWheel(const QWheelEvent& event)
{
    const ClipBox& clip = m_View.getModel().getClipBox();
    if (!clip.shown() || !clip.slabAxis() || !(event.modifiers() & Qt::ShiftModifier))
        return false;
    const double steps =
        (event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x()) / DEGREES_OF_STEP;
    m_View.changeClipBox([steps](ClipBox& changed, const SceneBox&) {
        changed.moveSlab(0.5 * steps * changed.thicknessOf(*changed.slabAxis()));
    });
    return true;
}

void ClipHandles::hover(std::optional<std::size_t> face)
{
    if (face == m_Hovered)
        return;
    m_Hovered = face;
    face ? m_View.setCursor(Qt::SizeAllCursor) : m_View.unsetCursor();
    m_View.update();
}

void ClipHandles::drawEdges(QPainter& painter, const SceneLook& look) const
{
    QColor colour = look.ink;
    colour.setAlphaF(0.6);
    painter.setPen(QPen(colour, 1));
    const std::array<Vector3d, 8> corners = m_View.getModel().getClipBox().shown()->corners();
    for (std::size_t corner = 0; corner < corners.size(); ++corner)
        for (const std::size_t bit : {1U, 2U, 4U})
            if (!(corner & bit))
                if (const auto line =
                        seenPart(m_View.getCamera(), m_View.viewSize(), corners[corner], corners[corner | bit]))
                    painter.drawLine(*line);
}

void ClipHandles::draw(QPainter& painter, const SceneLook& look) const
{
    if (!m_View.getModel().getClipBox().shown())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawEdges(painter, look);
    for (const Handle& handle : handles()) {
        const RGBA8& colour = AXIS_COLOURS[handle.face / 2];
        painter.setPen(QPen(look.ground, 1.5));
        painter.setBrush(QColor(colour[0], colour[1], colour[2]));
        const double radius = handle.face == m_Hovered ? RADIUS + 2 : RADIUS;
        painter.drawEllipse(handle.place, radius, radius);
    }
    painter.restore();
}

} // namespace tavo
