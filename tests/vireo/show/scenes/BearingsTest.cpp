#include "vireo/show/scenes/bearings.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace tavo {

namespace {

constexpr double RADIANS = 0.017453292519943295;

// A view of the origin from a direction in degrees, around z, 0 from where y is least, and up; from infinitely far, or
// from a distance.
ToPicture viewFrom(double azimuth, double elevation, double pixelsPerUnit, std::optional<double> distance = {})
{
    const double a = azimuth * RADIANS;
    const double e = elevation * RADIANS;
    return [=](const Vector3d& point) -> std::optional<QPointF> {
        const double right = point[0] * std::cos(a) + point[1] * std::sin(a);
        const double away = point[1] * std::cos(a) - point[0] * std::sin(a);
        const double up = point[2] * std::cos(e) + away * std::sin(e);
        const double depth = away * std::cos(e) - point[2] * std::sin(e);
        const double scale = distance ? pixelsPerUnit * *distance / (*distance + depth) : pixelsPerUnit;
        if (distance && *distance + depth <= 0)
            return std::nullopt;
        return QPointF(400 + scale * right, 300 - scale * up);
    };
}

const Box3d UNIT({-1, -1, -1}, {1, 1, 1});

class BearingsTest : public testing::Test
{
protected:
    std::map<int, Bearing> bearings(const Box3d& box, const ToPicture& toPicture)
    {
        std::map<int, Bearing> found;
        for (const Bearing& bearing : bearingsOf(box, toPicture, m_Font)) {
            EXPECT_EQ(found.count(bearing.axis), 0u);
            found[bearing.axis] = bearing;
        }
        return found;
    }

    static void expectLine(const QLineF& line, double x1, double y1, double x2, double y2)
    {
        EXPECT_NEAR(line.x1(), x1, 1e-6);
        EXPECT_NEAR(line.y1(), y1, 1e-6);
        EXPECT_NEAR(line.x2(), x2, 1e-6);
        EXPECT_NEAR(line.y2(), y2, 1e-6);
    }

    QFontMetricsF m_Font{QApplication::font()};
};

TEST_F(BearingsTest, StandBelowAndToTheLeftOfWhatIsSeenFromTheFront)
{
    const auto found = bearings(UNIT, viewFrom(0, 0, 100));
    ASSERT_EQ(found.size(), 2u) << "y is seen from its end";
    expectLine(found.at(0).edge, 300, 400, 500, 400);
    EXPECT_EQ(found.at(0).outwards, QPointF(0, 1));
    expectLine(found.at(2).edge, 300, 400, 300, 200);
    EXPECT_EQ(found.at(2).outwards, QPointF(-1, 0));
    EXPECT_EQ(found.at(2).title, "z");
}

TEST_F(BearingsTest, GoDownTheLeftSideOfWhatIsSeenFromAbove)
{
    const auto found = bearings(UNIT, viewFrom(0, 90, 100));
    ASSERT_EQ(found.size(), 2u);
    expectLine(found.at(0).edge, 300, 400, 500, 400);
    expectLine(found.at(1).edge, 300, 400, 300, 200);
}

// From the right and above, the outline is a hexagon.
TEST_F(BearingsTest, StandOnTheOutlineOfWhatIsSeenFromACorner)
{
    for (const std::optional<double> distance : {std::optional<double>(), std::optional<double>(8)}) {
        const ToPicture toPicture = viewFrom(30, 25, 100, distance);
        const auto found = bearings(UNIT, toPicture);
        ASSERT_EQ(found.size(), 3u);
        const auto expectEdge = [&](int axis, const Vector3d& from, const Vector3d& to) {
            const QPointF a = *toPicture(from);
            const QPointF b = *toPicture(to);
            expectLine(found.at(axis).edge, a.x(), a.y(), b.x(), b.y());
        };
        expectEdge(0, {-1, -1, -1}, {1, -1, -1});
        expectEdge(1, {1, -1, -1}, {1, 1, -1});
        expectEdge(2, {-1, -1, -1}, {-1, -1, 1});
    }
}

// From everywhere numbers are outside, on edges that are no part of the box's inside, and do not touch.
TEST_F(BearingsTest, NeverHideTheBoxNorEachOther)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> turn(-180, 180);
    std::uniform_real_distribution<double> lean(-90, 90);
    std::uniform_real_distribution<double> size(0.05, 1);
    for (int i = 0; i < 300; ++i) {
        const Box3d box({-size(random), -size(random), -size(random)}, {size(random), size(random), size(random)});
        const auto toPicture =
            viewFrom(turn(random), lean(random), 250, i % 2 ? std::optional<double>(3) : std::nullopt);
        std::vector<QRectF> labels;
        for (const auto& [axis, bearing] : bearings(box, toPicture)) {
            for (int corner = 0; corner < 8; ++corner) {
                const QPointF place = *toPicture({(corner & 1 ? box.getMax() : box.getMin())[0],
                    (corner & 2 ? box.getMax() : box.getMin())[1], (corner & 4 ? box.getMax() : box.getMin())[2]});
                EXPECT_LT(QPointF::dotProduct(place - bearing.edge.p1(), bearing.outwards), 1e-6) << "outside";
            }
            for (const Bearing::Tick& tick : bearing.ticks)
                if (!tick.label.isEmpty())
                    labels.push_back(tick.labelBox);
        }
        for (std::size_t a = 0; a < labels.size(); ++a)
            for (std::size_t b = a + 1; b < labels.size(); ++b)
                EXPECT_FALSE(labels[a].intersects(labels[b])) << i;
    }
}

// A street, whose far end is small.
TEST_F(BearingsTest, LeaveOutLabelsWhereTicksComeTooClose)
{
    const Bearing y = bearings(Box3d({-1, -1, -1}, {1, 60, 1}), viewFrom(20, 25, 300, 3)).at(1);
    std::vector<QRectF> labels;
    for (const Bearing::Tick& tick : y.ticks)
        if (!tick.label.isEmpty())
            labels.push_back(tick.labelBox);
    EXPECT_GE(labels.size(), 2u);
    EXPECT_LT(labels.size(), y.ticks.size());
    for (std::size_t i = 1; i < labels.size(); ++i)
        EXPECT_FALSE(labels[i - 1].intersects(labels[i])) << i;
}

TEST_F(BearingsTest, HaveTicksAtRoundNumbersWhereTheyAre)
{
    const auto toPicture = viewFrom(0, 0, 100);
    const Bearing x = bearings(UNIT, toPicture).at(0);
    ASSERT_GE(x.ticks.size(), 3u);
    for (const Bearing::Tick& tick : x.ticks) {
        const double value = QString(tick.label).replace(QChar(0x2212), '-').toDouble();
        EXPECT_NEAR(tick.place.x(), 400 + 100 * value, 1e-6);
        EXPECT_EQ(tick.place.y(), 400);
        EXPECT_GT(tick.labelBox.top(), 400);
    }
    EXPECT_GT(x.titleBox.top(), x.ticks.front().labelBox.bottom());
}

TEST_F(BearingsTest, WriteCoordinatesOut)
{
    const double north = 5'512'360;
    const Box3d box({north - 50, -1, -1}, {north + 50, 1, 1});
    const auto toPicture = [&](const Vector3d& p) -> std::optional<QPointF> {
        return QPointF(10 * (p[0] - north), 300 - 100 * p[2]);
    };
    const Bearing x = bearings(box, toPicture).at(0);
    EXPECT_EQ(x.title, "x");
    for (const Bearing::Tick& tick : x.ticks) // how many of them have room depends on the font
        EXPECT_EQ(QString(tick.label).replace(QChar(0x2009), ' ').left(6).toStdString(), "5 512 ");
}

TEST_F(BearingsTest, SayWhatLongNumbersShareOnce)
{
    const double east = 5.5e6;
    const Box3d box({east, -1, -1}, {east + 0.02, 1, 1});
    const auto toPicture = [&](const Vector3d& p) -> std::optional<QPointF> {
        return QPointF(10000 * (p[0] - east), 300 - 100 * p[2]);
    };
    const Bearing x = bearings(box, toPicture).at(0);
    EXPECT_EQ(QString(x.title).replace(QChar(0x2009), ' '), "x  +5 500 000");
    std::set<QString> labels;
    for (const Bearing::Tick& tick : x.ticks)
        labels.insert(tick.label);
    EXPECT_EQ(labels.size(), x.ticks.size()) << "all of them differ";
}

TEST_F(BearingsTest, StandAtFlatDataAndLines)
{
    EXPECT_EQ(bearings(Box3d({-1, -1, 0}, {1, 1, 0}), viewFrom(20, 40, 100)).size(), 2u);
    const auto line = bearings(Box3d({-1, 0, 0}, {1, 0, 0}), viewFrom(0, 40, 100));
    ASSERT_EQ(line.size(), 1u);
    EXPECT_EQ(line.begin()->first, 0);
    EXPECT_TRUE(bearings(Box3d({1, 2, 3}, {1, 2, 3}), viewFrom(20, 40, 100)).empty());
}

// A plain, which is wide and low.
TEST_F(BearingsTest, SayTheRangeWhereTheEdgeIsTooShort)
{
    const auto found = bearings(Box3d({-1, -1, -20}, {1, 1, -19.9}), viewFrom(0, 0, 100));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_TRUE(found.at(2).ticks.empty());
    EXPECT_EQ(QString(found.at(2).title).replace(QChar(0x2212), '-'), "z  -20.00 to -19.90");
    EXPECT_LT(found.at(2).titleBox.right(), found.at(2).edge.x1());
    EXPECT_GE(found.at(0).ticks.size(), 3u);
    EXPECT_EQ(bearings(Box3d({-1, -1, 0}, {1, 1, 0.01}), viewFrom(0, 0, 100)).size(), 1u) << "nothing of a pixel";
}

TEST_F(BearingsTest, AreNoneWithinTheBox)
{
    EXPECT_TRUE(bearings(UNIT, viewFrom(30, 25, 100, 0.5)).empty());
}

// Whether a part of the picture has ink.
bool hasInk(const QImage& picture, const QRectF& where)
{
    const QRect pixels = where.toRect() & picture.rect();
    for (int y = pixels.top(); y <= pixels.bottom(); ++y)
        for (int x = pixels.left(); x <= pixels.right(); ++x)
            if (picture.pixel(x, y) != qRgb(255, 255, 255))
                return true;
    return false;
}

TEST_F(BearingsTest, AreDrawnWhereTheyBelong)
{
    const std::vector<Bearing> found = bearingsOf(UNIT, viewFrom(30, 25, 100), m_Font);
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(Qt::black);
    drawBearings(painter, found);
    painter.end();
    for (const Bearing& bearing : found) {
        EXPECT_TRUE(hasInk(picture, bearing.titleBox));
        for (const Bearing::Tick& tick : bearing.ticks)
            EXPECT_EQ(hasInk(picture, tick.labelBox), !tick.label.isEmpty());
    }
    EXPECT_FALSE(hasInk(picture, QRectF(385, 285, 30, 30))) << "nothing in the middle of the box";
}

} // namespace

} // namespace tavo
