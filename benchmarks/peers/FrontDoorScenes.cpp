#include <QPainter>
#include <cmath>
#include <numbers>

#include "benchmarks/peers/Scene.h"
#include "benchmarks/scenes/headVolume.h"
#include "tavo/base/objects/PException.h"
#include "vireo/show/Tuples.h"
#include "vireo/show/scenes/SceneRenderer.h"

namespace vireo_bench {

namespace {

// A camera of scenes, which all see as much.
tavo::SceneCamera cameraAt(const Viewpoint& from)
{
    constexpr double DEGREES = 180 / std::numbers::pi;
    const double distance = length(from.eye);
    tavo::SceneCamera camera;
    camera.setDirection(std::atan2(from.eye[0], -from.eye[1]) * DEGREES, std::asin(from.eye[2] / distance) * DEGREES);
    camera.zoom(camera.getDistance() / distance, camera.getPivot());
    return camera;
}

// A scene of the front door, as its window shows it: read back, and painted.
class FrontDoorScene : public Scene
{
public:
    FrontDoorScene(tavo::ItemUpdate item, const Viewpoint& from, bool hasDepthLight)
        : m_Item(std::move(item))
        , m_Camera(cameraAt(from))
        , m_Look{Qt::black, Qt::white, QFont(), 1, false, hasDepthLight}
    {
        if (!m_Context)
            throw tavo::PException("there is no context");
    }
    void load() override { send(m_Item); }
    void unload() override
    {
        tavo::SceneUpdate update;
        update.clear();
        m_Model.apply(update);
    }
    void setWindow(const DensityWindow& window) override { send(headLook(window)); }
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
    void send(tavo::ItemUpdate item)
    {
        tavo::SceneUpdate update;
        update.items["item"] = std::move(item);
        m_Model.apply(update);
    }

    tavo::ItemUpdate m_Item;
    std::shared_ptr<tavo::SceneContext> m_Context = tavo::SceneContext::get();
    tavo::SceneModel m_Model{"scene"};
    tavo::SceneRenderer m_Renderer{m_Context, m_Model};
    tavo::SceneCamera m_Camera;
    tavo::SceneLook m_Look;
    QImage m_Screen{SIZE, SIZE, QImage::Format_RGB32};
};

tavo::ItemUpdate whiteCloudOf(const Points& points)
{
    tavo::ItemUpdate item;
    item.shape.emplace();
    item.shape->points.numbers = tavo::Points(points);
    item.colour = tavo::RGBA8(255, 255, 255, 255);
    item.size = 1;
    return item;
}

std::function<std::unique_ptr<Scene>()> showing(
    const std::function<tavo::ItemUpdate()>& make, const Viewpoint& from, bool hasDepthLight = false)
{
    return [=] { return std::make_unique<FrontDoorScene>(make(), from, hasDepthLight); };
}

const Showings showings = {
    {Subject::CLOUD, "vireo", showing([] { return whiteCloudOf(randomPoints(NUM_POINTS)); }, VIEWPOINT_OF_CLOUD)},
    {Subject::SCAN, "vireo", showing([] { return whiteCloudOf(scannedPoints()); }, VIEWPOINT_OF_CLOUD, true)},
    {Subject::VOLUME, "vireo", showing([] { return headVolume(); }, VIEWPOINT_OF_VOLUME)},
};

} // namespace

} // namespace vireo_bench
