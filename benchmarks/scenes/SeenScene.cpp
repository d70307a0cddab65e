#include "benchmarks/scenes/SeenScene.h"

#include <QApplication>

#include "tavo/base/objects/PException.h"
#include "vireo/show/scenes/sceneOverlays.h"

namespace vireo_bench {

SeenScene::SeenScene(tavo::ItemUpdate item)
    : m_Look{Qt::white, Qt::black, QFont(), 1}
{
    if (!m_Context)
        throw tavo::PException("there is no context");
    send(std::move(item));
    tavo::fitWithOverlays(m_Camera, {VIEW_SIZE, QFontMetricsF(QApplication::font()), false}, m_Model.box(), {});
    draw();
}

void SeenScene::send(tavo::ItemUpdate item)
{
    tavo::SceneUpdate update;
    update.items["item"] = std::move(item);
    m_Model.makeRoom(update.replaced());
    m_Model.apply(update);
}

} // namespace vireo_bench
