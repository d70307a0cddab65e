#pragma once

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <array>
#include <optional>

#include "vireo/show/scenes/SceneCamera.h"

class QPainter;

namespace tavo {

class SceneView;

// Three axes in a corner of a scene, which turn with its camera. Their ends have letters; where the pointer is on one,
// it is lit, and a click looks from there. A click on the end from which one looks already looks from the other one.
class OrientationMark : public QObject
{
public:
    explicit OrientationMark(SceneView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

    // The end that the pointer is on.
    std::optional<SceneCamera::Side> hovered() const { return m_Hovered; }

    static void draw(QPainter& painter, const QRectF& room, const SceneCamera& camera, const QColor& ground,
        std::optional<SceneCamera::Side> lit);

    // An end of an axis, in the picture.
    struct End
    {
        SceneCamera::Side side; // from which it is near
        int axis;
        bool isPositive;
        QPointF place;
        double nearness; // towards the eye, -1 to 1
    };

    // The farthest first.
    static std::array<End, 6> endsOf(const SceneCamera& camera, const QRectF& room);

    // The nearest end at a place.
    static std::optional<End> endAt(const QPointF& place, const SceneCamera& camera, const QRectF& room);

private:
    std::optional<SceneCamera::Side> sideAt(const QPointF& place) const;
    void hover(std::optional<SceneCamera::Side> side);
    void lookFrom(SceneCamera::Side side);

    SceneView& m_View;
    std::optional<SceneCamera::Side> m_Hovered;
    std::optional<SceneCamera::Side> m_Pressed;
};

} // namespace tavo
