#include "vireo/show/plots/PlotView.h"

#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QPalette>
#include <QTemporaryDir>
#include <QWidget>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <qwt_legend_label.h>
#include <qwt_plot.h>
#include <qwt_plot_item.h>
#include <qwt_scale_map.h>
#include <qwt_text_label.h>
#include <set>
#include <sstream>
#include <utility>

#include "tests/vireo/show/plots/curves.h"
#include "vireo/show/plots/PlotMeasure.h"

namespace tavo {

namespace {

class PlotViewTest : public testing::Test
{
protected:
    void send(const std::string& name, const std::vector<double>& x, const std::vector<double>& y)
    {
        PlotUpdate update;
        update.curve(name).samples = CurveSamples{numbers(x), numbers(y), {}, CurveKind::Line};
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

    // All of its texts.
    QString legend()
    {
        QStringList texts;
        for (const auto* label : m_View.findChildren<QwtLegendLabel*>())
            texts += label->text().text();
        return texts.join(", ");
    }

    template <typename Save>
    static std::string saved(const Save& save, const char* name = "data.csv")
    {
        const QTemporaryDir folder;
        EXPECT_EQ(save(folder.filePath(name)), "");
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
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

// Whether a line of the grid ends at each tick of x, and none elsewhere.
void expectTicksBelowTheirLines(const QImage& picture)
{
    const auto isInk = [&picture](int x, int y, int lightness) { return qGray(picture.pixel(x, y)) < lightness; };
    int backbone = picture.height() - 1; // the lowest row that is dark over half of the width
    for (int numDark = 0; numDark < picture.width() / 2 && backbone > 0; backbone -= numDark < picture.width() / 2)
        for (int x = numDark = 0; x < picture.width(); ++x)
            numDark += isInk(x, backbone, 100);
    ASSERT_GT(backbone, 10);
    const auto isTick = [&](int x) { return isInk(x, backbone + 7, 100); }; // longer than minor ticks are
    const auto isLine = [&](int x) {
        for (int y = picture.height() / 3; y < picture.height() / 2; ++y) // between title and axis, whatever the font
            if (!isInk(x, y, 240))
                return false;
        return true;
    };
    int numTicks = 0;
    const int inner = picture.width() / 5; // away from both axes of y
    for (int x = inner; x < picture.width() - inner; ++x) {
        numTicks += isTick(x);
        EXPECT_TRUE(!isTick(x) || isLine(x - 1) || isLine(x) || isLine(x + 1)) << "a tick without a line at " << x;
        EXPECT_TRUE(!isLine(x) || isTick(x - 1) || isTick(x) || isTick(x + 1)) << "a line without a tick at " << x;
    }
    EXPECT_GE(numTicks, 2);
}

TEST_F(PlotViewTest, TicksStandBelowTheLinesOfTheGridAtEverySize)
{
    PlotUpdate update;
    update.x.isTime = true;
    update.curve("b").style = "y2";
    m_View.apply(update);
    for (const double duration : {25'000, 27'000, 40'000}) {
        send("a", {1.7e9, 1.7e9 + duration}, {101'025, 101'625});
        send("b", {1.7e9, 1.7e9 + duration}, {19, 21});
        for (const QSize& size : {QSize(500, 300), QSize(900, 600), QSize(1400, 400)})
            expectTicksBelowTheirLines(m_View.picture(size));
    }
}

// What is shown again and again is not laid out again and again.
TEST_F(PlotViewTest, WhatChangesLateLooksLikeWhatWasSoFromTheBeginning)
{
    using Change = std::function<void(PlotUpdate&)>;
    const Change changes[] = {[](PlotUpdate& update) { update.title = "a title"; },
        [](PlotUpdate& update) {
            update.x.name = AxisUpdate::Name{"time", "s"};
        },
        [](PlotUpdate& update) {
            update.y.name = AxisUpdate::Name{"", "Pa"};
        },
        [](PlotUpdate& update) { update.y.isLog = true; }, [](PlotUpdate& update) { update.x.isTime = true; },
        [](PlotUpdate& update) {
            update.y.range = AxisUpdate::Range{1, 2e6};
        },
        [](PlotUpdate& update) { update.curve("a").style = "y2"; },
        [](PlotUpdate& update) {
            update.curve("b").append({1, 1});
        }};
    constexpr int OFTEN = 5;
    QWidget window; // a window must not get smaller than what is in it, which not every platform knows
    const auto show = [&window](PlotView& view, const Change& change, int numBefore) {
        view.setParent(&window);
        view.resize(500, 300);
        window.resize(500, 300);
        window.show();
        view.show();
        for (int i = 0; i < numBefore + OFTEN; ++i) {
            PlotUpdate update;
            update.curve("a").samples = samples({1, 1000}, {1, 500}).samples;
            if (i >= numBefore)
                change(update);
            view.apply(update);
            QApplication::processEvents();
        }
        return view.grab().toImage();
    };
    for (const Change& change : changes) {
        PlotView late("test");
        PlotView early("test");
        EXPECT_EQ(show(late, change, OFTEN), show(early, change, 0)) << &change - changes;
    }
}

TEST_F(PlotViewTest, SavesAllSamplesOfLongCurves)
{
    constexpr int COUNT = 99'000;
    std::vector<double> y(COUNT);
    std::iota(y.begin(), y.end(), 0);
    send("a", {}, y);
    send("b", {}, {0.5});
    QByteArray expected = "\"a x\",\"a\",\"b x\",\"b\"\n0,0,0,0.5\n";
    for (int i = 1; i < COUNT; ++i)
        expected += QByteArray::number(i) + ',' + QByteArray::number(i) + ",,\n";
    ASSERT_GT(expected.size(), 1'200'000);
    const QTemporaryDir folder;
    EXPECT_EQ(m_View.saveData(folder.filePath("data.csv")), "");
    QFile file(folder.filePath("data.csv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll() == expected);
}

TEST_F(PlotViewTest, InfinitiesDoNotSpoilTheFit)
{
    send("a", {0, 1, 2, 3}, {1, 2, INFINITY, 3});
    const PlotSight::Range y = m_View.getSight().range(PlotSight::Y);
    EXPECT_NEAR(y.from, 0.9, 1e-9);
    EXPECT_NEAR(y.to, 3.1, 1e-9);
}

TEST_F(PlotViewTest, ShortPiecesOfLargeNumbersFillTheirAxes)
{
    send("a", {1.7e9, 1.7e9 + 0.0005}, {1'234'567'890'123, 1'234'567'890'124});
    for (const bool isTime : {false, true}) {
        PlotUpdate update;
        update.x.isTime = isTime;
        m_View.apply(update);
        EXPECT_EQ(m_View.getSight().range(PlotSight::X).from, 1.7e9) << isTime;
        EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 1.7e9 + 0.0005) << isTime;
    }
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 1'234'567'890'123, 0.1);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).to, 1'234'567'890'124, 0.1);
}

TEST_F(PlotViewTest, WhatDoublesHardlyTellFromAConstantIsInTheMiddle)
{
    send("a", {0, 1}, {0.3, std::nextafter(0.3, 1)});
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 0.27, 1e-9);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).to, 0.33, 1e-9);
}

TEST_F(PlotViewTest, AMomentHasSomeSecondsAroundIt)
{
    PlotUpdate update;
    update.x.isTime = true;
    m_View.apply(update);
    for (const double perSecond : {1., 1e3, 1e6, 1e9})
        for (const double length : {0., 1e-5}) {
            send("a", {1.7e9 * perSecond, (1.7e9 + length) * perSecond}, {1, 1});
            EXPECT_NEAR(m_View.getSight().range(PlotSight::X).from / perSecond, 1.7e9 - 2, 1e-3) << perSecond;
            EXPECT_NEAR(m_View.getSight().range(PlotSight::X).to / perSecond, 1.7e9 + 2, 1e-3) << perSecond;
        }
}

TEST_F(PlotViewTest, XHasAMarginWhereSomethingStandsAtItsEnds)
{
    const auto fittedEnd = [this](CurveKind kind, const std::vector<double>& y, const std::string& style = "") {
        PlotUpdate update;
        CurveUpdate& curve = update.curve("a");
        curve = samples({0, 1, 2, 3, 4}, y, kind);
        curve.name = "a";
        curve.style = style;
        m_View.apply(update);
        const PlotSight::Range x = m_View.getSight().range(PlotSight::X);
        EXPECT_NEAR(x.from, 4 - x.to, 1e-9);
        return x.to;
    };
    const double margin = 0.08;
    EXPECT_EQ(fittedEnd(CurveKind::Line, {1, 2, NAN, 2, 1}), 4);
    EXPECT_NEAR(fittedEnd(CurveKind::Line, {1, 2, 1, 2, 1}, "marks"), 4 + margin, 1e-9);
    EXPECT_NEAR(fittedEnd(CurveKind::Line, {1, NAN, 1, 2, 1}), 4 + margin, 1e-9);
    EXPECT_NEAR(fittedEnd(CurveKind::Line, {1, 2, 1, NAN, 1}), 4 + margin, 1e-9);
    EXPECT_NEAR(fittedEnd(CurveKind::Points, {1, 2, 1, 2, 1}), 4 + margin, 1e-9);
    EXPECT_NEAR(fittedEnd(CurveKind::Steps, {1, 2, 1, 2, 1}), 4 + margin, 1e-9);
    EXPECT_NEAR(fittedEnd(CurveKind::Bars, {1, 2, 1, 2, 1}), 4.4, 1e-9);
}

TEST_F(PlotViewTest, XHasAMarginWhereASampleStandsBesideOneWithoutX)
{
    PlotUpdate update;
    CurveUpdate& curve = update.curve("a");
    curve = samples({0, NAN, 2, 3}, {1, 2, 3, 2});
    curve.name = "a";
    m_View.apply(update);
    EXPECT_LT(m_View.getSight().range(PlotSight::X).from, 0);
}

TEST_F(PlotViewTest, MarksAtTheEndsAreNotCut)
{
    PlotUpdate update;
    CurveUpdate& curve = update.curve("a");
    curve = samples({0, 1, 2, 3}, {1, 1, 1, 1}, CurveKind::Points);
    curve.name = "a";
    curve.colour = QColor(1, 2, 3).rgba();
    m_View.apply(update);
    const QImage picture = m_View.picture({600, 400});
    std::vector<int> widths; // of the marks, from left to right
    for (int x = 0; x < picture.width(); ++x) {
        const auto isInk = [&picture](int column) {
            for (int y = 0; y < picture.height(); ++y)
                if (picture.pixel(column, y) == QColor(1, 2, 3).rgb())
                    return true;
            return false;
        };
        if (isInk(x) && !isInk(x - 1))
            widths.push_back(0);
        if (isInk(x))
            ++widths.back();
    }
    ASSERT_EQ(widths.size(), 4u);
    for (const int width : widths)
        EXPECT_GE(width, 3);
}

TEST_F(PlotViewTest, ALineBetweenTwoSamplesIsSeen)
{
    const double most = 1.7e308;
    send("a", {-most, most}, {100, 200});
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 95, 1e-9) << "no axis is long enough for both";
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).to, 205, 1e-9);
    send("a", {0, 1}, {100, 200});
    m_View.getSight().choose(PlotSight::X, {0.4, 0.6});
    m_View.showChoice();
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 95, 1e-9);
    m_View.getSight().choose(PlotSight::X, {1.4, 1.6});
    m_View.showChoice();
    EXPECT_EQ(m_View.getSight().range(PlotSight::Y).to, 1) << "there is nothing";
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

TEST_F(PlotViewTest, EveryKindIsDrawn)
{
    const QColor ink(255, 0, 255); // which nothing else of a plot has
    std::set<QByteArray> pictures;
    for (const CurveKind kind : {CurveKind::Line, CurveKind::Points, CurveKind::Steps, CurveKind::Bars,
             CurveKind::Histogram, CurveKind::Band}) {
        PlotUpdate update;
        update.clear();
        CurveUpdate& curve = update.curve("a");
        curve = samples({0, 1, 2, 3}, {1, 3, 2, 2.5}, kind);
        curve.name = "a";
        curve.samples->low = numbers({0, 0, 0, 0});
        curve.colour = ink.rgba();
        m_View.apply(update);
        const QImage picture = m_View.picture({600, 400});
        QByteArray isInked;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                isInked += qRed(pixel) > qGreen(pixel) + 40 && qBlue(pixel) > qGreen(pixel) + 40;
            }
        EXPECT_GT(isInked.count(1), 60) << nameOf(kind);
        EXPECT_TRUE(pictures.insert(isInked).second) << nameOf(kind) << " looks as another kind does";
    }
}

TEST_F(PlotViewTest, TheLegendNamesInfinities)
{
    const double infinity = std::numeric_limits<double>::infinity();
    send("a", {0, 1, 2, 3}, {0, infinity, -infinity, 1});
    EXPECT_EQ(legend().toStdString(), "a (2 infinite)");
    EXPECT_LT(m_View.getSight().range(PlotSight::Y).to, 2) << "they do not spoil the fit";
}

TEST_F(PlotViewTest, TheLegendNamesInfinitiesAlongX)
{
    const double infinity = std::numeric_limits<double>::infinity();
    send("a", {0, infinity, 1, -infinity, infinity}, {0, 1, 1, 2, infinity});
    EXPECT_EQ(legend().toStdString(), "a (4 infinite)") << "three along x, one along y";
    EXPECT_LT(m_View.getSight().range(PlotSight::X).to, 2) << "they do not spoil the fit";
    send("a", {0, 1}, {0, 1});
    EXPECT_EQ(legend().toStdString(), "");
}

TEST_F(PlotViewTest, TheLegendNamesInfinitiesOfBothEdgesOfABand)
{
    const double infinity = std::numeric_limits<double>::infinity();
    PlotUpdate update;
    update.curve("a") = samples({0, 1, 2, 3}, {2, 2, infinity, 2}, CurveKind::Band);
    update.curves.back().name = "a";
    update.curves.back().samples->low = numbers({0, -infinity, -infinity, 0});
    m_View.apply(update);
    EXPECT_EQ(legend().toStdString(), "a (3 infinite)");
}

TEST_F(PlotViewTest, TheLegendNamesInfinitiesOfAHistogram)
{
    const auto sendHistogram = [this](std::vector<double> values) {
        PlotUpdate update;
        CurveUpdate& curve = update.curves.emplace_back();
        curve.name = "a";
        curve.samples = CurveSamples{{}, numbers(values), {}, CurveKind::Histogram};
        m_View.apply(update);
    };
    sendHistogram({std::numeric_limits<double>::infinity(), 1, 2});
    EXPECT_EQ(legend().toStdString(), "a (1 infinite)");
    sendHistogram({0, 1, 2});
    EXPECT_EQ(legend().toStdString(), "") << "one curve without news has no legend";
}

TEST_F(PlotViewTest, ALogarithmicAxisBeginsWithTheSmallestPositiveNumber)
{
    send("a", {-1, 0.5, 1, 10, 100}, {1000, -5, 0, 0.01, 10});
    PlotUpdate update;
    update.x.isLog = true;
    update.y.isLog = true;
    m_View.apply(update);
    EXPECT_DOUBLE_EQ(m_View.getSight().range(PlotSight::X).from, 0.5);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 100);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 0.01, 0.008);
    EXPECT_EQ(legend().toStdString(), "a (3 not above zero)");
    update = {};
    update.x.isLog = false;
    m_View.apply(update);
    EXPECT_EQ(legend().toStdString(), "a (2 not above zero)");
    update = {};
    update.y.isLog = false;
    m_View.apply(update);
    EXPECT_EQ(legend().toStdString(), "") << "one curve of which there is nothing to say";
}

TEST_F(PlotViewTest, ALogarithmicAxisShowsTheHighestOfHundredsOfDecades)
{
    std::vector<double> x;
    std::vector<double> y;
    for (int i = 0; i < 600; ++i) {
        x.push_back(i);
        y.push_back(std::pow(10.0, i - 300));
    }
    send("a", x, y);
    m_View.setLog(PlotSight::Y, true);
    const PlotSight::Range range = m_View.getSight().range(PlotSight::Y);
    EXPECT_GE(range.to, 1e299);
    EXPECT_LT(range.from, 1e10);
    EXPECT_GT(range.from, 0);
    EXPECT_GT(m_View.pixelMap(PlotSight::Y).toPixel(1e200), 0) << "and is a map";
    EXPECT_LT(m_View.pixelMap(PlotSight::Y).toPixel(1e200), m_View.height());
}

TEST_F(PlotViewTest, ALogarithmicAxisShowsSomethingWithoutPositiveNumbers)
{
    send("a", {0, 1}, {-5, 0});
    PlotUpdate update;
    update.y.isLog = true;
    m_View.apply(update);
    EXPECT_GT(m_View.getSight().range(PlotSight::Y).from, 0);
    EXPECT_EQ(legend().toStdString(), "a (2 not above zero)");
}

TEST_F(PlotViewTest, BarsStandOnZeroWithinTheView)
{
    PlotUpdate update;
    update.curve("a") = samples({0, 1}, {5, 6}, CurveKind::Bars);
    update.curves.front().name = "a";
    m_View.apply(update);
    EXPECT_LE(m_View.getSight().range(PlotSight::Y).from, 0);
    EXPECT_LE(m_View.getSight().range(PlotSight::X).from, -0.4);
    EXPECT_GE(m_View.getSight().range(PlotSight::X).to, 1.4);
}

TEST_F(PlotViewTest, TheSmallestBarOfALogarithmicAxisIsSeen)
{
    for (const CurveKind kind : {CurveKind::Bars, CurveKind::Histogram}) {
        PlotUpdate update;
        update.clear();
        update.y.isLog = true;
        update.curve("a") = samples({}, {1, 2, 6}, kind);
        if (kind == CurveKind::Histogram) // counts of 1 and 6
            update.curves.front().samples->y = numbers({0.25, 1.5, 1.5, 1.5, 1.5, 1.5, 1.5});
        update.curves.front().name = "a";
        m_View.apply(update);
        const PlotSight::Range y = m_View.getSight().range(PlotSight::Y);
        EXPECT_NEAR(y.from, 0.3, 0.05) << nameOf(kind);
        EXPECT_NEAR(y.to, 6.5, 0.5) << nameOf(kind);
    }
    send("a", {}, {1, 2, 6});
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).from, 0.9, 0.05) << "no bars";
}

TEST_F(PlotViewTest, BarsStandOnTheAxisWhereNothingGoesBelowZero)
{
    const auto yOf = [this](const std::vector<double>& y, CurveKind kind) {
        PlotUpdate update;
        update.curve("a") = samples({0, 1, 2}, y, kind);
        update.curves.back().name = "a";
        m_View.apply(update);
        return m_View.getSight().range(PlotSight::Y);
    };
    EXPECT_EQ(yOf({1, 2, 3}, CurveKind::Bars).from, 0);
    EXPECT_GT(yOf({1, 2, 3}, CurveKind::Bars).to, 3);
    EXPECT_EQ(yOf({1, 2, 2}, CurveKind::Histogram).from, 0);
    EXPECT_EQ(yOf({-1, -2, -3}, CurveKind::Bars).to, 0);
    EXPECT_LT(yOf({-1, 2, 3}, CurveKind::Bars).from, -1);
    EXPECT_LT(yOf({0, 2, 3}, CurveKind::Line).from, 0);
    EXPECT_LT(yOf({0, 0, 0}, CurveKind::Bars).from, 0);
}

TEST_F(PlotViewTest, ASecondAxisHasARangeOfItsOwn)
{
    send("left", {0, 1}, {0, 1});
    send("right", {0, 1}, {500, 600});
    PlotUpdate update;
    update.curve("right").style = "y2 dashed";
    m_View.apply(update);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).to, 1.05, 1e-9);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y2).from, 495, 1e-9);
}

TEST_F(PlotViewTest, LooksWaitForTheirCurveOutsideTheLegend)
{
    send("a", {0, 1}, {0, 1});
    PlotUpdate looks;
    looks.curve("b").style = "dashed";
    looks.curve("c").colour = qRgb(255, 0, 0);
    m_View.apply(looks);
    EXPECT_EQ(legend(), "") << "there is one curve";
    EXPECT_EQ(saved([this](const QString& file) { return m_View.saveData(file); }), "\"a x\",\"a\"\n0,0\n1,1\n");
    send("c", {0, 1}, {1, 0});
    EXPECT_EQ(legend(), "a, c");
    EXPECT_GT(numPixels(Qt::red), 0);
    PlotUpdate appended;
    appended.curve("b").append({1.0, 1.0});
    m_View.apply(appended);
    EXPECT_TRUE(legend().contains("b"));
    send("empty", {}, {});
    EXPECT_TRUE(legend().contains("empty")) << "it was sent";
}

TEST_F(PlotViewTest, TheAxisSaysWhichCurvesHaveLostOldSamples)
{
    const auto tip = [this] { return m_View.axisWidget(PlotSight::X)->toolTip().toStdString(); };
    for (int i = 0; i < 4; ++i) {
        PlotUpdate update;
        update.curve("a").append({1.0 * i, 1});
        update.curve("b").append({1.0 * i, 2});
        update.curve("a").kept = 3;
        m_View.apply(update);
        EXPECT_EQ(tip(), i < 3 ? "" : "The newest samples alone are kept, and older ones have gone: a.");
    }
    send("a", {0, 1}, {0, 1});
    EXPECT_EQ(tip(), "");
}

TEST_F(PlotViewTest, AWindowShowsTheNewest)
{
    send("a", {0, 100}, {0, 1});
    PlotUpdate update;
    update.window = 10;
    m_View.apply(update);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).from, 90);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 100);
}

TEST_F(PlotViewTest, AWindowBeginsWithTheDataThatThereAre)
{
    PlotUpdate update;
    update.window = 20;
    m_View.apply(update);
    send("a", {0, 3}, {0, 1});
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).from, 0);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 3);
    m_View.getSight().zoom(PlotSight::X, 2, 3);
    m_View.showChoice();
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).from, -3) << "a person may look at more";
    m_View.getSight().fit();
    send("a", {0, 25}, {0, 1});
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).from, 5);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 25);
}

TEST_F(PlotViewTest, AnAxisThatCountsNothingIsLeftOut)
{
    const auto hasLeft = [this] { return m_View.getPlot().axisEnabled(QwtPlot::yLeft); };
    EXPECT_TRUE(hasLeft());
    send("right", {0, 1}, {500, 600});
    PlotUpdate update;
    update.curve("right").style = "y2";
    m_View.apply(update);
    EXPECT_FALSE(hasLeft());
    const QwtPlotItemList grids = m_View.getPlot().itemList(QwtPlotItem::Rtti_PlotGrid);
    ASSERT_EQ(grids.size(), 1);
    EXPECT_EQ(grids.front()->yAxis(), static_cast<int>(QwtPlot::yRight));
    update = {};
    update.lines = {{false, 0.5, "limit"}};
    m_View.apply(update);
    EXPECT_TRUE(hasLeft()) << "which the line is counted by";
    update = {};
    update.remove("limit");
    m_View.apply(update);
    EXPECT_FALSE(hasLeft());
    send("left", {0, 1}, {0, 1});
    EXPECT_TRUE(hasLeft());
    update = {};
    update.remove("left");
    m_View.apply(update);
    EXPECT_FALSE(hasLeft());
    update = {};
    update.y.range = AxisUpdate::Range{0, 1};
    m_View.apply(update);
    EXPECT_TRUE(hasLeft());
}

TEST_F(PlotViewTest, LinesAcrossComeMoveAndGo)
{
    send("a", {0, 1}, {0, 1});
    const QImage without = m_View.picture({600, 400});
    PlotUpdate update;
    update.lines = {{true, 0.3, "here"}, {false, 0.5, ""}};
    m_View.apply(update);
    const QImage with = m_View.picture({600, 400});
    EXPECT_NE(with, without);
    PlotUpdate moved;
    moved.lines = {{true, 0.7, "here"}};
    m_View.apply(moved);
    EXPECT_NE(m_View.picture({600, 400}), with);
    PlotUpdate removed;
    removed.remove("here");
    removed.remove("");
    m_View.apply(removed);
    EXPECT_EQ(m_View.picture({600, 400}), without);
}

TEST_F(PlotViewTest, LineEndsAndTabsInNamesAreBlanks)
{
    send("a\tb", {0, 1}, {0, 1});
    send("c\r\nd\x1b", {0, 1}, {0, 1});
    EXPECT_EQ(legend().toStdString(), "a b, c  d\\x1b");
    PlotUpdate update;
    update.title = "first\nsecond";
    m_View.apply(update);
    EXPECT_EQ(m_View.getPlot().title().text().toStdString(), "first second");
}

TEST_F(PlotViewTest, TheTitleFollowsTheFont)
{
    send("a", {0, 1}, {0, 1});
    const int before = m_View.getPlot().titleLabel()->height();
    for (const bool inPixels : {false, true}) {
        QFont font = m_View.font();
        if (inPixels)
            font.setPixelSize(60);
        else
            font.setPointSizeF(3 * QFontInfo(font).pointSizeF());
        m_View.setFont(font);
        EXPECT_GT(m_View.getPlot().titleLabel()->height(), 2 * before);
        EXPECT_TRUE(m_View.getPlot().titleLabel()->font().bold());
    }
}

TEST_F(PlotViewTest, LongTitlesEndInAnEllipsisWhereTheRoomEnds)
{
    const std::string text = "a title that goes on and on until nobody has the patience to read it any farther";
    send("a", {0, 1}, {0, 1});
    PlotUpdate update;
    update.title = text;
    update.x.name = AxisUpdate::Name{text, "kg"};
    update.y.name = AxisUpdate::Name{text, "s"};
    m_View.apply(update);
    const std::string ending = "…";
    const auto textsOf = [&](const QSize& size) {
        const std::string svg = saved([&](const QString& file) { return m_View.savePicture(file, size); }, "data.svg");
        return std::pair(svg.find(text + "<") != std::string::npos, svg.find("a title that ") != std::string::npos);
    };
    EXPECT_EQ(textsOf({1400, 1000}), std::pair(true, true));
    EXPECT_EQ(textsOf({400, 300}), std::pair(false, true));
    m_View.resize(300, 300);
    m_View.getPlot().setFixedSize(284, 284);
    m_View.apply(update);
    const QwtText title = m_View.getPlot().title();
    EXPECT_LE(title.textSize().width(), 284);
    EXPECT_TRUE(title.text().startsWith("a title")) << title.text().toStdString();
    EXPECT_TRUE(title.text().endsWith(ending.c_str()));
    EXPECT_TRUE(m_View.getPlot().axisTitle(QwtPlot::xBottom).text().endsWith((ending + " [kg]").c_str()));
    EXPECT_TRUE(m_View.getPlot().axisTitle(QwtPlot::yLeft).text().endsWith((ending + " [s]").c_str()));
}

TEST_F(PlotViewTest, HorizontalLinesAreSeenBeyondTheData)
{
    send("a", {0, 1}, {0, 1});
    PlotUpdate update;
    update.lines = {{false, 10, "limit"}, {true, 5, "elsewhere"}};
    m_View.apply(update);
    EXPECT_NEAR(m_View.getSight().range(PlotSight::Y).to, 10.5, 1e-9);
    EXPECT_EQ(m_View.getSight().range(PlotSight::X).to, 1);
}

TEST_F(PlotViewTest, WhatIsMeasuredFitsIntoPlotsOfAnySize)
{
    for (const char* name : {"first", "second", "a third one with a long name"})
        send(name, {0, 1, 2}, {1.0 / 3, -1.0 / 7, 1e6 / 9});
    PlotMeasure& measure = m_View.getMeasure();
    measure.turnOn(0.1, 1.9);
    m_View.showMeasure();
    for (const QSize& size : {QSize(700, 400), QSize(300, 300), QSize(140, 300), QSize(300, 60), QSize(40, 40)}) {
        QImage image(900, 500, QImage::Format_RGB32);
        image.fill(Qt::white);
        const QRect canvas(QPoint(20, 20), size);
        QwtScaleMap xMap;
        xMap.setScaleInterval(0, 2);
        xMap.setPaintInterval(canvas.left(), canvas.right());
        QPainter painter(&image);
        measure.draw(&painter, xMap, {}, canvas);
        painter.end();
        const QRect around = canvas.adjusted(-1, -1, 1, 1); // smooth edges
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ASSERT_TRUE(around.contains(x, y) || image.pixelColor(x, y) == Qt::white)
                    << size.width() << " x " << size.height() << ": " << x << ", " << y;
    }
    for (const QSize& size : {QSize(700, 400), QSize(330, 300), QSize(250, 250)}) {
        const std::string svg = saved([&](const QString& file) { return m_View.savePicture(file, size); }, "data.svg");
        for (const char* word : {">dx ", "1/dx ", ">dy<", ">mean<", ">minimum<", ">maximum<", ">rms<", ">count<"})
            EXPECT_NE(svg.find(word), std::string::npos) << word;
    }
}

TEST_F(PlotViewTest, WhatIsMeasuredStandsWhereItHidesTheLeast)
{
    PlotMeasure& measure = m_View.getMeasure();
    measure.turnOn(0.9, 2.1);
    const auto placeOfTable = [this] {
        const std::string svg = saved(
            [&](const QString& file) {
                return m_View.savePicture(file, {800, 500});
            },
            "p.svg");
        const std::size_t text = svg.find(">dx ");
        EXPECT_NE(text, std::string::npos);
        const std::size_t matrix = svg.rfind("matrix(", text);
        double values[6];
        std::istringstream numbers(svg.substr(matrix + 7));
        char comma;
        for (double& value : values)
            numbers >> value >> comma;
        return QPointF(values[4], values[5]);
    };
    send("a", {0, 1, 2, 3}, {9, 0, 0, 0}); // falls from the upper left
    m_View.showMeasure();
    EXPECT_GT(placeOfTable().x(), 200);
    EXPECT_LT(placeOfTable().y(), 100);
    send("a", {0, 1, 2, 3}, {0, 0, 0, 9});
    m_View.showMeasure();
    EXPECT_LT(placeOfTable().x(), 200);
    send("a", {0, 1, 2, 3}, {9, 9, 9, 9.1});
    PlotUpdate ranged;
    ranged.y.range = AxisUpdate::Range{0, 10};
    m_View.apply(ranged);
    EXPECT_GT(placeOfTable().y(), 250) << "below the curve";
}

TEST_F(PlotViewTest, DataAreSavedWithAllDigits)
{
    send("a", {0.1, 1e300}, {1.0 / 3, 5e-324});
    PlotUpdate update;
    CurveUpdate& band = update.curve("b");
    band = samples({1, 2, 3}, {4, 5, NAN}, CurveKind::Band);
    band.name = "b";
    band.samples->low = numbers({-4, -5, -6});
    m_View.apply(update);
    EXPECT_EQ(saved([this](const QString& file) { return m_View.saveData(file); }),
        "\"a x\",\"a\",\"b x\",\"b low\",\"b high\"\n"
        "0.1,0.3333333333333333,1,-4,4\n1e+300,5e-324,2,-5,5\n,,3,-6,nan\n");
}

TEST_F(PlotViewTest, TheDataInViewAreSaved)
{
    send("a", {0, 1, 2, 3}, {10, 11, 12, 13});
    send("to and fro", {2, 0, 1.5}, {7, 8, 9});
    m_View.getSight().choose(PlotSight::X, {1, 2});
    m_View.showChoice();
    EXPECT_EQ(saved(m_View.seenDataSaver()), "\"a x\",\"a\",\"to and fro x\",\"to and fro\"\n1,11,2,7\n2,12,1.5,9\n");
}

TEST_F(PlotViewTest, PicturesAreSavedAsTheirNamesEnd)
{
    send("a", {0, 1}, {0, 1});
    const QTemporaryDir folder;
    for (const auto& [ending, beginning] :
        {std::pair("png", "\x89PNG"), std::pair("svg", "<?xml"), std::pair("pdf", "%PDF")}) {
        const QString file = folder.filePath(QString("plot.") + ending);
        EXPECT_EQ(m_View.savePicture(file, {400, 300}), "");
        QFile saved(file);
        ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
        EXPECT_TRUE(saved.readAll().startsWith(beginning)) << ending;
    }
}

TEST_F(PlotViewTest, TheLegendNamesWhatNoAxisReaches)
{
    send("a", {0, 1}, {0, 1e308});
    EXPECT_EQ(legend().toStdString(), "a (goes beyond 4e+307)");
    send("a", {-1e308, 1}, {0, 1});
    EXPECT_EQ(legend().toStdString(), "a (goes beyond 4e+307)");
    send("a", {0, 1}, {0, 1e307});
    EXPECT_EQ(legend().toStdString(), "");
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
