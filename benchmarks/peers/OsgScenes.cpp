#include <osg/Geometry>
#include <osg/Notify>
#include <osg/Texture2D>
#include <osg/TransferFunction>
#include <osgViewer/Viewer>
#include <osgVolume/FixedFunctionTechnique>
#include <osgVolume/Property>
#include <osgVolume/Volume>
#include <osgVolume/VolumeTile>

#include "benchmarks/peers/PeerWidget.h"

namespace vireo_bench {

namespace {

const osg::Vec4 WHITE(1, 1, 1, 1);

osg::Vec3f vec(const tavo::Vector3f& v)
{
    return {v[0], v[1], v[2]};
}

// Draws into a widget of Qt's, as vireo does.
class OsgScene : public Scene
{
public:
    OsgScene()
    {
        osg::setNotifyLevel(osg::WARN);
        m_Viewer->setThreadingModel(osgViewer::Viewer::SingleThreaded);
        m_Viewer->setUseConfigureAffinity(false); // else this thread, and what others start in it, has one processor
        m_Viewer->setUpViewerAsEmbeddedInWindow(0, 0, SIZE, SIZE);
        m_Viewer->getCamera()->setClearColor({0, 0, 0, 0});
        OsgScene::unload();
        m_Widget.makeCurrent();
        m_Viewer->realize();
        OsgScene::draw();
    }
    explicit OsgScene(const Viewpoint& from)
        : OsgScene()
    {
        osg::Camera& camera = *m_Viewer->getCamera();
        camera.setComputeNearFarMode(osg::Camera::DO_NOT_COMPUTE_NEAR_FAR);
        camera.setProjectionMatrixAsPerspective(from.degrees, 1, from.nearest, from.farthest);
        camera.setViewMatrixAsLookAt(vec(from.eye), {0, 0, 0}, vec(from.up));
    }
    ~OsgScene() override { m_Widget.makeCurrent(); }

    void unload() override { m_Viewer->setSceneData(new osg::Group); }
    void draw() override
    {
        m_Widget.makeCurrent();
        m_Viewer->frame();
        glFinish();
    }
    Bytes pixels() override { return m_Widget.pixels(); }

protected:
    void show(osg::Node* node) { m_Viewer->setSceneData(node); }

private:
    PeerWidget m_Widget;
    osg::ref_ptr<osgViewer::Viewer> m_Viewer = new osgViewer::Viewer;
};

// The head by the slices of the fixed-function technique, a millimetre apart. It does not know transfer functions,
// which are applied to its data before.
class OsgHead : public OsgScene
{
public:
    explicit OsgHead(const Viewpoint& from = VIEWPOINT_OF_HEAD)
        : OsgScene(from)
    {
        const tavo::Vector3i& extends = head().getExtends();
        m_Densities->setImage(extends[0], extends[1], extends[2], GL_LUMINANCE32F_ARB, GL_LUMINANCE, GL_FLOAT,
            head().getPointSet()->getData(), osg::Image::NO_DELETE);
        setWindow(DensityWindow());
    }
    void load() override
    {
        const tavo::Vector3f& min = head().getBoundingBox().getMin();
        const tavo::Vector3f extent = head().getBoundingBox().getExtent();
        const auto place = osg::Matrix::scale(vec(extent)) * osg::Matrix::translate(vec(min));
        m_Layer = new osgVolume::ImageLayer(osgVolume::applyTransferFunction(m_Densities, m_Colours));
        m_Layer->addProperty(new osgVolume::AlphaFuncProperty(0));
        m_Layer->setLocator(new osgVolume::Locator(place));
        auto* const technique = new osgVolume::FixedFunctionTechnique;
        technique->setNumSlices(static_cast<unsigned int>(vec(extent).length()));
        m_Tile = new osgVolume::VolumeTile;
        m_Tile->setLayer(m_Layer);
        m_Tile->setLocator(m_Layer->getLocator());
        m_Tile->setVolumeTechnique(technique);
        show(m_Tile);
    }
    void unload() override
    {
        OsgScene::unload();
        m_Tile = nullptr;
        m_Layer = nullptr;
    }
    void setWindow(const DensityWindow& window) override
    {
        osg::TransferFunction1D::ColorMap colours;
        for (const float density : {window.black, window.white}) {
            const tavo::RGBA8 colour = window.look(density);
            colours[density] = osg::Vec4(colour[0], colour[1], colour[2], colour[3]) / 255;
        }
        m_Colours->assign(colours);
        if (!m_Tile)
            return;
        m_Layer->setImage(osgVolume::applyTransferFunction(m_Densities, m_Colours));
        m_Tile->setDirty(true);
    }

private:
    osg::ref_ptr<osg::Image> m_Densities = new osg::Image;
    osg::ref_ptr<osg::TransferFunction1D> m_Colours = new osg::TransferFunction1D;
    osg::ref_ptr<osgVolume::ImageLayer> m_Layer;
    osg::ref_ptr<osgVolume::VolumeTile> m_Tile;
};

class OsgPoints : public OsgScene
{
public:
    explicit OsgPoints(const Viewpoint& from = VIEWPOINT_OF_POINTS, Points points = randomPoints(NUM_POINTS))
        : OsgScene(from)
        , m_Points(std::move(points))
    {}
    void load() override
    {
        static_assert(sizeof(osg::Vec3) == sizeof(tavo::Vector3f));
        const auto* const points = reinterpret_cast<const osg::Vec3*>(m_Points.data());
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        geometry->setUseDisplayList(false);
        geometry->setUseVertexBufferObjects(true);
        geometry->setVertexArray(new osg::Vec3Array(points, points + m_Points.size()));
        geometry->setColorArray(new osg::Vec4Array(1, &WHITE), osg::Array::BIND_OVERALL);
        geometry->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, static_cast<int>(m_Points.size())));
        geometry->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        show(geometry);
    }

private:
    Points m_Points;
};

// The image in a texture, on a square that fills the picture.
class OsgImage : public OsgScene
{
public:
    void load() override
    {
        osg::ref_ptr<osg::Image> image = new osg::Image;
        image->setImage(static_cast<int>(m_Image.getWidth()), static_cast<int>(m_Image.getHeight()), 1, GL_RGBA8,
            GL_BGRA, GL_UNSIGNED_BYTE, m_Image.getPixels().front().data(), osg::Image::NO_DELETE);
        osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
        texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
        osg::ref_ptr<osg::Geometry> square = osg::createTexturedQuadGeometry({-1, -1, 0}, {2, 0, 0}, {0, 2, 0});
        square->getOrCreateStateSet()->setTextureAttributeAndModes(0, texture);
        square->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        osg::ref_ptr<osg::Camera> camera = new osg::Camera; // matrices of its own: none
        camera->setReferenceFrame(osg::Camera::ABSOLUTE_RF);
        camera->addChild(square);
        show(camera);
    }

private:
    tavo::RGBAImage m_Image = makeImage(IMAGE_SIDE);
};

const Showings showings = {
    {Subject::HEAD, "OpenSceneGraph's slices", [] { return std::make_unique<OsgHead>(); }},
    {Subject::VOLUME, "OpenSceneGraph's slices", [] { return std::make_unique<OsgHead>(VIEWPOINT_OF_VOLUME); }},
    {Subject::POINTS, "OpenSceneGraph", [] { return std::make_unique<OsgPoints>(); }},
    {Subject::CLOUD, "OpenSceneGraph", [] { return std::make_unique<OsgPoints>(VIEWPOINT_OF_CLOUD); }},
    {Subject::SCAN, "OpenSceneGraph", [] { return std::make_unique<OsgPoints>(VIEWPOINT_OF_CLOUD, scannedPoints()); }},
    {Subject::IMAGE, "OpenSceneGraph", std::make_unique<OsgImage>},
};

} // namespace

} // namespace vireo_bench
