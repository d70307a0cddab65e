#include <QApplication>
#include <QPalette>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <ostream>
#include <qwt_plot.h>
#include <string>

#include "tests/vireo/show/plots/curves.h"
#include "vireo/show/plots/PlotView.h"

namespace tavo {

namespace {

const QColor INK(255, 0, 255); // which nothing else of a plot has

bool isInk(const QColor& colour)
{
    return colour.red() > colour.green() + 25 && colour.blue() > colour.green() + 25;
}

int numInked(const QImage& picture)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            number += isInk(picture.pixelColor(x, y));
    return number;
}

// What is drawn where, on a light and on a dark ground.
class PlotPicturesTest : public testing::TestWithParam<const char*>
{
protected:
    PlotPicturesTest()
    {
        QPalette palette = m_View.palette();
        const bool isDark = GetParam() == std::string("dark");
        palette.setColor(QPalette::Base, isDark ? QColor(20, 20, 20) : QColor(250, 250, 250));
        palette.setColor(QPalette::Window, palette.color(QPalette::Base));
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText})
            palette.setColor(role, isDark ? Qt::white : Qt::black);
        m_View.setPalette(palette);
        m_View.resize(600, 400);
        m_View.show();
    }

    void send(CurveUpdate curve, const std::function<void(PlotUpdate&)>& change = nullptr)
    {
        PlotUpdate update;
        curve.name = "a";
        curve.colour = INK.rgba();
        update.curve("a") = std::move(curve);
        if (change)
            change(update);
        m_View.apply(update);
        QApplication::processEvents();
        m_Picture = m_View.getPlot().canvas()->grab().toImage();
    }

    QPoint pixelOf(double x, double y, PlotSight::Axis yAxis = PlotSight::Y)
    {
        return {qRound(m_View.pixelMap(PlotSight::X).toPixel(x)), qRound(m_View.pixelMap(yAxis).toPixel(y))};
    }

    // At a place or beside it.
    bool isInkAt(double x, double y, PlotSight::Axis yAxis = PlotSight::Y)
    {
        const QPoint place = pixelOf(x, y, yAxis);
        for (int row = -1; row <= 1; ++row)
            for (int column = -1; column <= 1; ++column)
                if (m_Picture.valid(place + QPoint(column, row)) &&
                    isInk(m_Picture.pixelColor(place + QPoint(column, row))))
                    return true;
        return false;
    }

    // Of the picture, of the colour of texts.
    int numOfText(const QRect& part)
    {
        int number = 0;
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                number += m_Picture.pixelColor(x, y) == m_View.palette().color(QPalette::Text);
        return number;
    }

    PlotView m_View{"test"};
    QImage m_Picture; // of the canvas
};

TEST_P(PlotPicturesTest, ALineLeadsFromSampleToSample)
{
    send(samples({0, 2, 3, 4}, {0, 4, NAN, 1}));
    EXPECT_TRUE(isInkAt(1, 2));
    EXPECT_FALSE(isInkAt(1, 1) || isInkAt(2.5, 2.5)) << "a gap is one";
    EXPECT_TRUE(isInkAt(4, 1)) << "a sample behind a gap is a mark";
    EXPECT_EQ(m_Picture.pixelColor(pixelOf(0.37, 3.8)), m_View.palette().color(QPalette::Base));
}

TEST_P(PlotPicturesTest, PointsHaveNoLineBetweenThem)
{
    send(samples({0, 2, 4}, {0, 4, 0}, CurveKind::Points));
    EXPECT_TRUE(isInkAt(0, 0) && isInkAt(2, 4) && isInkAt(4, 0));
    EXPECT_FALSE(isInkAt(1, 2));
}

TEST_P(PlotPicturesTest, StepsHoldAndJump)
{
    send(samples({0, 2, 4}, {0, 4, 2}, CurveKind::Steps));
    EXPECT_TRUE(isInkAt(1, 0) && isInkAt(2, 2) && isInkAt(3, 4) && isInkAt(4, 3));
    EXPECT_FALSE(isInkAt(1, 2) || isInkAt(3, 3));
}

TEST_P(PlotPicturesTest, BarsStandOnZeroApart)
{
    send(samples({1, 2, 3}, {4, -2, 1}, CurveKind::Bars));
    EXPECT_TRUE(isInkAt(1, 2) && isInkAt(2, -1) && isInkAt(3, 0.5));
    EXPECT_FALSE(isInkAt(1.5, 0.5) || isInkAt(2, 1) || isInkAt(3, 2));
}

TEST_P(PlotPicturesTest, AHistogramCountsWithoutGaps)
{
    CurveUpdate curve;
    curve.samples = CurveSamples{{}, numbers({1, 2, 2, 3, 3, 3}), {}, CurveKind::Histogram};
    send(std::move(curve));
    EXPECT_TRUE(isInkAt(1, 0.5) && isInkAt(2, 1.5) && isInkAt(2.48, 1.5) && isInkAt(3, 2.5));
    EXPECT_FALSE(isInkAt(1, 1.5) || isInkAt(2, 2.5));
}

TEST_P(PlotPicturesTest, ABandFillsWhatIsBetweenItsEdges)
{
    CurveUpdate curve = samples({0, 2, 4}, {2, 4, 2}, CurveKind::Band);
    curve.samples->low = numbers({0, 1, 0});
    send(std::move(curve));
    EXPECT_TRUE(isInkAt(1, 1) && isInkAt(2, 3.5) && isInkAt(3, 2.5));
    EXPECT_FALSE(isInkAt(1, 3.5) || isInkAt(2, 0.5));
    const QColor inside = m_Picture.pixelColor(pixelOf(2.13, 2.63));
    EXPECT_TRUE(isInk(inside) && inside != INK) << "what is below it is seen through it";
}

TEST_P(PlotPicturesTest, LinesAcrossAreDashedAndNamed)
{
    send(samples({0, 4}, {0, 4}), [](PlotUpdate& update) {
        update.addLine({true, 1, "start"});
        update.addLine({false, 3, "limit"});
    });
    const int column = pixelOf(1, 0).x();
    const int numDashed = numOfText({column - 1, 0, 3, m_Picture.height()});
    EXPECT_GT(numDashed, m_Picture.height() / 4);
    EXPECT_LT(numDashed, 2 * m_Picture.height());
    EXPECT_GT(numOfText({0, pixelOf(0, 3).y() - 1, m_Picture.width(), 3}), m_Picture.width() / 4);
    EXPECT_GT(numOfText({column + 4, 0, 40, 20}), 4) << "its label";
}

TEST_P(PlotPicturesTest, ManySamplesDoNotHideLinesAcross)
{
    std::vector<double> x(4000);
    std::vector<double> y(4000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = 0.001 * static_cast<double>(i);
        y[i] = i % 2 ? 4 : 0;
    }
    send(samples(x, y), [](PlotUpdate& update) { update.addLine({false, 2, "limit"}); });
    EXPECT_GT(numOfText({0, pixelOf(0, 2).y() - 1, m_Picture.width(), 3}), m_Picture.width() / 4);
}

TEST_P(PlotPicturesTest, ASecondAxisCountsAtTheRight)
{
    CurveUpdate curve = samples({0, 4}, {1000, 2000});
    curve.style = "y2";
    send(std::move(curve), [](PlotUpdate& update) {
        update.curve("b").samples = CurveSamples{numbers({0, 4}), numbers({1, 0}), {}, CurveKind::Line};
        update.y2.name = AxisUpdate::Name{"speed", "rpm"};
    });
    EXPECT_TRUE(isInkAt(1, 1250, PlotSight::Y2) && isInkAt(3, 1750, PlotSight::Y2));
    const QImage axis = m_View.axisWidget(PlotSight::Y2)->grab().toImage();
    m_Picture = axis;
    EXPECT_GT(axis.width(), 20);
    EXPECT_GT(numOfText(axis.rect()), 100) << "its numbers";
}

TEST_P(PlotPicturesTest, APowerIsStraightOnLogarithmicAxes)
{
    send(samples({1, 10, 100, 1000}, {1, 100, 1e4, 1e6}), [](PlotUpdate& update) {
        update.x.isLog = true;
        update.y.isLog = true;
    });
    const QPoint first = pixelOf(1, 1);
    const QPoint last = pixelOf(1000, 1e6);
    EXPECT_NEAR(pixelOf(10, 1).x(), first.x() + (last.x() - first.x()) / 3.0, 1);
    EXPECT_TRUE(isInkAt(std::sqrt(10), 10) && isInkAt(30, 900) && isInkAt(300, 9e4));
    EXPECT_FALSE(isInkAt(30, 9e4));
}

TEST_P(PlotPicturesTest, TimeIsWrittenBelow)
{
    const double noon = 1'700'000'000;
    send(samples({noon, noon + 3600}, {0, 1}), [](PlotUpdate& update) { update.x.isTime = true; });
    EXPECT_TRUE(isInkAt(noon + 1800, 0.5));
    const QImage axis = m_View.axisWidget(PlotSight::X)->grab().toImage();
    m_Picture = axis;
    EXPECT_GT(axis.height(), 3 * m_View.fontMetrics().height() - 10) << "times, the date and what is counted";
    EXPECT_GT(numOfText(axis.rect()), 200);
}

INSTANTIATE_TEST_SUITE_P(Grounds, PlotPicturesTest, testing::Values("light", "dark"),
    [](const auto& ground) { return std::string(ground.param); });

// Numbers that other plots are spoiled by, along either axis.
struct Hostile
{
    const char* name;
    std::vector<double> values;
    int numDrawn; // pixels, at least
};

// Names the test.
void PrintTo(const Hostile& hostile, std::ostream* stream)
{
    *stream << hostile.name;
}

class HostilePicturesTest : public testing::TestWithParam<Hostile>
{
protected:
    QImage picture(const std::vector<double>& x, const std::vector<double>& y, CurveKind kind)
    {
        PlotView view("test");
        PlotUpdate update;
        update.curve("a") = samples(x, y, kind);
        update.curves.back().name = "a";
        update.curves.back().colour = INK.rgba();
        view.apply(update);
        return view.picture({500, 300});
    }
};

TEST_P(HostilePicturesTest, AreDrawnAlongEitherAxis)
{
    const std::vector<double>& values = GetParam().values;
    std::vector<double> index(values.size());
    std::iota(index.begin(), index.end(), 0.0);
    for (const CurveKind kind : {CurveKind::Line, CurveKind::Points, CurveKind::Steps, CurveKind::Bars}) {
        const int asY = numInked(picture(index, values, kind));
        EXPECT_GE(asY, GetParam().numDrawn) << nameOf(kind);
        const int asX = numInked(picture(values, index, kind));
        EXPECT_GE(asX, GetParam().numDrawn) << nameOf(kind);
        for (const int number : {asX, asY}) // of nothing but the mark in the legend
            EXPECT_LT(number, GetParam().numDrawn == 0 ? 200 : 500 * 300 * 3 / 4) << nameOf(kind);
    }
}

const double MOST = 1.7e308;

INSTANTIATE_TEST_SUITE_P(Numbers, HostilePicturesTest,
    testing::Values(Hostile{"huge", {-MOST, MOST, 0, 1e308, -1e308}, 20}, Hostile{"large", {1e300, 2e300, 3e300}, 20},
        Hostile{"tiny", {1e-300, 2e-300, 3e-300}, 20}, Hostile{"denormal", {5e-324, 1e-310, 0, 2e-310}, 20},
        Hostile{"nan", {NAN, NAN, NAN}, 0}, Hostile{"gaps", {0, NAN, 1, NAN, 2}, 10},
        Hostile{"infinite", {INFINITY, -INFINITY, INFINITY}, 0},
        Hostile{"halfInfinite", {1, INFINITY, 2, 3, -INFINITY}, 10}, Hostile{"unsorted", {3, -1, 2, 7, 0}, 20},
        Hostile{"duplicates", {1, 1, 1, 2, 2}, 20}, Hostile{"constant", {1e300, 1e300, 1e300}, 10},
        Hostile{"zero", {0, 0, 0}, 10}, Hostile{"one", {42}, 10}, Hostile{"none", {}, 0},
        Hostile{"nearlyEqual", {1e15, 1e15 + 0.125, 1e15 + 0.25}, 10}),
    [](const auto& hostile) { return std::string(hostile.param.name); });

} // namespace

} // namespace tavo
