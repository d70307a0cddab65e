#include <QPainter>

#include "benchmarks/peers/Scene.h"
#include "tavo/base/objects/PException.h"
#include "vireo/show/Tuples.h"
#include "vireo/show/scenes/SceneRenderer.h"

namespace vireo_bench {

namespace {

// A scene of the front door, as its window shows it: read back, and painted.
class VireoCloud : public Scene
{
public:
    VireoCloud(Points points, bool hasDepthLight)
        : m_Points(std::move(points))
        , m_Look{Qt::black, Qt::white, QFont(), 1, false, hasDepthLight}
    {
        if (!m_Context)
            throw tavo::PException("there is no context");
        m_Camera.setDirection(AZIMUTH_OF_CLOUD, ELEVATION_OF_CLOUD);
        m_Camera.zoom(1 / DISTANCE_OF_CLOUD, m_Camera.getPivot());
    }
    void load() override
    {
        tavo::SceneUpdate update;
        tavo::ItemUpdate& item = update.items["cloud"];
        item.shape.emplace();
        item.shape->points.numbers = tavo::Points(m_Points);
        item.colour = tavo::RGBA8(255, 255, 255, 255);
        item.size = 1;
        m_Model.apply(update);
    }
    void unload() override
    {
        tavo::SceneUpdate update;
        update.clear();
        m_Model.apply(update);
    }
    void draw() override
    {
        const QImage picture = m_Renderer.draw(m_Camera, m_Screen.size(), m_Look);
        QPainter(&m_Screen).drawImage(0, 0, picture);
    }
    Bytes pixels() override
    {
        const QImage picture = m_Screen.convertToFormat(QImage::Format_RGBA8888).mirrored();
        return {picture.constBits(), picture.constBits() + picture.sizeInBytes()};
    }

private:
    Points m_Points;
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    tavo::SceneModel m_Model{"scene"};
    tavo::SceneRenderer m_Renderer{m_Context, m_Model};
    tavo::SceneCamera m_Camera;
    tavo::SceneLook m_Look;
    QImage m_Screen{SIZE, SIZE, QImage::Format_RGB32};
};

const Showings showings = {
    {Subject::CLOUD, "vireo", [] { return std::make_unique<VireoCloud>(randomPoints(NUM_POINTS), false); }},
    {Subject::SCAN, "vireo", [] { return std::make_unique<VireoCloud>(scannedPoints(), true); }},
};

} // namespace

} // namespace vireo_bench
