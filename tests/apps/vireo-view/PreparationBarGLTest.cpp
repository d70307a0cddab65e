#include <QBoxLayout>
#include <QGLWidget>
#include <QScreen>
#include <QWindow>
#include <functional>
#include <gtest/gtest.h>

#include "apps/vireo-view/PreparationBar.h"
#include "tests/support/userEvents.h"

namespace vireo_view {
namespace {

// A view that does something more while it paints.
class View : public QGLWidget
{
public:
    View() { setFixedSize(200, 100); }

    std::function<void()> whilePainting;

protected:
    void paintGL() override
    {
        glClear(GL_COLOR_BUFFER_BIT);
        if (whilePainting)
            whilePainting();
    }
};

// A window with a view of 200x100 pixels in it, and 20 below it.
class PreparationBarGLTest : public testing::Test
{
protected:
    PreparationBarGLTest()
    {
        auto* const layout = new QVBoxLayout(&m_Window);
        layout->setContentsMargins(0, 0, 0, 20);
        layout->addWidget(m_View);
        m_Window.move(50, 50);
    }

    void SetUp() override
    {
        m_Window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_Window));
        QTest::qWait(50);
        m_Empty = belowView();
    }

    // What the screen shows below the view.
    QImage belowView()
    {
        return m_Window.screen()
            ->grabWindow(m_Window.winId(), 0, 100, 200, 6)
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }

    // What it shows while the view paints and says how far it is.
    QImage shownWhilePainting(unsigned int numDone, unsigned int numAll, int delay = 0)
    {
        QImage shown;
        m_View->whilePainting = [&] {
            PreparationBar bar(*m_View, delay);
            bar.update(numDone, numAll);
            shown = belowView();
        };
        m_View->repaint();
        EXPECT_FALSE(shown.isNull());
        m_View->whilePainting = nullptr;
        return shown;
    }

    QWidget m_Window;
    View* m_View = new View;
    QImage m_Empty;
};

TEST_F(PreparationBarGLTest, IsShownAtOnceWhileTheViewPaints)
{
    const QImage quarter = shownWhilePainting(1, 4);
    const QImage half = shownWhilePainting(2, 4);
    EXPECT_NE(quarter, m_Empty);
    EXPECT_EQ(half.pixel(50, 3), quarter.pixel(25, 3)) << "done";
    EXPECT_NE(half.pixel(80, 3), quarter.pixel(80, 3)) << "done, and to do";
    EXPECT_EQ(half.pixel(150, 3), quarter.pixel(150, 3)) << "to do";
}

TEST_F(PreparationBarGLTest, GoesOnWithThePreparation)
{
    std::vector<QImage> shown;
    m_View->whilePainting = [&] {
        PreparationBar bar(*m_View, 0);
        for (const unsigned int numDone : {0u, 50u, 100u}) {
            bar.update(numDone, 100);
            shown.push_back(belowView());
        }
    };
    m_View->repaint();
    ASSERT_GE(shown.size(), 3u);
    EXPECT_NE(shown[0].pixel(50, 3), shown[1].pixel(50, 3));
    EXPECT_NE(shown[1].pixel(150, 3), shown[2].pixel(150, 3));
    m_View->whilePainting = nullptr;
    QTest::qWait(50);
    EXPECT_EQ(belowView(), m_Empty) << "gone afterwards";
}

TEST_F(PreparationBarGLTest, DoesNotComeWhereThePreparationIsShort)
{
    EXPECT_EQ(shownWhilePainting(1, 2, 3600 * 1000), m_Empty);
}

TEST_F(PreparationBarGLTest, IgnoresThatThereIsNothingToDo)
{
    shownWhilePainting(0, 0);
}

TEST_F(PreparationBarGLTest, DoesNotComeWhereThereIsNoRoomOrNoWindow)
{
    QGLWidget alone;
    PreparationBar(alone, 0).update(1, 2);
    EXPECT_TRUE(alone.findChildren<QProgressBar*>().empty());
    m_Window.layout()->setContentsMargins(0, 0, 0, 0);
    m_Window.layout()->setSizeConstraint(QLayout::SetFixedSize);
    QTest::qWait(50);
    PreparationBar bar(*m_View, 0);
    bar.update(1, 2);
    EXPECT_TRUE(m_Window.findChildren<QProgressBar*>().empty());
}

} // namespace
} // namespace vireo_view
