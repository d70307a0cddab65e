#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <memory>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneContext.h"
#include "vireo/show/scenes/SceneModel.h"

namespace tavo {

// How a scene is to look, beside its items.
struct SceneLook
{
    QColor ground;
    QColor ink; // of texts and lines
    QFont font;
    double scale = 1; // pixels of the picture for each of the widget's

    bool isGroundDark() const { return ground.lightness() < 128; }
};

// Draws a scene into pictures, in the context of all scenes.
class SceneRenderer
{
public:
    // Draws nothing if there is no context.
    SceneRenderer(std::shared_ptr<SceneContext> context, SceneModel& model)
        : m_Context(std::move(context))
        , m_Model(model)
    {}

    // Null if it cannot be drawn.
    QImage draw(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);

private:
    using Placed = SceneModel::Placed;

    void drawItems(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    void drawClouds(const SceneCamera& camera, const QSize& pixels, const SceneLook& look);
    void drawItem(const Placed& placed, const SceneCamera& camera, const SceneLook& look);
    void drawTexts(QImage& picture, const SceneCamera& camera, const SceneLook& look);

    std::shared_ptr<SceneContext> m_Context;
    SceneModel& m_Model;
};

} // namespace tavo
