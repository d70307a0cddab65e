#pragma once

#include <QFontMetricsF>
#include <QPointF>
#include <QRectF>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneModel.h"
#include "vireo/show/scenes/ScenePick.h"
#include "vireo/show/scenes/SceneRenderer.h"

class QPainter;

namespace tavo {

// What a scene says about places in it: of what the pointer is on, and of up to two places that were clicked, with the
// distance between them. Places are in the scene, so that marks stay on what they mark, however it is seen.
class SceneMarks
{
public:
    void hover(std::optional<ScenePick> pick);

    // Of three pins, the oldest one goes.
    void pin(ScenePick pick);

    // Takes the last pin back; what went for it returns.
    void takeBackPin();

    // Returns whether there were any pins.
    bool clear();

    // After what was sent: marks move with what moves their items. Those of items that are no more seen go.
    void follow(SceneModel& model);

    // In the font of the painter, as large as the picture.
    void paint(QPainter& painter, const SceneCamera& camera, const QSize& size, const SceneLook& look) const;

    // Without what the pointer is on.
    void paintPins(QPainter& painter, const SceneCamera& camera, const QSize& size, const SceneLook& look) const;

    const std::optional<ScenePick>& hovered() const { return m_Hovered; }
    const std::vector<ScenePick>& pins() const { return m_Pins; }

private:
    std::optional<ScenePick> m_Hovered;
    std::vector<ScenePick> m_Pins;
    std::vector<ScenePick> m_PinsBefore; // the last one came
};

// The distance between two places, and its parts along the axes, without digits that the uncertainty of the places
// along an axis leaves open.
std::vector<std::string> distanceLines(const Vector3d& from, const Vector3d& to, double uncertainty = 0);

// Lines that fit into a room: those that are too long end in dots, and if there are too many a last one says how many
// more.
QStringList fittedLines(const std::vector<std::string>& lines, const QFontMetricsF& metrics, const QSizeF& room);

// Where a label of a size is put beside a place: within the view, and if it can be not over those that are there.
QRectF placeOfLabel(const QSizeF& size, const QPointF& beside, const QRectF& view, const std::vector<QRectF>& others);

} // namespace tavo
