#include "vireo/show/scenes/sceneTexts.h"

#include <QFontMetricsF>

#include "tavo/base/text/printable.h"

namespace tavo {

std::vector<SceneText> textsOf(SceneModel& model, const SceneCamera& camera, const SceneCamera::Size& size,
    const QFont& font, double scale, const QPaintDevice* device)
{
    constexpr double OFFSET = 5; // in pixels, beside its position
    constexpr std::size_t LONGEST = 1000;
    const QFontMetricsF metrics(font, device);
    std::vector<SceneText> texts;
    for (const SceneModel::Placed& placed : model.visibleItems()) {
        const std::string* const text = placed.item->text();
        const Vector3d position = placed.matrix * placed.item->origin();
        if (!text || !model.getClipBox().isSeen(position))
            continue;
        const SceneCamera::Pixel place = camera.project(position, size);
        if (!camera.isOrthographic() && place.depth <= 0)
            continue;
        SceneText seen{placed, QString::fromStdString(printable(*text, LONGEST)), {}, {}};
        seen.baseline = QPointF(place.x + OFFSET * scale, place.y + 0.5 * (metrics.ascent() - metrics.descent()));
        seen.box = QRectF(seen.baseline - QPointF(0, metrics.ascent()),
            QSizeF(metrics.horizontalAdvance(seen.text), metrics.height()));
        texts.push_back(seen);
    }
    return texts;
}

} // namespace tavo
