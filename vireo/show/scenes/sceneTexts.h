#pragma once

#include <QFont>
#include <QRectF>
#include <QString>
#include <vector>

#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneModel.h"

class QPaintDevice;

namespace tavo {

// A text of a scene in the picture.
struct SceneText
{
    SceneModel::Placed placed;
    QString text;
    QPointF baseline; // where it begins
    QRectF box;
};

// Those that are seen, the ones on top last. Of a picture with so many pixels for each of the widget's, whose font is
// as much larger.
std::vector<SceneText> textsOf(SceneModel& model, const SceneCamera& camera, const SceneCamera::Size& size,
    const QFont& font, double scale, const QPaintDevice* device);

} // namespace tavo
