#include "vireo/show/plots/PlotCanvas.h"

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>
#include <qwt_plot.h>
#include <qwt_plot_item.h>

#include "tests/support/userEvents.h"

namespace tavo {

namespace {

// Fills the plot with a colour, and counts how often.
class Fill : public QwtPlotItem
{
public:
    void draw(QPainter* painter, const QwtScaleMap&, const QwtScaleMap&, const QRectF& canvas) const override
    {
        painter->fillRect(canvas, m_Colour);
        ++m_NumDrawn;
    }

    void setColour(const QColor& colour) { m_Colour = colour; }
    int numDrawn() const { return m_NumDrawn; }

private:
    QColor m_Colour = Qt::red;
    mutable int m_NumDrawn = 0;
};

class PlotCanvasTest : public testing::Test
{
protected:
    PlotCanvasTest()
    {
        m_Plot.setCanvas(new PlotCanvas);
        m_Plot.setAutoReplot(false);
        m_Plot.resize(200, 100);
        m_Fill->attach(&m_Plot);
        m_Plot.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_Plot));
        QApplication::processEvents();
        replot();
    }

    void replot()
    {
        m_Plot.replot();
        QApplication::processEvents();
    }

    void paintAgain()
    {
        m_Plot.canvas()->update();
        QApplication::processEvents();
    }

    QColor middle() { return m_Plot.canvas()->grab().toImage().pixelColor(50, 20); }

    QwtPlot m_Plot;
    Fill* m_Fill = new Fill; // the plot owns it
};

TEST_F(PlotCanvasTest, DrawsWhatIsNewAtOnce)
{
    const int before = m_Fill->numDrawn();
    replot();
    EXPECT_EQ(m_Fill->numDrawn(), before + 1);
    m_Fill->setColour(Qt::blue);
    replot();
    EXPECT_EQ(m_Fill->numDrawn(), before + 2);
    EXPECT_EQ(middle(), QColor(Qt::blue));
}

TEST_F(PlotCanvasTest, KeepsWhatIsPaintedAgainUntilItIsNew)
{
    const int before = m_Fill->numDrawn();
    for (int i = 0; i < 3; ++i)
        paintAgain();
    EXPECT_EQ(m_Fill->numDrawn(), before + 1) << "into what is kept";
    EXPECT_EQ(middle(), QColor(Qt::red));
    EXPECT_EQ(m_Fill->numDrawn(), before + 1);
    m_Fill->setColour(Qt::blue);
    replot();
    paintAgain();
    EXPECT_EQ(middle(), QColor(Qt::blue));
    m_Plot.resize(300, 200);
    EXPECT_EQ(m_Plot.canvas()->grab().toImage().pixelColor(m_Plot.canvas()->rect().bottomRight()), QColor(Qt::blue));
}

} // namespace

} // namespace tavo
