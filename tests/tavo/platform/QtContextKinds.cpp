#include <EGL/egl.h>
#include <QApplication>
#include <QByteArray>
#include <QGLWidget>
#include <array>
#include <gtest/gtest.h>

#include "tests/tavo/platform/WglGLTest.h"

#include <GL/glx.h>

namespace tavo {

namespace {

class QtContexts : public ContextSource
{
public:
    static std::unique_ptr<ContextSource> make()
    {
        if (!qApp || QGuiApplication::platformName() != "xcb")
            return nullptr;
        return std::make_unique<QtContexts>();
    }

    QtContexts()
    {
        for (auto& widget : m_Widgets) {
            widget = std::make_unique<QGLWidget>(nullptr, m_Widgets[0].get());
            widget->resize(16, 16);
            widget->show();
        }
        QApplication::processEvents();
        m_Widgets[1]->doneCurrent();
        m_Widgets[0]->doneCurrent();
    }

    bool makeCurrent(int index) override
    {
        m_Widgets[index]->makeCurrent();
        return m_Widgets[1]->isSharing() && getNativeCurrentContext() != nullptr;
    }

    bool hasSurfaces() const override { return true; }

private:
    std::array<std::unique_ptr<QGLWidget>, 2> m_Widgets;
};

const ContextKind widgets = {"Widget", "an X server with GLX and Qt's xcb platform", QtContexts::make};

INSTANTIATE_TEST_SUITE_P(Qt, WglGLTest, testing::Values(widgets), WglGLTest::nameOf);

// The environment of this program chooses it; without this test both choices could test the same.
TEST(QtContextKindsGLTest, AreMadeThroughTheChosenWindowSystem)
{
    const auto contexts = QtContexts::make();
    if (!contexts)
        GTEST_SKIP() << "needs " << widgets.needs;
    ASSERT_TRUE(contexts->makeCurrent(0));
    const bool choseEgl = qgetenv("QT_XCB_GL_INTEGRATION") == "xcb_egl";
    EXPECT_EQ(eglGetCurrentContext() != EGL_NO_CONTEXT, choseEgl);
    EXPECT_EQ(glXGetCurrentContext() != nullptr, !choseEgl);
}

} // namespace

} // namespace tavo
