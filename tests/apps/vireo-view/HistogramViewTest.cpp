#include "apps/vireo-view/HistogramView.h"

#include <QImage>
#include <gtest/gtest.h>

#include "tests/apps/vireo-view/TestVolume.h"

namespace vireo_view {
namespace {

const QColor BACKGROUND(40, 44, 60);

// Two hundred pixels for densities from 0 to 3, a hundred for the opacity.
class HistogramViewTest : public testing::Test
{
protected:
    HistogramViewTest()
    {
        m_View.resize(200, 100);
        // Nine samples, 1 + 1 + 1 + 7 = 10 with the columns' own.
        m_View.setHistogram(Histogram(makeVolume({9, 1, 1}, {0, 0, 0, 0, 0, 0, 0, 0, 0})));
    }

    QColor at(int x, int y) { return m_View.grab().toImage().pixelColor(x, y); }

    HistogramView m_View{nullptr};
};

bool isYellow(const QColor& colour)
{
    return colour.red() > 180 && colour.green() > 150 && colour.blue() < 120;
}

TEST_F(HistogramViewTest, IsEmptyWithoutSamples)
{
    m_View.setHistogram(Histogram());
    const QImage picture = m_View.grab().toImage();
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ASSERT_EQ(picture.pixelColor(x, y), BACKGROUND);
}

TEST_F(HistogramViewTest, HasColumnsInTheColoursOfTheirDensities)
{
    // Of 99, 0, 9 and 9 samples, 2 : 0 : 1 : 1 in logarithms.
    std::vector<float> densities(99, 0.0f);
    densities.insert(densities.end(), 9, 2.0f);
    densities.insert(densities.end(), 9, 3.0f);
    m_View.setHistogram(Histogram(makeVolume({static_cast<int>(densities.size()), 1, 1}, densities)));
    TransferFunction function;
    function.setWindow(0);
    function.setLevel(2.5);
    function.setColourMap(1);
    function.setOpacity(0);
    m_View.setTransferFunction(function);
    EXPECT_EQ(at(25, 5), QColor(Qt::black)) << "to the upper edge";
    EXPECT_EQ(at(75, 90), BACKGROUND);
    EXPECT_EQ(at(125, 45), BACKGROUND);
    EXPECT_EQ(at(125, 55), QColor(Qt::black)) << "half as high";
    EXPECT_EQ(at(175, 45), BACKGROUND);
    EXPECT_EQ(at(175, 55), QColor(Qt::white)) << "above the level";
}

TEST_F(HistogramViewTest, HasALineOfTheOpacity)
{
    m_View.setHistogram(Histogram(makeVolume({2, 1, 1}, {0, 200})));
    TransferFunction function;
    function.setWindow(100);
    function.setLevel(100);
    function.setOpacity(0.5);
    m_View.setTransferFunction(function);
    EXPECT_TRUE(isYellow(at(25, 99))) << "nothing below the window";
    EXPECT_TRUE(isYellow(at(100, 74)) || isYellow(at(100, 75))) << "half of it in the middle";
    EXPECT_TRUE(isYellow(at(175, 49)) || isYellow(at(175, 50))) << "all of it above";
    EXPECT_FALSE(isYellow(at(175, 20)));
}

} // namespace
} // namespace vireo_view
