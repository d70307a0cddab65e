#include <QGLWidget>
#include <QImage>
#include <gmock/gmock.h>
#include <memory>
#include <string>

#include "tavo/platform/wgl.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/userEvents.h"
#include "vireo/context/GLContext.h"
#include "vireo/geometry/GLHelper.h"

namespace tavo {
namespace {

using testing::ElementsAre;

// Leaves all drawing to the test.
class Canvas : public QGLWidget
{
public:
    Canvas()
    {
        resize(128, 64);
        setAutoBufferSwap(false);
    }
};

// The rectangle of the pixels that are not black.
QRect drawnRectangle(const QImage& image)
{
    QRect rectangle;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).value() > 0)
                rectangle |= QRect(x, y, 1, 1);
        }
    }
    return rectangle;
}

} // namespace

class GLHelperTextGLTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_Canvas.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_Canvas));
        m_Canvas.makeCurrent();
        m_Context = std::make_unique<GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, &m_Canvas);
        glViewport(0, 0, m_Canvas.width(), m_Canvas.height());
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glColor3f(1, 1, 1);
    }

    Canvas m_Canvas;
    std::unique_ptr<GLContext> m_Context;
};

TEST_F(GLHelperTextGLTest, HasTheWidgetDrawTheText)
{
    EXPECT_THAT(callsOf([this] {
        GLHelper::drawText(m_Context.get(), {-0.5f, 0.25f, 0.1f}, "X axis");
    }),
        ElementsAre("QGLWidget::renderText(-0.5, 0.25, 0.10000000149011612, \"X axis\", QFont())"))
        << "the coordinates are widened to double";
}

TEST_F(GLHelperTextGLTest, TakesTheTextAsACString)
{
    EXPECT_THAT(callsOf([this] {
        GLHelper::drawText(m_Context.get(), {0, 0, 0}, std::string("seen\0unseen", 11));
    }),
        ElementsAre("QGLWidget::renderText(0, 0, 0, \"seen\", QFont())"));
}

TEST_F(GLHelperTextGLTest, DrawsVisiblePixelsAtThePosition)
{
    GLHelper::drawText(m_Context.get(), {0, 0, 0}, "Text");
    const QRect drawn = drawnRectangle(m_Canvas.grabFrameBuffer());
    const double scale = m_Canvas.devicePixelRatioF();
    EXPECT_FALSE(drawn.isEmpty());
    EXPECT_GE(drawn.left(), 63 * scale) << "the text starts at the projected position, the middle";
    EXPECT_LE(drawn.left(), 68 * scale);
    EXPECT_LE(drawn.bottom(), 33 * scale) << "and stands on it";
    EXPECT_GE(drawn.bottom(), 28 * scale);
}

TEST_F(GLHelperTextGLTest, DrawsNothingForNoText)
{
    GLHelper::drawText(m_Context.get(), {0, 0, 0}, "");
    EXPECT_TRUE(drawnRectangle(m_Canvas.grabFrameBuffer()).isEmpty());
}

} // namespace tavo
