#include "vireo/show/plots/polyline.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "tests/vireo/show/plots/curves.h"

namespace tavo {

namespace {

constexpr int WIDTH = 400;
constexpr int HEIGHT = 300;
constexpr double SPIKE = 40;

struct Samples
{
    std::vector<double> x;
    std::vector<double> y;
};

// A walk, a wave or noise, over an x that is not even.
Samples makeSamples(std::size_t count, int kind)
{
    std::mt19937 random(7);
    std::normal_distribution<double> noise;
    std::uniform_real_distribution<double> step(0, 2);
    Samples made;
    double x = 0;
    double walk = 0;
    for (std::size_t i = 0; i < count; ++i) {
        made.x.push_back(x += step(random));
        walk += noise(random) * 3 / std::sqrt(static_cast<double>(count));
        made.y.push_back(kind == 0   ? walk
                         : kind == 1 ? 8 * std::sin(20 * x / static_cast<double>(count))
                                     : noise(random));
    }
    return made;
}

QImage draw(const Polylines& polylines)
{
    QImage image(WIDTH, HEIGHT, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 1));
    for (const QPolygonF& line : polylines.lines)
        painter.drawPolyline(line);
    painter.drawPoints(polylines.marks);
    return image;
}

int numDifferentPixels(const QImage& a, const QImage& b)
{
    int number = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            number += a.pixel(x, y) != b.pixel(x, y);
    return number;
}

// Whether all that one picture shows is in the other, or beside it.
bool isWithinOnePixel(const QImage& shown, const QImage& other)
{
    for (int y = 1; y < shown.height() - 1; ++y)
        for (int x = 1; x < shown.width() - 1; ++x) {
            bool isThere = shown.pixel(x, y) == 0xFFFFFFFF;
            for (int i = 0; i < 9; ++i)
                isThere = isThere || other.pixel(x + i % 3 - 1, y + i / 3 - 1) != 0xFFFFFFFF;
            if (!isThere)
                return false;
        }
    return true;
}

// The raster of a line from pixel to pixel. Qt's own leaves pixels out where lines of less than one meet.
void drawRaster(QImage& image, QPoint from, const QPoint& to)
{
    const int width = std::abs(to.x() - from.x());
    const int height = std::abs(to.y() - from.y());
    int error = width - height;
    while (true) {
        if (image.rect().contains(from))
            image.setPixel(from, 0xFF000000);
        if (from == to)
            return;
        const int before = 2 * error;
        if (before >= -height) {
            error -= height;
            from.rx() += to.x() > from.x() ? 1 : to.x() < from.x() ? -1 : 0;
        }
        if (before <= width) {
            error += width;
            from.ry() += to.y() > from.y() ? 1 : to.y() < from.y() ? -1 : 0;
        }
    }
}

QPoint pixelAt(const QPointF& point)
{
    return {static_cast<int>(std::floor(point.x())), static_cast<int>(std::floor(point.y()))};
}

QImage rasterOf(const Polylines& polylines)
{
    QImage image(WIDTH, HEIGHT, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (const QPolygonF& line : polylines.lines)
        for (int i = 1; i < line.size(); ++i)
            drawRaster(image, pixelAt(line[i - 1]), pixelAt(line[i]));
    return image;
}

int numDrawnPixels(const QImage& image)
{
    QImage white(image.size(), QImage::Format_RGB32);
    white.fill(Qt::white);
    return numDifferentPixels(image, white);
}

CurveStore storeOf(const Samples& made)
{
    CurveUpdate update = samples(made.x, made.y);
    CurveStore store;
    store.apply(update);
    return store;
}

// Every sample.
Polylines allOf(const Samples& made, const PixelMap& xMap, const PixelMap& yMap)
{
    QPolygonF line;
    for (std::size_t i = 0; i < made.x.size(); ++i)
        line.push_back({xMap.toPixel(made.x[i]), yMap.toPixel(made.y[i])});
    Polylines all;
    all.lines.push_back(line);
    return all;
}

class PolylineTest : public testing::TestWithParam<int>
{
protected:
    static void expectSamePicture(const Polylines& few, const Polylines& all)
    {
        EXPECT_EQ(numDifferentPixels(rasterOf(few), rasterOf(all)), 0);
        const QImage picture = draw(few);
        const QImage expected = draw(all);
        EXPECT_TRUE(isWithinOnePixel(picture, expected) && isWithinOnePixel(expected, picture));
        EXPECT_GT(numDrawnPixels(expected), WIDTH / 3);
    }

    PixelMap m_YMap{-12, 12, HEIGHT, 0};
};

TEST_P(PolylineTest, ShowsThePictureOfAllSamples)
{
    for (const std::size_t count : {500u, 3000u, 20'000u, 200'000u}) {
        const Samples made = makeSamples(count, GetParam());
        const CurveStore store = storeOf(made);
        const double end = made.x.back();
        for (const auto& [from, to] :
            {std::pair(0.0, end), std::pair(0.3 * end, 0.55 * end), std::pair(-end, 2 * end)}) {
            const PixelMap xMap{from, to, 0, WIDTH};
            const Polylines few = polylinesOf(store, xMap, m_YMap);
            int numPoints = 0;
            for (const QPolygonF& line : few.lines)
                numPoints += line.size();
            EXPECT_LE(numPoints, 4 * (WIDTH + 3));
            expectSamePicture(few, allOf(made, xMap, m_YMap));
        }
    }
}

std::string nameOfKind(const testing::TestParamInfo<int>& info)
{
    constexpr const char* NAMES[] = {"Walk", "Wave", "Noise"};
    return NAMES[info.param];
}

INSTANTIATE_TEST_SUITE_P(, PolylineTest, testing::Values(0, 1, 2), nameOfKind);

TEST(PolylineSpikeTest, ASpikeOfOneSampleIsSeenAtEveryZoom)
{
    constexpr std::size_t COUNT = 10'000'000;
    constexpr std::size_t PLACE = 6'543'210;
    std::vector<double> y(COUNT, 0.0);
    y[PLACE] = SPIKE;
    CurveUpdate update = samples({}, std::move(y));
    CurveStore store;
    store.apply(update);
    const PixelMap yMap{-1, SPIKE + 1, HEIGHT, 0};
    for (double length = 2.0 * COUNT; length > 10; length /= 3) {
        const PixelMap xMap{PLACE - length / 3, PLACE + length * 2 / 3, 0, WIDTH};
        const Polylines lines = polylinesOf(store, xMap, yMap);
        double top = HEIGHT;
        for (const QPolygonF& line : lines.lines)
            for (const QPointF& point : line)
                if (std::abs(point.x() - xMap.toPixel(PLACE)) < 1)
                    top = std::min(top, point.y());
        EXPECT_DOUBLE_EQ(top, yMap.toPixel(SPIKE)) << length;
    }
}

TEST(PolylineGapTest, WhatIsNotFiniteIsAGap)
{
    const PixelMap map{0, 9, 0, 90};
    const Samples made{{0, 1, 2, 3, 4, 5, 6, 7}, {0, 1, NAN, 3, NAN, 5, INFINITY, 7}};
    const Polylines lines = polylinesOf(storeOf(made), map, map);
    ASSERT_EQ(lines.lines.size(), 1u);
    EXPECT_EQ(lines.lines[0], QPolygonF(QVector<QPointF>{{0, 0}, {10, 10}}));
    EXPECT_EQ(lines.marks, QPolygonF(QVector<QPointF>{{30, 30}, {50, 50}, {70, 70}}));
}

TEST(PolylineGapTest, AGapStaysAmongManySamples)
{
    std::vector<double> y(1'000'000, 1.0);
    std::fill(y.begin() + 400'000, y.begin() + 500'000, NAN);
    CurveUpdate update = samples({}, y);
    CurveStore store;
    store.apply(update);
    const Polylines lines = polylinesOf(store, {0, 1e6, 0, 1000}, {0, 2, 100, 0});
    ASSERT_EQ(lines.lines.size(), 2u);
    EXPECT_NEAR(lines.lines[0].back().x(), 400, 1);
    EXPECT_NEAR(lines.lines[1].front().x(), 500, 1);
}

TEST(PolylineGapTest, WhatIsNotAboveZeroIsAGapOnALogarithmicAxis)
{
    for (const std::size_t perValue : {1, 5000}) { // single samples, and dense columns of pixels
        std::vector<double> x;
        std::vector<double> y;
        for (const double value : {1.0, 0.0, 10.0, -5.0, 100.0, 1000.0})
            for (std::size_t i = 0; i < perValue; ++i) {
                x.push_back(static_cast<double>(x.size()));
                y.push_back(value);
            }
        CurveStore curve;
        CurveUpdate update = samples(x, y);
        curve.apply(update);
        const PixelMap xMap{0, x.back(), 0, 600};
        const PixelMap yMap{1, 1000, 300, 0, true};
        const Polylines found = polylinesOf(curve, xMap, yMap);
        EXPECT_EQ(found.lines.size() + found.marks.size(), 3u) << perValue;
        for (const QPolygonF& line : found.lines)
            for (const QPointF& point : line)
                EXPECT_LE(point.y(), 300.5);
    }
}

TEST(PolylineGapTest, AmongManySamplesWhatIsAboveZeroIsDrawn)
{
    std::vector<double> x(30'000);
    std::vector<double> y(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<double>(i);
        y[i] = i % 3 == 0 ? -1 : i % 3 == 1 ? 10 : 100;
    }
    CurveStore curve;
    CurveUpdate update = samples(x, y);
    curve.apply(update);
    const Polylines found = polylinesOf(curve, {0, x.back(), 0, 600}, {1, 1000, 300, 0, true});
    EXPECT_EQ(found.lines.size(), 10'000u);
}

TEST(StepsTest, HoldUntilTheNextSample)
{
    const PixelMap map{0, 10, 0, 10};
    const Polylines steps = stepsOf(storeOf({{0, 2, 4}, {1, 3, 2}}), map, map);
    ASSERT_EQ(steps.lines.size(), 1u);
    EXPECT_EQ(steps.lines[0], QPolygonF(QVector<QPointF>{{0, 1}, {2, 1}, {2, 3}, {4, 3}, {4, 2}}));
}

TEST(StepsTest, HoldUntilAGap)
{
    const PixelMap map{0, 10, 0, 10};
    const Polylines steps = stepsOf(storeOf({{0, 2, 4, 5, 6, 7, 9}, {1, 3, NAN, NAN, 5, NAN, 7}}), map, map);
    ASSERT_EQ(steps.lines.size(), 2u);
    EXPECT_EQ(steps.lines[0], QPolygonF(QVector<QPointF>{{0, 1}, {2, 1}, {2, 3}, {4, 3}}));
    EXPECT_EQ(steps.lines[1], QPolygonF(QVector<QPointF>{{6, 5}, {7, 5}}));
    EXPECT_EQ(steps.marks, QPolygonF(QVector<QPointF>{{9, 7}}));
}

TEST(StepsTest, HoldUntilWhatHasNoPlaceOnALogarithmicAxis)
{
    const Polylines steps = stepsOf(storeOf({{0, 1, 2, 3}, {0, 10, 0, 1000}}), {0, 3, 0, 300}, {1, 1000, 0, 300, true});
    ASSERT_EQ(steps.lines.size(), 1u);
    EXPECT_EQ(steps.lines[0], QPolygonF(QVector<QPointF>{{100, 100}, {200, 100}}));
}

TEST(StepsTest, HoldUntilAGapThatIsManySamplesLong)
{
    std::vector<double> y(30'000, NAN);
    std::fill(y.begin(), y.begin() + 9'990, 1);
    const Polylines steps = stepsOf(storeOf({{}, y}), {0, 30'000, 0, 30}, {0, 2, 0, 2});
    ASSERT_EQ(steps.lines.size(), 1u);
    EXPECT_NEAR(steps.lines[0].back().x(), 9.99, 0.02);
    EXPECT_EQ(steps.lines[0].back().y(), 1);
}

// Samples in disorder, of which two stick out.
CurveStore disorder(std::size_t count)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> number(0.2, 0.8);
    std::vector<double> x(count);
    std::vector<double> y(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = number(random);
        y[i] = number(random);
    }
    x[count / 3] = 0.01;
    y[count / 2] = 0.99;
    CurveStore curve;
    curve.replace({numbers(x), numbers(y), {}, CurveKind::Line});
    return curve;
}

TEST(PolylineDisorderTest, WhatCoversTheViewManyTimesIsThinnedOut)
{
    const PixelMap xMap{0, 1, 0, 200};
    const PixelMap yMap{0, 1, 100, 0};
    const Polylines few = polylinesOf(disorder(300), xMap, yMap);
    ASSERT_EQ(few.lines.size(), 1u);
    EXPECT_FALSE(few.areDense);
    EXPECT_GT(few.lines[0].size(), 290) << "all of them, as long as they can be told apart";

    const Polylines many = polylinesOf(disorder(1'000'000), xMap, yMap);
    ASSERT_EQ(many.lines.size(), 1u);
    EXPECT_TRUE(many.areDense);
    EXPECT_LT(many.lines[0].size(), 20'000);
    const QRectF around = many.lines[0].boundingRect();
    EXPECT_NEAR(around.left(), 0.01 * 200, 1e-9) << "what sticks out stays";
    EXPECT_NEAR(around.top(), 100 - 0.99 * 100, 1e-9);

    QImage picture(200, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawPolyline(many.lines[0]);
    painter.end();
    int numWhite = 0;
    for (int y = 25; y < 75; ++y)
        for (int x = 45; x < 155; ++x)
            numWhite += picture.pixelColor(x, y) == Qt::white;
    EXPECT_EQ(numWhite, 0) << "and what is covered is covered";
}

TEST(PolylineRangeTest, LinesToFarPlacesAreKept)
{
    const Polylines lines =
        polylinesOf(storeOf({{0, 1, 2}, {-1e308, 1e308, 0}}), {0, 2, 0, 100}, {-4e307, 4e307, 100, 0});
    ASSERT_EQ(lines.lines.size(), 1u);
    EXPECT_NEAR(lines.lines[0][0].y(), 175, 1);
    EXPECT_NEAR(lines.lines[0][1].y(), -75, 1);
    EXPECT_NEAR(lines.lines[0][2].y(), 50, 1);
}

} // namespace

} // namespace tavo
