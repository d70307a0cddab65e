#pragma once

#include <QObject>
#include <QPointF>
#include <optional>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/show/scenes/SceneRenderer.h"

class QMouseEvent;
class QPainter;
class QWheelEvent;

namespace tavo {

class SceneView;

// The edges of the clip box of a scene, and on each of its faces a handle, by which the left button moves it along its
// axis. By the handles of its axis a slab is moved as a whole, or with Shift only the face; Shift with the wheel moves
// it too, by half of its thickness each step.
class ClipHandles : public QObject
{
public:
    explicit ClipHandles(SceneView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

    void draw(QPainter& painter, const SceneLook& look) const;

    // A handle in the picture.
    struct Handle
    {
        std::size_t face;
        QPointF place;
        double depth;
    };

    // Those that are in front of the eye, the farthest first.
    std::vector<Handle> handles() const;

private:
    struct Drag
    {
        std::size_t face;
        Vector3d middle; // of the face, at first
        double held;     // where on the axis it is held, from there
        double moved = 0;
        double startY = 0; // of the pointer
    };

    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    bool turnWheel(const QWheelEvent& event);
    std::optional<std::size_t> faceAt(const QPointF& place) const;
    double placeOnAxis(const Drag& drag, const QPointF& pixel) const;
    void hover(std::optional<std::size_t> face);
    void drawEdges(QPainter& painter, const SceneLook& look) const;

    SceneView& m_View;
    std::optional<std::size_t> m_Hovered;
    std::optional<Drag> m_Drag;
};

} // namespace tavo
