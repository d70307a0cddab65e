#pragma once

#include <QPoint>
#include <QSize>
#include <memory>
#include <optional>
#include <vector>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneContext.h"
#include "vireo/show/scenes/SceneModel.h"
#include "vireo/show/scenes/ScenePick.h"

namespace tavo {

// Finds what is under the pointer, by drawing the few pixels around it: of several things, what is nearest to it there.
// Nothing is kept for it, and nothing is drawn twice.
class ScenePicker
{
public:
    // Finds nothing if there is no context.
    ScenePicker(std::shared_ptr<SceneContext> context, SceneModel& model)
        : m_Context(std::move(context))
        , m_Model(model)
    {}

    // What is drawn at a pixel of a picture of that size, or within a few pixels of it.
    std::optional<ScenePick> pick(const SceneCamera& camera, const QSize& size, const QPoint& pixel);

    // Its place in the scene, as exact as depths are. Needs no ARB programs.
    std::optional<Vector3d> placeAt(const SceneCamera& camera, const QSize& size, const QPoint& pixel);

private:
    std::optional<ScenePick> sectionAt(const SceneCamera& camera, const QSize& size, const QPoint& pixel);
    std::optional<PickTarget::Pixels> draw(const SceneCamera& camera, const QSize& size, const QPoint& pixel);
    std::optional<ScenePick> volumeBefore(std::optional<ScenePick> pick, const Ray& ray, const SceneCamera& camera);
    void drawItems(PickTarget& target, const SceneCamera& camera, const PointShare& share);

    std::shared_ptr<SceneContext> m_Context;
    SceneModel& m_Model;
    std::vector<SceneModel::Placed> m_Drawn; // in the order in which they were drawn
};

} // namespace tavo
