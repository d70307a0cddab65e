#pragma once

#include <QGLWidget>
#include <QPushButton>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestEventObject.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"

namespace tavo {

class GLEventDisplayerWidgetGLTest : public testing::Test
{
protected:
    GLEventDisplayerWidgetGLTest()
    {
        TestEventObject::s_NumUpdates = 0;
        TestEventObject::s_NumDrawn = 0;
        m_Widget = std::make_unique<GLEventDisplayerWidget>(nullptr, Qt::WindowFlags());
        m_View = m_Widget->findChild<QGLWidget*>();
    }

    ~GLEventDisplayerWidgetGLTest() override
    {
        m_Widget.reset();
        EXPECT_EQ(TestEventObject::s_NumLiving, 0) << "every object was freed";
    }

    void showWidget()
    {
        m_Widget->move(100, 100);
        m_Widget->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_Widget.get()));
        settle();
    }

    // Lets all paints happen that were asked for, by the widget or by the window system.
    static void settle()
    {
        constexpr int QUIET_ROUNDS = 5;
        for (int quiet = 0; quiet < QUIET_ROUNDS; ++quiet) {
            const int before = TestEventObject::s_NumDrawn;
            QTest::qWait(5);
            if (TestEventObject::s_NumDrawn != before)
                quiet = 0;
        }
    }

    void show(GLEventObject* object, bool updateExisting = true)
    {
        m_Widget->setGLEventObject(object, updateExisting);
        settle();
    }

    // The calls of a paint, whether or not the view can be seen, without those around it of Qt and of what keeps
    // current what was.
    std::vector<std::string> callsOfPaint()
    {
        struct OpenView : QGLWidget
        {
            using QGLWidget::paintGL;
        };
        m_View->makeCurrent();
        return callsOf([this] { (m_View->*&OpenView::paintGL)(); });
    }

    QPushButton* button(const char* name) { return m_Widget->findChild<QPushButton*>(name); }
    void click(const char* name) { clickMouse(button(name)); }
    int viewHeight() const { return m_View->height(); }

    static std::string newText(std::size_t before) { return debugOutput.getText().substr(before); }

    std::unique_ptr<GLEventDisplayerWidget> m_Widget;
    QGLWidget* m_View;
};

} // namespace tavo
