#include "vireo/show/plots/PlotView.h"

#include <QApplication>
#include <QPalette>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

class PlotViewTest : public testing::Test
{
protected:
    void send(const std::string& name, const std::vector<double>& x, const std::vector<double>& y)
    {
        PlotUpdate update;
        update.curve(name).samples = CurveSamples{numbers(x), numbers(y), CurveKind::Line};
        m_View.apply(update);
    }

    int numPixels(const QColor& colour, const QSize& size = {600, 400})
    {
        const QImage picture = m_View.picture(size);
        int number = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                number += picture.pixelColor(x, y) == colour;
        return number;
    }

    PlotView m_View{"test"};
};

TEST_F(PlotViewTest, NothingIsCutOff)
{
    send("a", {0, 1'000'000}, {101'025, 101'625});
    for (const QSize& size : {QSize(240, 160), QSize(600, 400), QSize(1601, 1003)}) {
        const QImage picture = m_View.picture(size);
        const QRect inside = picture.rect().adjusted(2, 2, -2, -2);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                ASSERT_TRUE(inside.contains(x, y) || picture.pixel(x, y) == picture.pixel(0, 0)) << x << ", " << y;
    }
}

TEST_F(PlotViewTest, InfinitiesDoNotSpoilTheFit)
{
    send("a", {0, 1, 2, 3}, {1, 2, INFINITY, 3});
    const PlotSight::Range y = m_View.getSight().range(PlotSight::Y);
    EXPECT_NEAR(y.from, 0.9, 1e-9);
    EXPECT_NEAR(y.to, 3.1, 1e-9);
}

TEST_F(PlotViewTest, ColoursFollowThePalette)
{
    const QPalette before = m_View.palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, QColor(10, 20, 30));
    send("a", {0, 1}, {0, 1});
    EXPECT_EQ(numPixels(QColor(10, 20, 30)), 0);
    m_View.setPalette(dark);
    EXPECT_GT(numPixels(QColor(10, 20, 30)), 10'000);
}

TEST_F(PlotViewTest, HostileNumbersAreDrawn)
{
    const double most = 1.7e308;
    for (const std::vector<double>& y : {std::vector<double>{-most, most, 0}, {5e-324, 0, 1e-310}, {NAN, NAN, NAN},
             {INFINITY, -INFINITY, INFINITY}, {1e300, 1e300, 1e300}, {0, 0, 0}}) {
        send("a", {0, 1, 2}, y);
        send("b", y, {0, 1, 2});
        EXPECT_FALSE(m_View.picture({300, 200}).isNull());
    }
}

} // namespace

} // namespace tavo
