#include <QGLWidget>
#include <QPainter>
#include <QScopeGuard>
#include <gmock/gmock.h>

#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/objects/PException.h"
#include "tavo/platform/wgl.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/offscreen/GLImage.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

#include <GL/gl.h>

namespace tavo {
namespace {

using testing::Each;
using testing::ElementsAre;

void drawRectangle(float left, float right, float depth)
{
    glBegin(GL_QUADS);
    for (const auto& [x, y] : {std::pair(left, -0.7f), {right, -0.7f}, {right, 0.5f}, {left, 0.5f}})
        glVertex3f(x, y, depth);
    glEnd();
}

// What objects draw; each draws to the window last.
class Scene
{
public:
    explicit Scene(QGLWidget& view)
        : m_View(view)
    {}

    // Something that needs a depth and a stencil buffer, all over the view.
    static void drawAll()
    {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glLoadIdentity(); // the projection
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glClear(GL_STENCIL_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glColor3f(1, 0, 0);
        drawRectangle(-0.9f, 0.3f, 0.0f);
        glColor3f(0, 1, 0);
        drawRectangle(-0.2f, 0.9f, 0.5f); // behind
        glEnable(GL_STENCIL_TEST);
        glStencilFunc(GL_EQUAL, 1, 1);
        glColor3f(1, 1, 1);
        drawRectangle(-1.0f, 1.0f, -0.5f); // nowhere
        glPopAttrib();
    }

    void drawWithRenderTexture()
    {
        start();
        if (!m_Target) {
            m_Target = std::make_unique<GLRenderTextureFBO>(m_Context.get());
            m_Target->create(64, 64, 4, 1);
        }
        m_Target->activate();
        glClearColor(0, 0, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        m_Target->deactivate();
        drawAll();
        glEnable(GL_TEXTURE_2D);
        m_Target->bind(0);
        glColor3f(1, 1, 1);
        drawRectangle(-0.5f, 0.0f, -0.2f);
        m_Target->unbind();
        glDisable(GL_TEXTURE_2D);
    }

    void drawImage()
    {
        start();
        if (!m_Cache)
            m_Cache = std::make_unique<GLRenderTextureCache>(m_Context.get());
        GLImage image;
        image.setup(m_Cache.get(), 32, 32, 4, true, false, false, false, false);
        image.activate();
        glClearColor(1, 1, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        image.deactivate();
        image.drawToScreen();
        drawAll();
    }

    void drawText()
    {
        drawAll();
        glColor3f(1, 1, 1);
        m_View.renderText(10, 30, "Text");
        drawRectangle(0.5f, 0.6f, 0.0f);
    }

    void drawAfterMakingCurrent()
    {
        m_View.makeCurrent();
        drawAll();
    }

    void drawAndRelease()
    {
        drawAll();
        m_View.doneCurrent();
    }

    // Leaves behind what reading must not heed.
    void drawAndLeaveSettings()
    {
        glPixelStorei(GL_PACK_ROW_LENGTH, 1000);
        glPixelStorei(GL_PACK_SKIP_PIXELS, 3);
        glPixelTransferf(GL_RED_SCALE, 0.5f);
        glPixelTransferf(GL_GREEN_BIAS, 0.5f);
        glReadBuffer(GL_FRONT);
        drawAll();
    }

    static void resetSettings()
    {
        glPixelStorei(GL_PACK_ROW_LENGTH, 0);
        glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
        glPixelTransferf(GL_RED_SCALE, 1);
        glPixelTransferf(GL_GREEN_BIAS, 0);
        glReadBuffer(GL_BACK);
    }

private:
    void start()
    {
        if (!m_Context)
            m_Context = std::make_unique<GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
        ASSERT_TRUE(m_Context->activate());
    }

    QGLWidget& m_View;
    std::unique_ptr<GLContext> m_Context;
    std::unique_ptr<GLRenderTextureFBO> m_Target;
    std::unique_ptr<GLRenderTextureCache> m_Cache;
};

struct Drawing
{
    const char* name;
    void (*draw)(Scene&);
};

void PrintTo(const Drawing& drawing, std::ostream* stream)
{
    *stream << drawing.name;
}

const Drawing DRAWINGS[] = {
    {"all", [](Scene&) { Scene::drawAll(); }},
    {"render texture", [](Scene& scene) { scene.drawWithRenderTexture(); }},
    {"image", [](Scene& scene) { scene.drawImage(); }},
    {"text", [](Scene& scene) { scene.drawText(); }},
    {"made current", [](Scene& scene) { scene.drawAfterMakingCurrent(); }},
    {"released", [](Scene& scene) { scene.drawAndRelease(); }},
    {"settings", [](Scene& scene) { scene.drawAndLeaveSettings(); }},
};

class ViewPictureGLTest : public testing::Test
{
protected:
    ViewPictureGLTest()
    {
        m_Widget.setSizeIndex(7);
        m_Widget.resize(203, 300);
        m_Widget.move(100, 100);
        m_Widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_Widget));
        m_View = m_Widget.findChild<QGLWidget*>();
        m_Scene = std::make_unique<Scene>(*m_View);
    }

    ~ViewPictureGLTest() override
    {
        m_View->makeCurrent();
        m_Scene.reset();
    }

    TestEventObject& show(const Drawing& drawing)
    {
        auto* const object = new TestEventObject;
        object->whenDrawn = [this, &drawing] { drawing.draw(*m_Scene); };
        m_Widget.setGLEventObject(object, false);
        return *object;
    }

    // What a paint leaves in the window.
    QImage window()
    {
        struct OpenView : QGLWidget
        {
            using QGLWidget::paintGL;
        };
        m_View->makeCurrent();
        (m_View->*&OpenView::paintGL)();
        m_View->makeCurrent();
        Scene::resetSettings();
        return m_View->grabFrameBuffer().convertToFormat(QImage::Format_RGB888);
    }

    static int numDrawn(const QImage& picture)
    {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += (picture.pixel(x, y) & 0xFFFFFFu) != 0;
        return count;
    }

    GLEventDisplayerWidget m_Widget{nullptr, Qt::WindowFlags()};
    QGLWidget* m_View;
    std::unique_ptr<Scene> m_Scene;
};

class AnyViewPictureGLTest : public ViewPictureGLTest, public testing::WithParamInterface<Drawing>
{};

INSTANTIATE_TEST_SUITE_P(Drawings, AnyViewPictureGLTest, testing::ValuesIn(DRAWINGS));

TEST_P(AnyViewPictureGLTest, IsWhatTheWindowShows)
{
    show(GetParam());
    const QImage picture = grabPicture(&m_Widget);
    EXPECT_EQ(picture.size(), m_View->size());
    EXPECT_GT(numDrawn(picture), picture.width() * picture.height() / 3);
    EXPECT_EQ(picture, window());
    EXPECT_EQ(grabPicture(&m_Widget), picture) << "the second time, too";
    EXPECT_EQ(window(), picture);
}

// Entry points stand for the whole process: the driver seems to have none of these.
class WithoutPbuffersGLTest : public AnyViewPictureGLTest
{
protected:
    WithoutPbuffersGLTest()
    {
        window(); // fetches the entry points, if this is the first view
        m_CreatePbuffer = std::exchange(wglCreatePbufferARB, nullptr);
    }
    ~WithoutPbuffersGLTest() override { wglCreatePbufferARB = m_CreatePbuffer; }

    decltype(wglCreatePbufferARB) m_CreatePbuffer;
};

INSTANTIATE_TEST_SUITE_P(Drawings, WithoutPbuffersGLTest, testing::ValuesIn(DRAWINGS));

TEST_P(WithoutPbuffersGLTest, IsWhatTheWindowShows)
{
    show(GetParam());
    const QImage picture = grabPicture(&m_Widget);
    EXPECT_GT(numDrawn(picture), picture.width() * picture.height() / 3);
    EXPECT_EQ(picture, window());
}

TEST_F(ViewPictureGLTest, IsFramebufferZeroWhileItIsDrawn)
{
    std::vector<int> framebuffers;
    std::vector<HDC> drawables;
    const Drawing drawing{"", [](Scene&) {}};
    show(drawing).whenDrawn = [&] {
        GLint framebuffer = -1;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer);
        framebuffers.push_back(framebuffer);
        drawables.push_back(wglGetCurrentDC());
    };
    m_View->makeCurrent();
    const HDC windowDC = wglGetCurrentDC();
    grabPicture(&m_Widget);
    EXPECT_THAT(framebuffers, Each(0));
    EXPECT_THAT(drawables, ElementsAre(windowDC, testing::Ne(windowDC)))
        << "what the object makes in the first paint finds the window as it will be";
}

TEST_F(ViewPictureGLTest, IsReadToMemoryWhateverBufferIsBound)
{
    GLuint buffer = 0;
    const Drawing drawing{"", [](Scene&) {}};
    show(drawing).whenDrawn = [&] {
        glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        if (!buffer)
            glGenBuffersARB(1, &buffer);
        glBindBufferARB(GL_PIXEL_PACK_BUFFER_ARB, buffer);
        glBufferDataARB(GL_PIXEL_PACK_BUFFER_ARB, 16, nullptr, GL_STREAM_READ_ARB);
    };
    const QImage picture = grabPicture(&m_Widget);
    QImage red = picture;
    red.fill(Qt::red);
    EXPECT_EQ(picture, red);
    m_View->makeCurrent();
    GLint bound = 0;
    glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING_ARB, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(buffer)) << "as the object left it";
}

TEST_F(ViewPictureGLTest, IsNotTakenWhileAnotherOneIs)
{
    int numPaints = 0;
    const Drawing drawing{"", [](Scene&) {}};
    show(drawing).whenDrawn = [&] {
        glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        if (++numPaints == 2) { // which is the picture
            EXPECT_THROW(grabPicture(&m_Widget), PException);
        }
    };
    QCoreApplication::processEvents();
    numPaints = 0;
    const QImage picture = grabPicture(&m_Widget);
    EXPECT_EQ(numPaints, 2);
    QImage red = picture;
    red.fill(Qt::red);
    EXPECT_EQ(picture, red);
}

} // namespace
} // namespace tavo
