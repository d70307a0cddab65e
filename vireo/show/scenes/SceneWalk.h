#pragma once

#include <QObject>
#include <QTimer>
#include <optional>
#include <set>

#include "tavo/base/math/vectors.h"
#include "vireo/show/scenes/SceneRenderer.h"
#include "vireo/show/scenes/Stopwatch.h"

class QKeyEvent;
class QMouseEvent;
class QPainter;
class QWheelEvent;

namespace tavo {

class SceneView;

// Walks through a scene, if a person wants to: g begins and ends it, as Esc does. For as long as they are down, w and s
// or the arrows move the eye ahead and back, a and d to the left and the right, e and q up and down, Shift faster. The
// left button looks around, and the wheel changes the speed, which begins with the size of the scene. The camera stays
// where it is then.
class SceneWalk : public QObject
{
public:
    explicit SceneWalk(SceneView& view);

    bool eventFilter(QObject* object, QEvent* event) override;

    bool isOn() const { return m_IsOn; }

    // In units of the scene in a second.
    double getSpeed() const;

    // Says what the keys do, while it is on.
    void draw(QPainter& painter, const SceneLook& look) const;

private:
    void switchOn(bool isOn);
    bool pressKey(const QKeyEvent& event);
    bool releaseKey(const QKeyEvent& event);
    bool press(const QMouseEvent& event);
    bool move(const QMouseEvent& event);
    void step();

    SceneView& m_View;
    bool m_IsOn = false;
    double m_Speed = 1;
    std::set<int> m_KeysDown;
    bool m_IsFast = false;
    std::optional<QPointF> m_LookedFrom; // the pointer, while it looks around
    QTimer m_Steps;
    Stopwatch m_SinceStep;
};

} // namespace tavo
