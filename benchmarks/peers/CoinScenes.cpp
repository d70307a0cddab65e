#include <Inventor/SoDB.h>
#include <Inventor/SoSceneManager.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoPointSet.h>
#include <Inventor/nodes/SoSeparator.h>

#include "benchmarks/peers/PeerWidget.h"

namespace vireo_bench {

namespace {

SbVec3f vec(const tavo::Vector3f& v)
{
    return {v[0], v[1], v[2]};
}

// Draws into a widget of Qt's, as vireo does.
class CoinPoints : public Scene
{
public:
    CoinPoints(const Viewpoint& from, Points points)
        : m_Points(std::move(points))
    {
        m_Root->ref();
        m_Root->addChild(m_Camera);
        m_Camera->position = vec(from.eye);
        m_Camera->pointAt({0, 0, 0}, vec(from.up));
        m_Camera->heightAngle = static_cast<float>(from.degrees * M_PI / 180);
        m_Camera->nearDistance = static_cast<float>(from.nearest);
        m_Camera->farDistance = static_cast<float>(from.farthest);
        m_Manager.setWindowSize({SIZE, SIZE});
        m_Manager.setSize({SIZE, SIZE});
        m_Manager.setBackgroundColor({0, 0, 0});
        m_Manager.setSceneGraph(m_Root);
        CoinPoints::draw();
    }
    ~CoinPoints() override
    {
        m_Widget.makeCurrent();
        m_Manager.setSceneGraph(nullptr);
        m_Root->unref();
    }
    void load() override
    {
        auto* const light = new SoLightModel;
        light->model = SoLightModel::BASE_COLOR;
        auto* const colour = new SoBaseColor;
        colour->rgb.setValue(1, 1, 1);
        auto* const coordinates = new SoCoordinate3;
        static_assert(sizeof(SbVec3f) == sizeof(tavo::Vector3f));
        coordinates->point.setValues(
            0, static_cast<int>(m_Points.size()), reinterpret_cast<const SbVec3f*>(m_Points.data()));
        for (SoNode* const node : {static_cast<SoNode*>(light), static_cast<SoNode*>(colour),
                 static_cast<SoNode*>(coordinates), static_cast<SoNode*>(new SoPointSet)})
            m_Root->addChild(node);
    }
    void unload() override
    {
        while (m_Root->getNumChildren() > 1)
            m_Root->removeChild(1);
    }
    void draw() override
    {
        m_Widget.makeCurrent();
        m_Manager.render(true, true);
        glFinish();
    }
    Bytes pixels() override { return m_Widget.pixels(); }

private:
    // Before there is any node.
    struct Library
    {
        Library() { SoDB::init(); }
    };

    Points m_Points;
    Library m_Library;
    PeerWidget m_Widget;
    SoSeparator* m_Root = new SoSeparator;
    SoPerspectiveCamera* m_Camera = new SoPerspectiveCamera;
    SoSceneManager m_Manager;
};

const Showings showings = {
    {Subject::CLOUD, "Coin", [] { return std::make_unique<CoinPoints>(VIEWPOINT_OF_CLOUD, randomPoints(NUM_POINTS)); }},
    {Subject::SCAN, "Coin", [] { return std::make_unique<CoinPoints>(VIEWPOINT_OF_CLOUD, scannedPoints()); }},
};

} // namespace

} // namespace vireo_bench
