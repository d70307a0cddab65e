#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/colours/colourOfLabel.h"

// Data that nobody means to send: what can be drawn of them is, and the rest is left out.
namespace tavo {
namespace {

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double NO_COORDINATES[] = {NAN, INF, -INF, 1e31, -LARGEST};
constexpr ItemKind KINDS[] = {
    ItemKind::Cloud, ItemKind::Mesh, ItemKind::Lines, ItemKind::Segments, ItemKind::Vectors, ItemKind::Boxes};

// Something of that kind that is drawn, and behind it the same with an odd coordinate, if there is one.
ItemUpdate shape(ItemKind kind, std::optional<double> odd = {})
{
    std::vector<double> points{-1, 0, 0, 1, 0, 0, 0, 0, 2};
    std::vector<int> faces{0, 1, 2};
    if (kind == ItemKind::Segments)
        points.resize(6);
    if (odd) {
        points.insert(points.end(), {0, 0, *odd});
        faces.insert(faces.end(), {0, 1, 3, 3, 3, 3});
    }
    if (odd && kind == ItemKind::Segments)
        points.insert(points.end(), {0, 0, 0});
    ItemUpdate update = item(kind, points);
    if (kind == ItemKind::Mesh)
        update = item(kind, points, {}, faces);
    if (kind == ItemKind::Vectors || kind == ItemKind::Boxes)
        update = item(kind, points, std::vector<double>(points.size(), 3));
    return update;
}

class HostileItemsTest : public testing::Test
{
protected:
    HostileItemsTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, Qt::white);
        m_View.setPalette(palette);
        m_View.resize(200, 100);
        SceneUpdate update = seenFrom("front");
        m_View.apply(update);
        ItemUpdate corners = item(ItemKind::Cloud, {-5, 0, -5, 5, 0, 5});
        corners.colour = RGBA8(0, 0, 0, 255);
        send(m_View, "corners", corners);
    }

    QImage picture() { return m_View.picture({200, 100}); }

    QImage pictureWith(ItemUpdate update)
    {
        update.size = 3;
        send(m_View, "item", std::move(update));
        return picture();
    }

    QColor colourAt(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return picture().pixelColor(int(std::floor(pixel.x)), int(std::floor(pixel.y)));
    }

    // What points side by side show of numbers.
    void expectColours(const std::vector<double>& numbers, const std::vector<RGBA8>& expected, bool areLabels = false)
    {
        std::vector<double> points;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            points.insert(points.end(), {double(i), 0, 0});
        ItemUpdate update = item(ItemKind::Cloud, points);
        update.size = 5;
        SceneField field{areLabels ? "labels" : "a", {Numbers(numbers), 1}, areLabels};
        update.addField(field);
        update.shown = field.name = areLabels ? "labels" : "a";
        send(m_View, "item", update);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const QColor colour = colourAt({double(i), 0, 0});
            EXPECT_EQ(RGBA8(colour.red(), colour.green(), colour.blue(), 255), expected[i]) << numbers[i];
        }
    }

    SceneView m_View{"hostile"};
};

TEST_F(HostileItemsTest, WhatIsNoCoordinateIsLeftOutOfEachKind)
{
    const QImage empty = picture();
    for (const ItemKind kind : KINDS) {
        const QImage expected = pictureWith(shape(kind));
        EXPECT_NE(expected, empty);
        const SceneCamera camera = m_View.getCamera();
        for (const double odd : NO_COORDINATES) {
            EXPECT_EQ(pictureWith(shape(kind, odd)), expected) << int(kind) << ", " << odd;
            EXPECT_EQ(m_View.getCamera(), camera);
        }
    }
}

TEST_F(HostileItemsTest, NothingIsDrawnOfNothing)
{
    const QImage empty = picture();
    for (const ItemKind kind : KINDS)
        for (const Points& points : {Points(), Points{NAN, 0, 0}, Points{0, INF, 0, NAN, NAN, NAN}}) {
            ItemUpdate update = item(kind, points, points);
            update.colours = NumberTuples{Colours(), 0};
            update.normals = NumberTuples{Points(), 3};
            update.radii = NumberTuples{Numbers{1.0}, 1};
            update.areEdgesSeen = true;
            SceneField field{"a", {Numbers(), 1}, false};
            update.addField(field);
            EXPECT_EQ(pictureWith(update), empty) << int(kind);
        }
}

TEST_F(HostileItemsTest, FacesWithoutAreaAreNotDrawn)
{
    const QImage empty = picture();
    const Points vertices{0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 1e-30, 0, 0};
    const std::vector<std::vector<int>> faces{{0, 1, 2}, {0, 0, 0}, {0, 3, 1}, {0, 1, 2, 1}, {0, 3, 0, 3, 0}, {0}, {}};
    for (const bool isSmooth : {false, true}) {
        ItemUpdate mesh = item(ItemKind::Mesh, vertices, {}, faces);
        mesh.isSmooth = isSmooth;
        mesh.areEdgesSeen = true;
        mesh.colours = NumberTuples{Colours(std::vector<RGBA8>(faces.size(), RGBA8(255, 0, 0, 255))), 4};
        EXPECT_EQ(pictureWith(mesh), empty);
    }
}

// Three faces at one edge, one of them twice and turned around, and two that share nothing but a corner.
TEST_F(HostileItemsTest, SurfacesNeedNotBeManifolds)
{
    const Points vertices{-1, 0, -1, 1, 0, -1, 0, 0, 1, 0, 1, -3, 0, -1, -3, -1, 0, 3, 1, 0, 3};
    const std::vector<std::vector<int>> faces{{0, 1, 2}, {0, 1, 3}, {0, 1, 4}, {0, 1, 4}, {4, 1, 0}, {2, 6, 5}};
    for (const bool isSmooth : {false, true})
        for (const bool areEdgesSeen : {false, true}) {
            ItemUpdate mesh = item(ItemKind::Mesh, vertices, {}, faces);
            mesh.isSmooth = isSmooth;
            mesh.areEdgesSeen = areEdgesSeen;
            mesh.colours = NumberTuples{Colours(std::vector<RGBA8>(faces.size(), RGBA8(255, 0, 0, 255))), 4};
            pictureWith(mesh);
            for (const Vector3d& inside : {Vector3d(0, 0, -0.5), Vector3d(0, 0, -2), Vector3d(0, 0, 2.5)}) {
                EXPECT_GT(colourAt(inside).red(), 50);
                EXPECT_EQ(colourAt(inside).green(), 0);
            }
        }
}

TEST_F(HostileItemsTest, NumbersMayBeAllTheSameOrWithoutEnds)
{
    const ColourMap map = findColourMap("viridis").value();
    const RGBA8 grey = ColourMap::colourOfNaN();
    const auto at = [&map](double position) { return map.sample(position); };
    expectColours({7, 7, 7}, {at(0.5), at(0.5), at(0.5)});
    expectColours({NAN, NAN}, {grey, grey});
    expectColours({INF, -INF}, {at(1), at(0)});
    expectColours({INF, 7, 7, -INF, NAN}, {at(1), at(0.5), at(0.5), at(0), grey});
    expectColours({-LARGEST, 0, LARGEST, INF}, {at(0), at(0.5), at(1), at(1)});
    expectColours({0, 1e-310, 2e-310}, {at(0), at(0.5), at(1)});
}

TEST_F(HostileItemsTest, LabelsMayBeNone)
{
    const RGBA8 grey = ColourMap::colourOfNaN();
    expectColours({NAN, INF, -1e300, -3, 2.5}, {grey, grey, grey, colourOfLabel(-3), colourOfLabel(2)}, true);
    constexpr std::int64_t LARGE = 100'000'000'000'000'768; // as doubles have it, too
    expectColours({double(LARGE), -double(LARGE), 1e19}, {colourOfLabel(LARGE), colourOfLabel(-LARGE), grey}, true);
}

TEST_F(HostileItemsTest, ColoursAreCutOff)
{
    const std::vector<double> colours{INF, -INF, NAN, 2, 1e300, -1};
    ItemUpdate update = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0});
    update.colours = NumberTuples{Colours(colours), 3};
    pictureWith(update);
    EXPECT_EQ(colourAt({0, 0, 0}), QColor(255, 0, 0));
    EXPECT_EQ(colourAt({1, 0, 0}), QColor(255, 255, 0));
    update.colours = NumberTuples{Colours(std::vector<int>{-1, 1000, 7, std::numeric_limits<int>::min(), 0, 255}), 3};
    pictureWith(update);
    EXPECT_EQ(colourAt({0, 0, 0}), QColor(0, 255, 7));
    EXPECT_EQ(colourAt({1, 0, 0}), QColor(0, 0, 255));
}

TEST_F(HostileItemsTest, NormalsMayHaveNoDirection)
{
    for (const ItemKind kind : {ItemKind::Cloud, ItemKind::Mesh})
        for (const double odd : {0.0, double(NAN), INF, LARGEST, 1e-300}) {
            ItemUpdate update = shape(kind);
            update.colour = RGBA8(255, 0, 0, 255);
            update.normals = NumberTuples{Points(std::vector<double>(9, odd)), 3};
            EXPECT_EQ(numPixels(pictureWith(update), Qt::white), numPixels(pictureWith(shape(kind)), Qt::white))
                << "it is seen, however dark";
        }
}

TEST_F(HostileItemsTest, SizesAndOpacitiesMayBeNumbersOfAnyKind)
{
    for (const ItemKind kind : KINDS)
        for (const double odd : {double(NAN), INF, -INF, -1.0, LARGEST}) {
            ItemUpdate update = shape(kind);
            update.size = odd;
            update.opacity = odd;
            update.areEdgesSeen = true;
            send(m_View, "item", update);
            EXPECT_EQ(picture().size(), QSize(200, 100));
            update.opacity = 1;
            send(m_View, "item", update);
            EXPECT_LT(numPixels(picture(), Qt::white), 200 * 100 - 8) << int(kind) << ", " << odd;
        }
}

} // namespace
} // namespace tavo
