#include "vireo/show/scenes/ScenePicker.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/volumes/volumeItem.h"

// What is found under the pointer, in scenes that are drawn by the driver. There is no view.
namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

class ScenePickerTest : public testing::Test
{
protected:
    void send(const std::string& path, ItemUpdate update)
    {
        SceneUpdate scene;
        scene.items[path] = std::move(update);
        m_Model.apply(scene);
    }

    void transform(const std::string& path, const Matrix4& matrix)
    {
        SceneUpdate scene;
        scene.transforms[path] = matrix;
        m_Model.apply(scene);
    }

    void lookAtAll() { m_Camera.fit(m_Model.box(), {double(m_Size.width()), double(m_Size.height())}); }

    QPointF pixelOf(const Vector3d& point) const
    {
        const SceneCamera::Pixel pixel = m_Camera.project(point, {double(m_Size.width()), double(m_Size.height())});
        return {pixel.x, pixel.y};
    }

    static QPoint rounded(const QPointF& pixel) { return {int(std::floor(pixel.x())), int(std::floor(pixel.y()))}; }

    std::optional<ScenePick> pickAt(const QPoint& pixel) { return m_Picker.pick(m_Camera, m_Size, pixel); }

    // What is under the place; nothing with an empty path if there is nothing.
    Picked pick(const Vector3d& place)
    {
        const std::optional<ScenePick> pick = pickAt(rounded(pixelOf(place)));
        return pick ? pick->picked : Picked();
    }

    std::vector<std::string> linesAt(const Vector3d& place)
    {
        const std::optional<ScenePick> pick = pickAt(rounded(pixelOf(place)));
        return pick ? pick->lines : std::vector<std::string>();
    }

    QSize m_Size{400, 300};
    SceneCamera m_Camera;
    SceneModel m_Model{"test"};
    ScenePicker m_Picker{SceneContext::get(), m_Model};
};

// Hills over a square, with as many vertices a side, seen so that some hide others.
std::vector<Vector3d> hills(int side)
{
    std::vector<Vector3d> vertices;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            vertices.emplace_back(
                10.0 * x / side, 10.0 * y / side, std::sin(20.0 * x / side) * std::cos(17.0 * y / side));
    return vertices;
}

std::vector<std::array<int, 3>> trianglesOfGrid(int side)
{
    std::vector<std::array<int, 3>> triangles;
    for (int y = 0; y + 1 < side; ++y)
        for (int x = 0; x + 1 < side; ++x) {
            const int corner = y * side + x;
            triangles.push_back({corner, corner + 1, corner + side});
            triangles.push_back({corner + side + 1, corner + side, corner + 1});
        }
    return triangles;
}

TEST_F(ScenePickerTest, APointHasTheIndexThatWasSentBesidesPointsThatAreNotShown)
{
    const std::vector<Vector3d> points{{NOT_A_NUMBER, 0, 0}, {0, 0, 0}, {1, NOT_A_NUMBER, 0}, {1, 0, 0.5},
        {0, 0, std::numeric_limits<double>::infinity()}, {0.3, 1, 0}, {2, 0.1, 0.25}};
    send("whole", item(ItemKind::Cloud, {0.0, 0.0, 3.0, 1.0, 0.0, 3.0}));
    send("with/gaps", item(ItemKind::Cloud, points));
    send("z", item(ItemKind::Cloud, {0.0, 2.0, 0.0, 1.0, 2.0, 0.0}));
    lookAtAll();
    for (const std::size_t i : {1U, 3U, 5U, 6U}) {
        EXPECT_EQ(pick(points[i]).path, "with/gaps");
        EXPECT_EQ(pick(points[i]).index, i);
        EXPECT_EQ(pick(points[i]).element, i);
        EXPECT_EQ(pick(points[i]).position, points[i]);
    }
    EXPECT_EQ(pick({1, 0, 3}).path, "whole");
    EXPECT_EQ(pick({1, 0, 3}).index, 1U);
    EXPECT_EQ(pick({1, 2, 0}).path, "z");
    EXPECT_EQ(pick({1, 2, 0}).index, 1U);
}

// Chunks and places of ids, at and beside their ends. Only a few pixels are drawn, so the picture may be as large as it
// takes to see every point apart.
void expectAllOf(int side, const std::function<std::size_t(const Vector3d&)>& pickIndex)
{
    std::vector<std::size_t> numbers{0, 1, 65535, 65536, 65537, 131071, 131072, 499'999, 1'000'000};
    std::mt19937 random(1);
    for (int i = 0; i < 30; ++i)
        numbers.push_back(random() % (std::size_t(side) * std::size_t(side)));
    numbers.push_back(std::size_t(side) * std::size_t(side) - 1);
    for (const std::size_t i : numbers)
        EXPECT_EQ(pickIndex(Vector3d(double(i % std::size_t(side)), double(i / std::size_t(side)), 0)), i);
}

std::vector<Vector3d> grid(int side)
{
    std::vector<Vector3d> points;
    for (int i = 0; i < side * side; ++i)
        points.emplace_back(i % side, i / side, 0);
    return points;
}

TEST_F(ScenePickerTest, IsExactAtAMillionPoints)
{
    constexpr int SIDE = 1024;
    m_Size = {4 * SIDE, 4 * SIDE};
    m_Camera.look(SceneCamera::Side::Top);
    send("0", item(ItemKind::Cloud, grid(SIDE)));
    lookAtAll();
    expectAllOf(SIDE, [this](const Vector3d& point) { return pick(point).index; });
    std::vector<Vector3d> points = grid(SIDE);
    points[7][2] = NOT_A_NUMBER; // now points have indices, and their ids more than one byte of chunks to carry into
    points[70'000][2] = NOT_A_NUMBER;
    for (const char* const path : {"a", "b", "c"}) {
        send(path, item(ItemKind::Cloud, points));
        expectAllOf(SIDE, [this](const Vector3d& point) { return pick(point).index; });
    }
    EXPECT_EQ(pick(grid(SIDE)[7]).path, "0");
    EXPECT_EQ(pick(grid(SIDE)[8]).path, "c") << "of points at one place, the one that was drawn last";
}

// Two chunks each. The ids of the second ones have a byte to carry to, in the middle of the items.
TEST_F(ScenePickerTest, ManyItemsThatHaveIndicesAreToldApart)
{
    constexpr int NUMBER = 140;
    std::vector<Vector3d> points(70'000);
    points.front()[0] = NOT_A_NUMBER;
    const Points sent = points;
    const auto pathOf = [](int i) { return std::to_string(100 + i); };
    for (int i = 0; i < NUMBER; ++i) {
        send(pathOf(i), item(ItemKind::Cloud, sent));
        transform(pathOf(i), translation({double(i), 0, 0}));
    }
    m_Camera.look(SceneCamera::Side::Top);
    m_Camera.setOrthographic(true);
    m_Size = {9, 9}; // all of them, in the pixels that are looked at
    lookAtAll();
    for (const int i : {0, 127, 128, 139}) {
        transform(pathOf(i), translation({double(i), 0, 1}));
        const Picked picked = pick({double(i), 0, 1});
        EXPECT_EQ(picked.path, pathOf(i));
        EXPECT_EQ(picked.index, 69'999U);
        transform(pathOf(i), translation({double(i), 0, 0}));
    }
}

TEST_F(ScenePickerTest, CoordinatesFarFromTheOriginKeepAllTheirDigits)
{
    const std::vector<Vector3d> points{
        {5'500'000.123456, 4.1e5, 100}, {5'500'000.124456, 4.1e5, 100.001}, {5'500'000.125456, 4.1e5, 100}};
    send("survey", item(ItemKind::Cloud, points));
    lookAtAll();
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(pick(points[i]).index, i);
        EXPECT_EQ(pick(points[i]).position, points[i]);
        EXPECT_EQ(pick(points[i]).place, points[i]);
    }
    EXPECT_THAT(linesAt(points[1]), ElementsAre("survey", "point 1", "x 5500000.124456", "y 410000", "z 100.001"));
}

TEST_F(ScenePickerTest, TellsAllThatWasSentOfAPoint)
{
    ItemUpdate update = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0});
    update.colours = NumberTuples{Colours({10, 20, 30, 40, 50, 60}), 0};
    update.colours->numbers = Colours(std::vector<unsigned char>{10, 20, 30, 40, 50, 60});
    update.normals = NumberTuples{Points({0, 0, 1, 0, 1, 0}), 3};
    update.fields = {{"height", {Numbers(std::vector<float>{0.1F, 0.2F}), 1}, false},
        {"id", {Numbers(std::vector<std::int64_t>{1, 9'007'199'254'740'993}), 1}, false},
        {"waiting", {Numbers({1.0}), 1}, false}, {"labels", {Numbers({7, 8}), 1}, true}};
    send("car/lidar", update);
    lookAtAll();
    const Picked picked = pick({1, 0, 0});
    EXPECT_EQ(picked.colour, RGBA8(40, 50, 60, 255));
    EXPECT_EQ(picked.normal, Vector3d(0, 1, 0));
    ASSERT_EQ(picked.fields.size(), 3U) << "without what waits";
    EXPECT_EQ(picked.fields[0].name, "height");
    EXPECT_EQ(picked.fields[0].value, 0.2F);
    EXPECT_EQ(picked.fields[2].name, "labels");
    EXPECT_EQ(picked.fields[2].value, 8);
    EXPECT_THAT(linesAt({1, 0, 0}), ElementsAre("car/lidar", "point 1", "x 1", "y 0", "z 0", "height 0.2",
                                        "id 9007199254740993", "labels 8", "colour 40 50 60 255", "normal 0, 1, 0"));
}

TEST_F(ScenePickerTest, LabelsAreNamed)
{
    ItemUpdate update = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0});
    update.fields = {{"class", {Numbers({7, 8}), 1}, true}, {"height", {Numbers({8, 8}), 1}, false}};
    update.labelNames = {{8, "roof"}};
    send("lidar", update);
    lookAtAll();
    EXPECT_THAT(linesAt({1, 0, 0}), testing::IsSupersetOf({"class 8 (roof)", "height 8"}));
    EXPECT_THAT(linesAt({0, 0, 0}), testing::Contains("class 7")) << "which has no name";
}

TEST_F(ScenePickerTest, TransformsMoveThePlaceAndNotTheCoordinates)
{
    send("car/lidar", item(ItemKind::Cloud, {1, 2, 3, 4, 5, 6}));
    transform("car", translation({100, 0, 0}));
    lookAtAll();
    EXPECT_EQ(pick({104, 5, 6}).position, Vector3d(4, 5, 6));
    EXPECT_EQ(pick({104, 5, 6}).place, Vector3d(104, 5, 6));
    EXPECT_EQ(linesAt({104, 5, 6}).back(), "in the scene 104, 5, 6");
}

TEST_F(ScenePickerTest, TheNearestPixelWins)
{
    ItemUpdate points = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0});
    points.size = 1;
    send("points", points);
    lookAtAll();
    const QPoint there = rounded(pixelOf({0, 0, 0}));
    EXPECT_TRUE(pickAt(there + QPoint(4, -4)));
    EXPECT_TRUE(pickAt(there + QPoint(-4, 4)));
    EXPECT_FALSE(pickAt(there + QPoint(5, 0)));
    EXPECT_FALSE(pickAt(there + QPoint(0, -5)));
    ItemUpdate other = item(ItemKind::Cloud,
        {m_Camera.unproject(
            {there.x() + 5.5, there.y() + 0.5, m_Camera.project({0, 0, 0}, {400, 300}).depth}, {400, 300})});
    other.size = 1;
    send("other", other);
    EXPECT_EQ(pickAt(there + QPoint(2, 0))->picked.path, "points");
    EXPECT_EQ(pickAt(there + QPoint(3, 0))->picked.path, "other");
}

TEST_F(ScenePickerTest, FindsNothingBesideThePicture)
{
    send("points", item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0}));
    lookAtAll();
    m_Camera.setOrthographic(true);
    lookAtAll();
    m_Camera.pan(-pixelOf({0, 0, 0}).x() - 2, 0, m_Camera.getDistance(), {400, 300});
    const QPoint there = rounded(pixelOf({0, 0, 0}));
    ASSERT_LT(there.x(), 0);
    EXPECT_FALSE(pickAt({0, there.y()})) << "what is there is not seen";
    EXPECT_FALSE(m_Picker.placeAt(m_Camera, m_Size, {0, there.y()}));
}

TEST_F(ScenePickerTest, LargePointsAreFoundByTheirEdges)
{
    ItemUpdate points = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0});
    points.size = 30;
    send("points", points);
    lookAtAll();
    const QPoint there = rounded(pixelOf({0, 0, 0}));
    EXPECT_EQ(pickAt(there + QPoint(13, -13))->picked.index, 0U);
    EXPECT_EQ(pickAt(there + QPoint(-13, 13))->picked.index, 0U);
    EXPECT_FALSE(pickAt(there + QPoint(0, 22)));
}

TEST_F(ScenePickerTest, WhatIsHiddenIsNotFound)
{
    m_Camera.look(SceneCamera::Side::Top);
    send("below", item(ItemKind::Cloud, {0, 0, -1, 3, 3, -1}));
    send("above", item(ItemKind::Mesh, {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0}, {}, {0, 1, 2, 0, 2, 3}));
    lookAtAll();
    EXPECT_EQ(pick({0, 0, 0}).path, "above");
    EXPECT_EQ(pick({3, 3, -1}).path, "below");
    ItemUpdate hidden;
    hidden.isVisible = false;
    send("above", hidden);
    EXPECT_EQ(pick({0, 0, -1}).path, "below");
}

TEST_F(ScenePickerTest, FacesAreThoseThatRaysHit)
{
    constexpr int SIDE = 300; // more vertices than a chunk has
    const std::vector<Vector3d> vertices = hills(SIDE);
    m_Camera.setDirection(30, 15);
    m_Size = {4000, 3000};
    for (const bool isSmooth : {false, true}) {
        ItemUpdate surface = item(ItemKind::Mesh, vertices, {}, trianglesOfGrid(SIDE));
        surface.isSmooth = isSmooth;
        send("hills", surface);
        lookAtAll();
        std::mt19937 random(2);
        for (int i = 0; i < 60; ++i) {
            const auto seen = random() % trianglesOfGrid(SIDE).size();
            const std::array<int, 3> triangle = trianglesOfGrid(SIDE)[seen];
            Vector3d centre;
            for (const int vertex : triangle)
                centre += (1.0 / 3) * vertices[std::size_t(vertex)];
            const QPointF pixel = pixelOf(centre);
            const Ray ray =
                rayThrough(m_Camera, {4000, 3000}, {std::floor(pixel.x()) + 0.5, std::floor(pixel.y()) + 0.5});
            const Picked picked = pick(centre);
            ASSERT_EQ(picked.path, "hills");
            const Vector3d away = picked.place - ray.start;
            EXPECT_LT(length(cross(away, ray.direction)) / length(ray.direction), 1e-9) << "it is on the ray";
            const double ahead = dot(away, ray.direction) - dot(centre - ray.start, ray.direction);
            EXPECT_LT(ahead, 0.01 * length(ray.direction)) << "nothing is seen through the surface";
            if (std::abs(ahead) < 0.01 * length(ray.direction)) {
                EXPECT_EQ(picked.element, seen);
                EXPECT_THAT(triangle, testing::Contains(int(picked.index)));
            }
            EXPECT_EQ(picked.position, vertices[picked.index]);
        }
    }
}

TEST_F(ScenePickerTest, ASurfaceOfQuadranglesTellsFaceAndNearestVertex)
{
    m_Camera.look(SceneCamera::Side::Top);
    const std::vector<std::array<int, 4>> faces{{0, 1, 4, 3}, {1, 2, 5, 4}};
    send("quads", item(ItemKind::Mesh, {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0, 1, 1, 0, 2, 1, 0}, {}, faces));
    lookAtAll();
    const Picked picked = pick({1.9, 0.8, 0});
    EXPECT_EQ(picked.element, 1U);
    EXPECT_EQ(picked.index, 5U);
    EXPECT_EQ(picked.position, Vector3d(2, 1, 0));
    EXPECT_LT(length(picked.place - Vector3d(1.9, 0.8, 0)), 0.02);
    EXPECT_EQ(pick({0.1, 0.1, 0}).element, 0U);
    EXPECT_EQ(linesAt({0.1, 0.1, 0})[1], "vertex 0, face 0");
}

TEST_F(ScenePickerTest, WhatBelongsToFacesIsThatOfTheFace)
{
    ItemUpdate house = item(ItemKind::Mesh, {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0, 1, 3, 0});
    house.shape->faces = {Numbers({0, 1, 2, 3, 3, 2, 4}), 1};
    house.shape->numCorners = Numbers({4, 3});
    house.fields = {{"area", {Numbers({4.5, 1.5}), 1}}, {"number", {Numbers({0, 1, 2, 3, 4}), 1}}};
    house.colours = NumberTuples{Colours({10, 20, 30, 40, 50, 60}), 0};
    send("house", std::move(house));
    m_Camera.look(SceneCamera::Side::Top);
    lookAtAll();
    const Picked roof = pick({1, 2.8, 0});
    EXPECT_EQ(roof.element, 1U);
    EXPECT_EQ(roof.index, 4U);
    EXPECT_EQ(roof.fields.at(0).value, 1.5);
    EXPECT_EQ(roof.fields.at(1).value, 4);
    EXPECT_EQ(roof.colour, RGBA8(40, 50, 60, 255));
    const Picked wall = pick({1.8, 0.1, 0});
    EXPECT_EQ(wall.element, 0U);
    EXPECT_EQ(wall.index, 1U);
    EXPECT_EQ(wall.fields.at(0).value, 4.5);
    EXPECT_EQ(wall.colour, RGBA8(10, 20, 30, 255));
}

TEST_F(ScenePickerTest, ConcavePolygonsTellFaceAndNearestVertex)
{
    m_Camera.look(SceneCamera::Side::Top);
    // Beside a triangle, two arms, between which a third polygon lies deeper.
    const std::vector<Vector3d> vertices{{0, 0, 0}, {4, 0, 0}, {4, 1, 0}, {1, 1, 0}, {1, 4, 0}, {0, 4, 0}, {5, 0, 0},
        {6, 0, 0}, {5, 4, 0}, {0, 0, -1}, {4, 0, -1}, {4, 4, -1}, {0, 4, -1}};
    const std::vector<std::vector<int>> polygons{{6, 7, 8}, {2, 3, 4, 5, 0, 1}, {9, 10, 11, 12}};
    ItemUpdate update = item(ItemKind::Mesh, vertices, {}, polygons);
    update.fields = {{"area", {Numbers({2, 7, 16}), 1}, false}};
    update.colours = NumberTuples{Colours({1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}), 3};
    for (const bool isSmooth : {false, true}) {
        update.isSmooth = isSmooth;
        send("polygons", update);
        lookAtAll();
        EXPECT_EQ(pick({3.8, 0.3, 0}).element, 1U);
        EXPECT_EQ(pick({3.8, 0.3, 0}).index, 1U);
        EXPECT_EQ(pick({0.3, 3.8, 0}).element, 1U);
        EXPECT_EQ(pick({0.3, 3.8, 0}).index, 5U);
        EXPECT_EQ(pick({3, 3, -1}).element, 2U) << "between the arms";
        EXPECT_EQ(pick({5.2, 0.3, 0}).element, 0U);
        EXPECT_EQ(pick({5.2, 0.3, 0}).fields[0].value, 2) << "numbers of faces are those of the face";
        EXPECT_EQ(pick({3, 3, -1}).colour, RGBA8(0, 0, 255, 255));
    }
}

TEST_F(ScenePickerTest, NumbersOfLinesAreThoseOfTheLine)
{
    m_Camera.look(SceneCamera::Side::Top);
    ItemUpdate lines = item(ItemKind::Segments, {0, 0, 0, 10, 0, 0, 10, 5, 0, 0, 5, 0});
    lines.fields = {{"length", {Numbers({10, 11}), 1}, false}, {"id", {Numbers({5, 6, 7, 8}), 1}, false}};
    send("lines", lines);
    lookAtAll();
    const Picked picked = pick({2, 5, 0});
    ASSERT_EQ(picked.fields.size(), 2U);
    EXPECT_EQ(picked.fields[0].value, 11);
    EXPECT_EQ(picked.fields[1].value, 8);
}

// More than a chunk has, one large and the others small.
TEST_F(ScenePickerTest, PointsAreAsLargeAsTheirRadius)
{
    m_Camera.look(SceneCamera::Side::Top);
    std::vector<Vector3d> points(70'000, Vector3d(0, 0, 0));
    points.back() = {10, 0, 0};
    std::vector<float> radii(points.size(), 0.01F);
    radii.back() = 2;
    ItemUpdate cloud = item(ItemKind::Cloud, points);
    cloud.radii = NumberTuples{Numbers(radii), 1};
    send("each", cloud);
    lookAtAll();
    EXPECT_EQ(pick({11.3, 1.3, 0}).index, points.size() - 1);
    EXPECT_EQ(pick({8.7, -1.3, 0}).index, points.size() - 1);
    EXPECT_EQ(pick({1, 1, 0}).path, "");
    EXPECT_EQ(pick({0, 0, 0}).index, points.size() - 2);
    cloud = item(ItemKind::Cloud, {0, 0, 0, 10, 0, 0});
    cloud.radii = NumberTuples{Numbers({2.0}), 1};
    send("each", cloud);
    lookAtAll();
    EXPECT_EQ(pick({1.3, 1.3, 0}).element, 0U);
    EXPECT_EQ(pick({8.7, 1.3, 0}).element, 1U);
}

TEST_F(ScenePickerTest, OfSurfacesThatAreSeenFromTheFrontOnlyTheBackIsNotFound)
{
    m_Camera.look(SceneCamera::Side::Top);
    ItemUpdate surface = item(ItemKind::Mesh, {0, 0, 0, 2, 0, 0, 0, 2, 0}, {}, {0, 1, 2});
    surface.areBackFacesSeen = false;
    send("surface", surface);
    lookAtAll();
    EXPECT_EQ(pick({0.5, 0.5, 0}).path, "surface");
    Matrix4 mirrored;
    mirrored.at(0, 0) = -1;
    transform("surface", mirrored);
    lookAtAll();
    EXPECT_EQ(pick({-0.5, 0.5, 0}).path, "surface") << "its front is seen still";
    transform("surface", {});
    m_Camera.look(SceneCamera::Side::Bottom);
    lookAtAll();
    EXPECT_EQ(pick({0.5, 0.5, 0}).path, "");
    surface.areBackFacesSeen = true;
    send("surface", surface);
    EXPECT_EQ(pick({0.5, 0.5, 0}).path, "surface");
}

TEST_F(ScenePickerTest, LinesTellTheirNumberAndTheNearerPoint)
{
    m_Camera.look(SceneCamera::Side::Top);
    const Points points{0, 0, 0, 10, 0, 0, 10, 5, 0, 0, 5, 0};
    for (const ItemKind kind : {ItemKind::Lines, ItemKind::Segments}) {
        send("lines", item(kind, points));
        lookAtAll();
        const Picked picked = pick({3, 5, 0});
        EXPECT_EQ(picked.element, kind == ItemKind::Lines ? 2U : 1U);
        EXPECT_EQ(picked.index, 3U);
        EXPECT_EQ(picked.position, Vector3d(0, 5, 0));
        EXPECT_LT(length(picked.place - Vector3d(3, 5, 0)), 0.05);
        EXPECT_EQ(pick({8, 0, 0}).element, 0U);
        EXPECT_EQ(pick({8, 0, 0}).index, 1U);
    }
}

TEST_F(ScenePickerTest, ArrowsBoxesAndAxesTellTheirNumber)
{
    m_Camera.look(SceneCamera::Side::Top);
    send("arrows", item(ItemKind::Vectors, {0, 0, 0, 5, 0, 0}, {0, 2, 0, 0, 2, 0}));
    send("boxes", item(ItemKind::Boxes, {10, 0, 0, 12, 0, 0}, {11, 1, 1, 13, 1, 1}));
    ItemUpdate axes;
    axes.shape.emplace();
    axes.shape->kind = ItemKind::Frame;
    axes.shape->frame = translation({0, 4, 0});
    axes.fields = {{"none", {Numbers(), 1}, false}};
    send("axes", axes);
    lookAtAll();
    EXPECT_EQ(pick({5, 1, 0}).path, "arrows");
    EXPECT_EQ(pick({5, 1, 0}).index, 1U);
    EXPECT_EQ(pick({5, 1, 0}).position, Vector3d(5, 0, 0));
    EXPECT_LT(length(pick({5, 1, 0}).place - Vector3d(5, 1, 0)), 0.05);
    EXPECT_THAT(linesAt({5, 1, 0}), testing::Contains("direction 0, 2, 0"));
    EXPECT_EQ(pick({12, 0.5, 1}).path, "boxes");
    EXPECT_EQ(pick({12, 0.5, 1}).index, 1U);
    EXPECT_EQ(linesAt({12, 0.5, 1})[1], "box 1");
    EXPECT_EQ(pick({0, 4.7, 0}).index, 1U);
    EXPECT_EQ(linesAt({0, 4.7, 0})[1], "y axis");
    EXPECT_THAT(pick({0, 4.7, 0}).fields, IsEmpty());
}

// Layers of 5 x 5 samples: nothing on top, then haze, then what hides the rest. Seen from above.
ItemUpdate layers()
{
    std::vector<float> samples;
    for (const float value : {2.0F, 3.0F, 1.0F, 0.5F, 0.0F})
        samples.insert(samples.end(), 25, value);
    samples[25 * 2] = samples[25 * 1] = samples[0] = static_cast<float>(NOT_A_NUMBER);
    const VolumeGrid grid{
        {5, 5, 5}, {2, 2, 2}, {10, 20, 30}, {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)}};
    ItemUpdate update = volumeItem(grid, {Numbers(samples), 1});
    update.range = std::pair(0.0, 4.0);
    update.opacities = OpacityCurve{{0, 0}, {0.125, 0.02}, {0.25, 1}, {1, 1}};
    return update;
}

TEST_F(ScenePickerTest, OfAVolumeTheSampleThatHidesTheRestIsHit)
{
    send("layers", layers());
    for (const bool isOrthographic : {true, false}) {
        m_Camera.look(SceneCamera::Side::Top);
        m_Camera.setOrthographic(isOrthographic);
        lookAtAll();
        const Vector3d there(12, 26, 34);
        EXPECT_EQ(pick(there).path, "layers");
        EXPECT_EQ(pick(there).index, 25U * 2 + 5 * 3 + 1);
        EXPECT_EQ(pick(there).position, there);
        EXPECT_EQ(pick(there).place, there);
        ASSERT_EQ(pick(there).fields.size(), 1U);
        EXPECT_EQ(pick(there).fields[0].name, "value");
        EXPECT_EQ(pick(there).fields[0].value, 1);
        EXPECT_THAT(linesAt(there), ElementsAre("layers", "sample 1, 3, 2", "x 12", "y 26", "z 34", "value 1"));
    }
    m_Camera.setOrthographic(true);
    lookAtAll();
    EXPECT_EQ(pick({10, 20, 34}).path, "") << "there are no numbers";
    ItemUpdate greatest;
    greatest.isMaximum = true;
    send("layers", greatest);
    EXPECT_EQ(pick({12, 26, 34}).fields.at(0).value, 3);
    EXPECT_EQ(pick({12, 26, 34}).position, Vector3d(12, 26, 32));
    ItemUpdate faint;
    faint.opacity = 0.05;
    send("layers", faint);
    EXPECT_EQ(pick({12, 26, 34}).path, "") << "it can hardly be seen";
}

TEST_F(ScenePickerTest, AVolumeIsHitIfNothingIsBeforeIt)
{
    m_Camera.look(SceneCamera::Side::Top);
    m_Camera.setOrthographic(true);
    send("layers", layers());
    send("points", item(ItemKind::Cloud, {12, 26, 36, 14, 26, 33}));
    lookAtAll();
    EXPECT_EQ(pick({12, 26, 36}).path, "points");
    EXPECT_EQ(pick({14, 26, 34}).path, "layers") << "the point is in it";
    SceneUpdate clip;
    clip.clipBox.emplace().emplace();
    (*clip.clipBox)->extend({0, 0, 0});
    (*clip.clipBox)->extend({40, 40, 32.9});
    m_Model.apply(clip);
    EXPECT_EQ(pick({18, 26, 32}).fields.at(0).value, 3) << "the rest is cut away";
    *clip.clipBox = std::nullopt;
    m_Model.apply(clip);
    transform("layers", translation({0, 100, 0}));
    lookAtAll();
    EXPECT_EQ(pick({18, 126, 34}).position, Vector3d(18, 26, 34));
    EXPECT_EQ(pick({18, 126, 34}).place, Vector3d(18, 126, 34));
    ItemUpdate hidden;
    hidden.isVisible = false;
    send("layers", hidden);
    EXPECT_EQ(pick({18, 126, 34}).path, "");
}

TEST_F(ScenePickerTest, PlacesAreThoseOfWhatIsDrawn)
{
    send("points", item(ItemKind::Cloud, {0, 0, 0, 1, 0.3, 0.2, 0, 1, 0}));
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        lookAtAll();
        const std::optional<Vector3d> place = m_Picker.placeAt(m_Camera, m_Size, rounded(pixelOf({1, 0.3, 0.2})));
        ASSERT_TRUE(place);
        EXPECT_LT(length(*place - Vector3d(1, 0.3, 0.2)), 0.02);
        EXPECT_FALSE(m_Picker.placeAt(m_Camera, m_Size, {3, 3}));
    }
}

} // namespace
} // namespace tavo
