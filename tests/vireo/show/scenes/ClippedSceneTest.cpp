#include <QApplication>
#include <cmath>
#include <gmock/gmock.h>
#include <set>

#include "tests/vireo/show/scenes/sceneUpdates.h"

// Pictures of what a clip box leaves of a scene.
namespace tavo {
namespace {

const QColor RED(255, 0, 0);
const QColor GREEN(0, 255, 0);
const QColor SECTION_OF_RED(178, 0, 0);
constexpr double PI = 3.14159265358979323846;
constexpr int SIDE = 190; // too small for the orientation mark

SceneBox boxBetween(const Vector3d& low, const Vector3d& high)
{
    SceneBox box;
    box.extend(low);
    box.extend(high);
    return box;
}

// A rectangle as seen from the front.
std::vector<Vector3d> rectangle(const Vector3d& centre, double size)
{
    return {centre + Vector3d(-size, 0, -size), centre + Vector3d(size, 0, -size), centre + Vector3d(size, 0, size),
        centre + Vector3d(-size, 0, size)};
}

// Its faces go around counter-clockwise as seen from outside, or from inside. Each has vertices of its own if not
// shared.
ItemUpdate cube(const Vector3d& centre, double size, bool isShared = true, bool isInsideOut = false)
{
    const std::array<Vector3d, 8> corners =
        boxBetween(centre - Vector3d(size, size, size), centre + Vector3d(size, size, size)).corners();
    std::vector<std::array<int, 4>> faces{
        {0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    std::vector<Vector3d> vertices(corners.begin(), corners.end());
    if (!isShared)
        vertices.clear();
    for (std::array<int, 4>& face : faces) {
        if (isInsideOut)
            std::reverse(face.begin(), face.end());
        for (int& vertex : face)
            if (!isShared) {
                vertices.push_back(corners[std::size_t(vertex)]);
                vertex = int(vertices.size()) - 1;
            }
    }
    ItemUpdate update = item(ItemKind::Mesh, vertices, {}, faces);
    update.colour = RGBA8(255, 0, 0, 255);
    return update;
}

class ClippedSceneTest : public testing::Test
{
protected:
    ClippedSceneTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, Qt::white);
        palette.setColor(QPalette::Text, Qt::black);
        m_View.setPalette(palette);
        m_View.resize(SIDE, SIDE);
        SceneUpdate plain = seenFrom("front");
        plain.hasBearings = false;
        m_View.apply(plain);
    }

    void clip(const std::optional<SceneBox>& box)
    {
        SceneUpdate update;
        update.clipBox = box;
        m_View.apply(update);
    }

    void clip(const Vector3d& low, const Vector3d& high) { clip(boxBetween(m_Centre + low, m_Centre + high)); }

    void look(const std::string& side, bool isOrthographic = true)
    {
        SceneUpdate update = seenFrom(side, isOrthographic);
        m_View.apply(update);
    }

    QImage picture() { return m_View.picture({SIDE, SIDE}); }
    QColor middle() { return picture().pixelColor(SIDE / 2, SIDE / 2); }

    // Sends what reaches from -1 to 1 in x, and sees that the box leaves its left half.
    void expectHalf(const char* what, ItemUpdate update)
    {
        update.colour = RGBA8(255, 0, 0, 255);
        send(m_View, "item", update);
        send(m_View, "frame", item(ItemKind::Cloud, rectangle(m_Centre, 2)));
        clip({});
        const auto isCoveredBeyond = [this](int x, int end) {
            const QImage seen = picture();
            for (; x < end; ++x)
                for (int y = 20; y < SIDE - 20; ++y)
                    if (seen.pixelColor(x, y) != QColor(Qt::white))
                        return true;
            return false;
        };
        EXPECT_TRUE(isCoveredBeyond(SIDE / 2 + 3, SIDE - 20)) << what;
        clip({-3, -3, -3}, {0, 3, 3});
        EXPECT_TRUE(isCoveredBeyond(20, SIDE / 2 - 3)) << what;
        EXPECT_FALSE(isCoveredBeyond(SIDE / 2 + 3, SIDE - 20)) << what;
        if (!update.opacity) {
            update.opacity = 0.5;
            expectHalf(what, update);
        }
    }

    SceneView m_View{"test"};
    Vector3d m_Centre;
};

TEST_F(ClippedSceneTest, OfEverythingOnlyWhatIsInTheBoxIsSeen)
{
    for (const Vector3d& centre : {Vector3d(), Vector3d(5.5e6, -3e6, 120)}) {
        m_Centre = centre;
        SceneUpdate clear;
        clear.clear();
        m_View.apply(clear);
        const std::vector<Vector3d> corners = rectangle(centre, 1);
        ItemUpdate cloud = item(ItemKind::Cloud, corners);
        cloud.size = 5;
        expectHalf("cloud", cloud);
        cloud.normals = NumberTuples{Points{0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0}, 3};
        expectHalf("cloud in the light", cloud);
        cloud.size.reset();
        cloud.radii = NumberTuples{Numbers{0.1}, 1};
        expectHalf("large points", cloud);
        expectHalf("surface", item(ItemKind::Mesh, corners, {}, std::vector<std::array<int, 4>>{{0, 1, 2, 3}}));
        ItemUpdate edges = item(ItemKind::Mesh, corners, {}, std::vector<std::array<int, 4>>{{0, 1, 2, 3}});
        edges.areEdgesSeen = true;
        expectHalf("edges", edges);
        expectHalf("lines", item(ItemKind::Lines, corners));
        expectHalf("segments", item(ItemKind::Segments, std::vector<Vector3d>{corners[0], corners[2]}));
        const Vector3d along(2, 0, 1);
        expectHalf("arrows", item(ItemKind::Vectors, std::vector<Vector3d>{corners[0]}, std::vector<Vector3d>{along}));
        expectHalf(
            "boxes", item(ItemKind::Boxes, std::vector<Vector3d>{corners[0]}, std::vector<Vector3d>{corners[2]}));
    }
}

TEST_F(ClippedSceneTest, TextsOutsideAreNotSeen)
{
    send(m_View, "frame", item(ItemKind::Cloud, rectangle({}, 2)));
    ItemUpdate text = item(ItemKind::Text, {0, 0, 0});
    text.shape->text = "MMMM";
    text.colour = RGBA8(255, 0, 0, 255);
    send(m_View, "text", text);
    EXPECT_GT(numPixels(picture(), RED), 0);
    clip({1, -3, -3}, {3, 3, 3});
    EXPECT_EQ(numPixels(picture(), RED), 0);
}

// The light by depths is one of whole pictures.
TEST_F(ClippedSceneTest, TheGroundIsAsBright)
{
    send(m_View, "frame", item(ItemKind::Cloud, rectangle({}, 2)));
    clip({-3, -3, -3}, {0, 3, 3});
    EXPECT_EQ(picture().pixelColor(SIDE - 30, SIDE / 2), QColor(Qt::white));
}

TEST_F(ClippedSceneTest, AClosedSurfaceLooksSolidWhereItIsCut)
{
    for (const bool isOrthographic : {true, false})
        for (const bool isShared : {true, false})
            for (const bool isInsideOut : {false, true}) {
                look("front", isOrthographic);
                send(m_View, "cube", cube({}, 1, isShared, isInsideOut));
                clip({});
                EXPECT_EQ(middle(), RED);
                clip({-3, -0.2, -3}, {3, 3, 3});
                EXPECT_EQ(middle(), SECTION_OF_RED) << isOrthographic << isShared << isInsideOut;
                clip({-3, -0.2, -3}, {3, -0.1, 3});
                EXPECT_EQ(middle(), SECTION_OF_RED) << "a slab has no other side that is seen";
                const QRect solid = rectOf(picture(), SECTION_OF_RED);
                EXPECT_NEAR(solid.width(), solid.height(), 1);
                EXPECT_NEAR(numPixels(picture(), SECTION_OF_RED), solid.width() * solid.height(), 2 * solid.width());
                look("back", isOrthographic);
                EXPECT_EQ(middle(), SECTION_OF_RED);
            }
}

TEST_F(ClippedSceneTest, ABoxThatReachesFarBeyondEverythingCutsAsWell)
{
    for (const Vector3d& centre : {Vector3d(), Vector3d(5.5e6, -3e6, 120)})
        for (const double reach : {1e5, 1e7, 1e17, 1e300}) {
            m_Centre = centre;
            send(m_View, "cube", cube(centre, 1));
            clip({});
            clip({-3, -0.2, -3}, {3, 3, 3});
            const QImage expected = picture();
            EXPECT_EQ(expected.pixelColor(SIDE / 2, SIDE / 2), SECTION_OF_RED);
            clip({-reach, -0.2, -reach}, {reach, reach, reach});
            EXPECT_EQ(picture(), expected) << reach << " at " << centre[0];
            clip({0, -reach, -reach}, {reach, reach, reach});
            const QImage half = picture();
            EXPECT_EQ(half.pixelColor(SIDE / 2 + 20, SIDE / 2), RED) << reach << " at " << centre[0];
            EXPECT_EQ(half.pixelColor(SIDE / 2 - 20, SIDE / 2), QColor(Qt::white)) << reach << " at " << centre[0];
            clip({2, -reach, -reach}, {reach, reach, reach});
            EXPECT_EQ(numPixels(picture(), Qt::white), SIDE * SIDE) << "the cube is not in it";
        }
}

// Of so many sides, with vertices of its own for each of its meridians and at its poles.
ItemUpdate ball(const Vector3d& centre, int sides, bool isOpen = false)
{
    std::vector<Vector3d> vertices;
    std::vector<std::array<int, 4>> faces;
    for (int i = 0; i <= sides; ++i)
        for (int j = 0; j <= sides; ++j) {
            const double up = PI * j / sides;
            const double around = 2 * PI * i / sides;
            vertices.push_back(
                centre + Vector3d(std::sin(up) * std::cos(around), std::sin(up) * std::sin(around), std::cos(up)));
        }
    for (int i = 0; i < sides; ++i)
        for (int j = isOpen ? 1 : 0; j < sides; ++j) {
            const int first = i * (sides + 1) + j;
            faces.push_back({first, first + 1, first + sides + 2, first + sides + 1});
        }
    ItemUpdate update = item(ItemKind::Mesh, vertices, {}, faces);
    update.colour = RGBA8(255, 0, 0, 255);
    return update;
}

TEST_F(ClippedSceneTest, VerticesThatRoundingKeepsApartAreTheSame)
{
    for (const Vector3d& centre : {Vector3d(), Vector3d(5.5e6, -3e6, 120)})
        for (const int sides : {12, 37, 50}) {
            m_Centre = centre;
            send(m_View, "ball", ball(centre, sides));
            clip({-3, -0.2, -3}, {3, 3, 3});
            EXPECT_EQ(middle(), SECTION_OF_RED) << sides << " at " << centre[0];
            send(m_View, "ball", ball(centre, sides, true));
            EXPECT_GT(middle().red(), 240) << "it is open at its top";
        }
}

// A vertex that no face has says nothing of how large the surface is.
TEST_F(ClippedSceneTest, AnOpenSurfaceStaysOpenBesideAVertexFarAway)
{
    ItemUpdate bowl = cube({}, 1);
    std::vector<double> numbers;
    for (std::size_t i = 0; i < 24; ++i)
        numbers.push_back(bowl.shape->points.numbers[i]);
    numbers.insert(numbers.end(), {1e20, 1e20, 1e20});
    bowl = item(ItemKind::Mesh, Points(numbers.data(), numbers.size()), {},
        std::vector<std::array<int, 4>>{{0, 2, 3, 1}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}});
    SceneItem surface(0);
    surface.apply(bowl);
    EXPECT_FALSE(surface.isClosedSurface());
}

TEST_F(ClippedSceneTest, ASectionIsCutOnSeveralSides)
{
    send(m_View, "cube", cube({}, 1));
    clip({-0.5, -0.5, -0.5}, {3, 3, 3});
    m_View.getCamera().setDirection(-40, -30);
    m_View.showChoice();
    const SceneCamera::Pixel corner = m_View.getCamera().project({-0.5, -0.5, -0.5}, m_View.viewSize());
    const QImage seen = picture();
    std::set<int> reds;
    for (const Vector3d& inside : {Vector3d(-0.5, 0.2, 0.2), Vector3d(0.2, -0.5, 0.2), Vector3d(0.2, 0.2, -0.5)}) {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(inside, m_View.viewSize());
        const QColor colour = seen.pixelColor(int(pixel.x), int(pixel.y));
        EXPECT_LT(colour.red(), 178);
        EXPECT_GT(colour.red(), 101);
        EXPECT_EQ(colour.green(), 0);
        EXPECT_LT(corner.depth, pixel.depth);
        reds.insert(colour.red());
    }
    EXPECT_EQ(reds.size(), 3U) << "the faces can be told apart";
}

TEST_F(ClippedSceneTest, HollowsStayHollow)
{
    ItemUpdate hollow = cube({}, 1);
    const ItemUpdate inner = cube({}, 0.5);
    std::vector<double> numbers;
    std::vector<std::array<int, 4>> faces;
    int first = 0;
    for (const ItemUpdate* const part : {&std::as_const(hollow), &inner}) {
        for (std::size_t i = 0; i < 24; ++i)
            numbers.push_back(part->shape->points.numbers[i]);
        for (std::size_t i = 0; i < 24; i += 4)
            faces.push_back({first + int(part->shape->faces.numbers[i]), first + int(part->shape->faces.numbers[i + 1]),
                first + int(part->shape->faces.numbers[i + 2]), first + int(part->shape->faces.numbers[i + 3])});
        first += 8;
    }
    hollow = item(ItemKind::Mesh, Points(numbers.data(), numbers.size()), {}, faces);
    hollow.colour = RGBA8(255, 0, 0, 255);
    send(m_View, "hollow", hollow);
    clip({-3, 0, -3}, {3, 3, 3});
    const QImage seen = picture();
    EXPECT_EQ(seen.pixelColor(SIDE / 2, SIDE / 2), RED) << "the far side of the hollow";
    const SceneCamera::Pixel wall = m_View.getCamera().project({0.75, 0, 0}, m_View.viewSize());
    EXPECT_EQ(seen.pixelColor(int(wall.x), int(wall.y)), SECTION_OF_RED);
}

TEST_F(ClippedSceneTest, OpenSurfacesHaveNoInside)
{
    ItemUpdate bowl = cube({}, 1);
    bowl.shape->faces.numbers =
        Faces(std::vector<std::array<int, 4>>{{0, 2, 3, 1}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}});
    send(m_View, "bowl", bowl);
    clip({-3, -0.2, -3}, {3, 3, 3});
    EXPECT_EQ(middle(), RED) << "its back";
}

TEST_F(ClippedSceneTest, ThroughASectionOneSeesAsThroughItsSurface)
{
    ItemUpdate clear = cube({}, 1);
    clear.opacity = 0.5;
    send(m_View, "cube", clear);
    clip({-3, -0.2, -3}, {3, -0.1, 3});
    const QColor seen = middle();
    EXPECT_NEAR(seen.red(), (178 + 255) / 2, 2);
    EXPECT_NEAR(seen.green(), 255 / 2, 2);
    EXPECT_EQ(picture().pixelColor(3, 3), QColor(Qt::white));
}

TEST_F(ClippedSceneTest, ASectionHidesWhatIsBehindIt)
{
    send(m_View, "cube", cube({}, 1));
    ItemUpdate point = item(ItemKind::Cloud, {0, 0.5, 0});
    point.size = 9;
    point.colour = RGBA8(0, 255, 0, 255);
    send(m_View, "point", point);
    clip({-3, -0.2, -3}, {3, 3, 3});
    EXPECT_EQ(numPixels(picture(), GREEN), 0);
}

TEST_F(ClippedSceneTest, WhatFillsASectionIsPicked)
{
    const auto pickAt = [this](const QPoint& pixel) -> const std::optional<ScenePick>& {
        m_View.hover(pixel);
        return m_View.getMarks().hovered();
    };
    const QPoint middle(SIDE / 2, SIDE / 2);
    for (const bool isMoved : {false, true}) {
        send(m_View, "cube", cube({}, 1));
        send(m_View, "behind", item(ItemKind::Cloud, {0, 0.5, 0}));
        SceneUpdate update;
        update.transforms["cube"] = isMoved ? translation({0.25, 0.125, 0}) : Matrix4();
        m_View.apply(update);
        clip({-3, -0.25, -3}, {3, 3, 3});
        ASSERT_TRUE(pickAt(middle));
        const Picked picked = pickAt(middle)->picked;
        EXPECT_EQ(picked.path, "cube");
        EXPECT_EQ(picked.element, 3U) << "the face behind the section";
        EXPECT_DOUBLE_EQ(picked.place[1], -0.25);
        EXPECT_NEAR(picked.place[0], isMoved ? 0.25 : 0, 0.05) << "the middle of all";
        EXPECT_EQ(picked.position[1], 1);
        EXPECT_DOUBLE_EQ(m_View.hitAt(middle).value()[1], -0.25);
        EXPECT_EQ(pickAt(middle)->lines.at(1), "section");
        clip({-3, 1.25, -3}, {3, 3, 3});
        EXPECT_FALSE(pickAt(middle)) << "there is nothing of it";
        clip({-3, -3, -3}, {3, 3, 3});
        EXPECT_EQ(pickAt(middle)->picked.element, 2U) << "its own face";
    }
}

TEST_F(ClippedSceneTest, WhatIsOutsideIsNotPicked)
{
    for (const Vector3d& centre : {Vector3d(), Vector3d(5.5e6, -3e6, 120)}) {
        m_Centre = centre;
        send(m_View, "near",
            item(ItemKind::Mesh, rectangle(centre - Vector3d(0, 1, 0), 1), {},
                std::vector<std::array<int, 4>>{{0, 1, 2, 3}}));
        ItemUpdate point = item(ItemKind::Cloud, std::vector<Vector3d>{centre + Vector3d(0, 1, 0)});
        point.size = 9;
        send(m_View, "far", point);
        const QPoint middle(SIDE / 2, SIDE / 2);
        const auto pathAt = [this](const QPoint& pixel) {
            m_View.hover(pixel);
            const std::optional<ScenePick>& pick = m_View.getMarks().hovered();
            return pick ? pick->picked.path : "";
        };
        clip({});
        EXPECT_EQ(pathAt(middle), "near");
        clip({-3, 0, -3}, {3, 3, 3});
        EXPECT_EQ(pathAt(middle), "far");
        EXPECT_NEAR((*m_View.hitAt(middle))[1], centre[1] + 1, 1e-2);
        clip({-3, 2, -3}, {3, 3, 3});
        EXPECT_EQ(pathAt(middle), "");
        EXPECT_FALSE(m_View.hitAt(middle));
    }
}

// Faces of one vertex, one of which the box leaves out.
TEST_F(ClippedSceneTest, ThePlaceThatIsPickedIsInTheBox)
{
    send(m_View, "cube", cube({}, 1));
    clip({-3, 0, -3}, {3, 3, 3});
    m_View.getCamera().setDirection(40, 25);
    m_View.showChoice();
    int numPicked = 0;
    for (int x = 5; x < SIDE; x += 12)
        for (int y = 5; y < SIDE; y += 12) {
            m_View.hover(QPoint(x, y));
            const std::optional<ScenePick>& pick = m_View.getMarks().hovered();
            if (!pick)
                continue;
            ++numPicked;
            EXPECT_GE(pick->picked.place[1], -1e-3) << x << ' ' << y;
        }
    EXPECT_GT(numPicked, 20);
}

TEST_F(ClippedSceneTest, NoViewMovesWhenTheBoxComes)
{
    send(m_View, "cube", cube({}, 1));
    const SceneCamera before = m_View.getCamera();
    clip({0, 0, 0}, {0.1, 0.1, 0.1});
    EXPECT_TRUE(m_View.getCamera() == before);
}

} // namespace
} // namespace tavo
