#include <QApplication>

#include "benchmarks/peers/Scene.h"
#include "benchmarks/support/View.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/gui/Camera.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/volume/SliceVolumeRenderer.h"

#include <GL/glu.h>

namespace vireo_bench {

namespace {

// Draws into the view.
class VireoScene : public Scene
{
public:
    void draw() override
    {
        View::ofSize(SIZE, SIZE);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        drawLoaded();
        glFinish();
    }
    Bytes pixels() override { return View::ofSize(SIZE, SIZE).pixels(); }

protected:
    virtual void drawLoaded() = 0;
};

void lookFrom(const Viewpoint& from)
{
    glMatrixMode(GL_PROJECTION);
    gluPerspective(from.degrees, 1, from.nearest, from.farthest);
    glMatrixMode(GL_MODELVIEW);
    gluLookAt(from.eye[0], from.eye[1], from.eye[2], 0, 0, 0, from.up[0], from.up[1], from.up[2]);
}

class VireoHead : public VireoScene
{
public:
    void load() override {}
    void unload() override
    {
        View::ofSize(SIZE, SIZE);
        m_Renderer.disposeTextures();
    }
    void setWindow(const DensityWindow& window) override
    {
        m_Window = window;
        m_Renderer.invalidate();
    }

protected:
    void drawLoaded() override
    {
        lookFrom(VIEWPOINT_OF_HEAD);
        m_Renderer.drawVolume(&head(), VIEWPOINT_OF_HEAD.eye * -1.0f, CHANNEL, DensityWindow::map, &m_Window);
    }

private:
    DensityWindow m_Window;
    tavo::SliceVolumeRenderer m_Renderer;
};

class VireoPoints : public VireoScene
{
public:
    void load() override
    {
        m_Displayer = std::make_unique<tavo::GLPointCloudDisplayer>(pointSetOf(m_Points).release());
        m_Displayer->setShowCoords(false);
    }
    void unload() override { m_Displayer.reset(); }

protected:
    void drawLoaded() override
    {
        lookFrom(VIEWPOINT_OF_POINTS);
        m_Displayer->drawGL(nullptr, m_Camera);
    }

private:
    Points m_Points = randomPoints(NUM_POINTS);
    std::unique_ptr<tavo::GLPointCloudDisplayer> m_Displayer;
    tavo::Camera m_Camera;
};

// The image in a texture, on a square that fills the picture.
class VireoImage : public VireoScene
{
public:
    void load() override
    {
        m_Texture = std::make_unique<tavo::GLTexture2D>(&View::context());
        m_Texture->createFromImage(m_Image, false);
    }
    void unload() override { m_Texture.reset(); }

protected:
    void drawLoaded() override
    {
        m_Texture->bind(0);
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glBegin(GL_QUADS);
        for (const auto& [s, t] : {std::pair(0, 0), {1, 0}, {1, 1}, {0, 1}}) {
            glTexCoord2i(s, t);
            glVertex2i(2 * s - 1, 2 * t - 1);
        }
        glEnd();
        glDisable(GL_TEXTURE_2D);
    }

private:
    tavo::RGBAImage m_Image = makeImage(IMAGE_SIDE);
    std::unique_ptr<tavo::GLTexture2D> m_Texture;
};

// The curves in the debug window's view, which shows them already.
class VireoCurves : public Scene
{
public:
    VireoCurves()
    {
        VireoCurves::load();
        QApplication::processEvents();
        constexpr unsigned int HEIGHT_512 = 10;
        tavo::DebugWindow& window = *tavo::debugOutput.getWindow();
        window.findChild<tavo::GLEventDisplayerWidget*>()->setSizeIndex(HEIGHT_512);
        window.resize(window.width() + SIZE - view().width(), window.height());
        for (int i = 0; i < 5; ++i) // until the camera has come to rest
            QApplication::processEvents();
    }
    void load() override { tavo::debugOutputGraphs("curves", m_Curves, m_Colours); }
    void unload() override {}
    void draw() override
    {
        QApplication::processEvents();
        view().makeCurrent();
        glFinish();
    }
    Bytes pixels() override
    {
        const QImage picture = view().grabFrameBuffer().convertToFormat(QImage::Format_RGBA8888).mirrored();
        return {picture.constBits(), picture.constBits() + picture.sizeInBytes()};
    }

private:
    static QGLWidget& view()
    {
        return *tavo::debugOutput.getWindow()->findChild<tavo::GLEventDisplayerWidget*>()->findChild<QGLWidget*>();
    }

    Curves m_Curves = makeCurves(NUM_CURVES, NUM_SAMPLES);
    std::vector<tavo::RGBA8> m_Colours = makeColours(NUM_CURVES);
};

const Showings showings = {
    {Subject::HEAD, "vireo", std::make_unique<VireoHead>},
    {Subject::POINTS, "vireo", std::make_unique<VireoPoints>},
    {Subject::IMAGE, "vireo", std::make_unique<VireoImage>},
    {Subject::CURVES, "vireo", std::make_unique<VireoCurves>},
};

} // namespace

} // namespace vireo_bench
