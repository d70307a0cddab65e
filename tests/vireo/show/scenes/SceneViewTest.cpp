#include "vireo/show/scenes/SceneView.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <gmock/gmock.h>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/colours/colourOfLabel.h"

// Pictures of scenes. Pixels are exact: what is looked at covers them whole, or leaves them as they are.
namespace tavo {
namespace {

const QColor RED(255, 0, 0);
const QColor GREEN(0, 255, 0);
const QColor GROUND(Qt::white);
constexpr RGBA8 (*rgba)(const QColor&) = [](const QColor& colour) {
    return RGBA8(colour.red(), colour.green(), colour.blue(), colour.alpha());
};

// A square of 2 x 2 about a point, as seen from the front.
std::vector<Vector3d> squareAt(const Vector3d& centre, double size = 1)
{
    return {centre + Vector3d(-size, 0, -size), centre + Vector3d(size, 0, -size), centre + Vector3d(size, 0, size),
        centre + Vector3d(-size, 0, size)};
}

class SceneViewTest : public testing::Test
{
protected:
    SceneViewTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, GROUND);
        palette.setColor(QPalette::Text, Qt::black);
        m_View.setPalette(palette);
        m_View.resize(200, 100);
        SceneUpdate plain;
        plain.hasBearings = false;
        m_View.apply(plain);
        look("front");
    }

    void look(const std::string& side, bool isOrthographic = true)
    {
        SceneUpdate update = seenFrom(side, isOrthographic);
        m_View.apply(update);
    }

    void sendColoured(const std::string& path, ItemUpdate update, const QColor& colour)
    {
        update.colour = rgba(colour);
        send(m_View, path, std::move(update));
    }

    void sendCorners() { sendColoured("corners", item(ItemKind::Cloud, squareAt({0, 0, 0}, 5)), Qt::black); }

    QImage picture() { return m_View.picture({200, 100}); }

    QPoint pixelOf(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return {int(std::floor(pixel.x)), int(std::floor(pixel.y))};
    }

    SceneView m_View{"test"};
};

// Else three versions would be in memory for a moment.
TEST_F(SceneViewTest, WhatIsReplacedGoesBeforeWhatReplacesItIsTaken)
{
    auto owner = std::make_shared<const std::vector<Vector3d>>(squareAt({0, 0, 0}));
    const std::weak_ptr<const std::vector<Vector3d>> shown = owner;
    ItemUpdate square = item(ItemKind::Cloud, {});
    square.shape->points.numbers = NumberArray(owner, owner->data(), 3 * owner->size(), NumberType::Float64);
    owner.reset();
    send(m_View, "square", std::move(square));
    ASSERT_FALSE(shown.expired());

    SceneUpdate update;
    update.items["square"].size = 2;
    m_View.makeRoom(update.replaced());
    EXPECT_FALSE(shown.expired()) << "its points stay";
    update.items["square"] = item(ItemKind::Cloud, squareAt({1, 0, 0}));
    m_View.makeRoom(update.replaced());
    EXPECT_TRUE(shown.expired());
    m_View.apply(update);
}

TEST_F(SceneViewTest, PointsAreWhereTheyAre)
{
    sendCorners();
    ItemUpdate point = item(ItemKind::Cloud, {1, 0, 2});
    point.size = 5;
    sendColoured("point", point, RED);
    const QRect rect = rectOf(picture(), RED);
    EXPECT_EQ(rect.size(), QSize(5, 5));
    EXPECT_LE((rect.center() - pixelOf({1, 0, 2})).manhattanLength(), 1);
}

TEST_F(SceneViewTest, LargePointsAreDiscs)
{
    sendCorners();
    ItemUpdate point = item(ItemKind::Cloud, {0, 0, 0});
    const auto covered = [&](double size) {
        point.size = size;
        sendColoured("point", point, RED);
        const QImage seen = picture();
        EXPECT_EQ(rectOf(seen, RED).size(), QSize(int(size), int(size))) << "as wide as before";
        return numPixels(seen, RED);
    };
    EXPECT_EQ(covered(2), 4);
    EXPECT_EQ(covered(3), 9);
    const double pi = 3.14159265;
    EXPECT_NEAR(covered(20), pi * 100, 12);
    point.normals = NumberTuples{Points{0, -1, 0}, 3};
    EXPECT_NEAR(covered(30), pi * 225, 18) << "in the light";
    point.normals.reset();
    point.opacity = 0.999;
    EXPECT_NEAR(covered(20), pi * 100, 12);
}

// As programs send them that care little for the order of corners.
TEST_F(SceneViewTest, NormalsThatPointAwayFromTheFacesAreAsBright)
{
    const std::vector<Vector3d> square = squareAt({0, 0, 0});
    for (const int y : {-1, 1})
        for (const std::vector<int>& faces : {std::vector{0, 1, 2, 0, 2, 3}, std::vector{2, 1, 0, 3, 2, 0}}) {
            ItemUpdate mesh = item(ItemKind::Mesh, square, {}, faces);
            mesh.normals = NumberTuples{Points{0, y, 0, 0, y, 0, 0, y, 0, 0, y, 0}, 3};
            sendColoured("mesh", mesh, RED);
            for (const char* const side : {"front", "back"}) {
                look(side);
                EXPECT_EQ(picture().pixelColor(100, 50), RED) << y << side;
            }
        }
}

// As with the faces' own normals.
TEST_F(SceneViewTest, NormalsThatAreInclinedAreDarker)
{
    ItemUpdate mesh = item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{2, 1, 0, 3, 2, 0});
    mesh.normals = NumberTuples{Points{0, -3, 4, 0, -3, 4, 0, -3, 4, 0, -3, 4}, 3};
    sendColoured("mesh", mesh, RED);
    look("front");
    EXPECT_NEAR(picture().pixelColor(100, 50).red(), 255 * (0.25 + 0.75 * 0.6), 2);
}

TEST_F(SceneViewTest, TheNearerOneIsSeen)
{
    sendColoured("near", item(ItemKind::Mesh, squareAt({0, -1, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}), RED);
    sendColoured("far", item(ItemKind::Mesh, squareAt({0, 1, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}), GREEN);
    EXPECT_EQ(picture().pixelColor(100, 50), RED) << "by the headlight, straight on";
    look("back");
    EXPECT_EQ(picture().pixelColor(100, 50), GREEN) << "the other side, too";
}

TEST_F(SceneViewTest, QuadranglesAreWhole)
{
    sendColoured(
        "quad", item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector<std::array<int, 4>>{{0, 1, 2, 3}}), RED);
    const QRect rect = rectOf(picture(), RED);
    EXPECT_EQ(numPixels(picture(), RED), rect.width() * rect.height());
    EXPECT_GT(rect.height(), 85);
    EXPECT_LE(std::abs(rect.width() - rect.height()), 1);
}

TEST_F(SceneViewTest, PolygonsAreWhole)
{
    sendCorners();
    // Like an L and, beside it, a pentagon with a triangle on top.
    const Points vertices{-3, 0, -2, 0, 0, -2, 0, 0, -1, -2, 0, -1, -2, 0, 2, -3, 0, 2, //
        1, 0, -2, 3, 0, -2, 3, 0, 0, 2, 0, 1, 1, 0, 0, 2, 0, 3};
    const std::vector<std::vector<int>> polygons{{2, 3, 4, 5, 0, 1}, {6, 7, 8, 9, 10}, {9, 8, 11}, {0, 1}, {3, 3, 3}};
    ItemUpdate mesh = item(ItemKind::Mesh, vertices, {}, polygons);
    mesh.isSmooth = true;
    sendColoured("polygons", mesh, RED);
    const QImage shown = picture();
    for (const Vector3d& inside : {Vector3d(-2.5, 0, 1.8), Vector3d(-0.2, 0, -1.5), Vector3d(-2.8, 0, -1.8),
             Vector3d(1.2, 0, 0), Vector3d(2.9, 0, -1.8), Vector3d(2.2, 0, 1.2)})
        EXPECT_EQ(shown.pixelColor(pixelOf(inside)), RED) << inside[0] << ' ' << inside[2];
    for (const Vector3d& outside : {Vector3d(-1.7, 0, -0.6), Vector3d(-0.3, 0, -0.8), Vector3d(1.2, 0, 0.6)})
        EXPECT_EQ(shown.pixelColor(pixelOf(outside)), GROUND) << outside[0] << ' ' << outside[2];
}

TEST_F(SceneViewTest, ConcaveQuadranglesAreNotFilledUp)
{
    sendCorners();
    const Points dart{-2, 0, -2, 3, 0, 0, -2, 0, 2, 0, 0, 0};
    for (const std::array<int, 4>& face : {std::array{0, 1, 2, 3}, {1, 2, 3, 0}, {2, 3, 0, 1}, {3, 0, 1, 2}}) {
        sendColoured("dart", item(ItemKind::Mesh, dart, {}, std::vector{face}), RED);
        EXPECT_EQ(picture().pixelColor(pixelOf({-1.5, 0, 0})), GROUND);
        for (const double z : {-1.0, 1.0})
            EXPECT_EQ(picture().pixelColor(pixelOf({-0.5, 0, z})), RED);
    }
}

TEST_F(SceneViewTest, APolygonWithoutACornerIsLeftOut)
{
    sendCorners();
    const Points vertices{-2, 0, -2, 2, 0, -2, 2, 0, 2, NAN, 0, 2, -2, 0, 0};
    sendColoured("polygon", item(ItemKind::Mesh, vertices, {}, {{0, 1, 2, 3, 4}}), RED);
    EXPECT_EQ(numPixels(picture(), RED), 0);
    sendColoured("polygon", item(ItemKind::Mesh, vertices, {}, {{0, 1, 2, 4}}), RED);
    EXPECT_GT(numPixels(picture(), RED), 100);
}

TEST_F(SceneViewTest, ColoursAreOfBytesAndFloatsWithAndWithoutOpacity)
{
    sendCorners();
    const Colours versions[] = {Colours(std::vector<StaticVector<unsigned char, 3>>{{255, 0, 0}, {0, 255, 0}}),
        Colours(std::vector<RGBA8>{{255, 0, 0, 255}, {0, 255, 0, 255}}),
        Colours(std::vector<Vector3f>{{1, 0, 0}, {0, 1, 0}}), Colours(std::vector<double>{1, 0, 0, 0, 1, 0}),
        Colours(std::vector<int>{255, 0, 0, 255, 0, 255, 0, 255})};
    for (const Colours& colours : versions) {
        ItemUpdate points = item(ItemKind::Cloud, {-1, 0, 0, 1, 0, 0});
        points.colours = NumberTuples{colours, colours.width()};
        points.size = 9;
        send(m_View, "points", points);
        EXPECT_EQ(picture().pixelColor(pixelOf({-1, 0, 0})), RED);
        EXPECT_EQ(picture().pixelColor(pixelOf({1, 0, 0})), GREEN);
    }
}

TEST_F(SceneViewTest, FacesHaveTheColoursOfTheirVertices)
{
    ItemUpdate mesh = item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3});
    const std::vector<RGBA8> reds(4, rgba(RED));
    mesh.colours = NumberTuples{Colours(reds), 4};
    for (const bool isSmooth : {false, true}) {
        mesh.isSmooth = isSmooth;
        send(m_View, "mesh", mesh);
        EXPECT_EQ(picture().pixelColor(100, 50), RED);
    }
}

TEST_F(SceneViewTest, ColoursWaitForTheirPoints)
{
    sendCorners();
    ItemUpdate points = item(ItemKind::Cloud, {-1, 0, 0});
    points.size = 9;
    points.colours = NumberTuples{Colours(std::vector<RGBA8>{rgba(RED)}), 4};
    send(m_View, "points", points);
    ItemUpdate colours;
    colours.colours = NumberTuples{Colours(std::vector<RGBA8>{rgba(GREEN), rgba(GREEN)}), 4};
    send(m_View, "points", colours);
    EXPECT_NEAR(numPixels(picture(), RED), numPixelsOfDisc(9), 9) << "what was shown stays";
    send(m_View, "points", item(ItemKind::Cloud, {-1, 0, 0, 1, 0, 0}));
    EXPECT_NEAR(numPixels(picture(), GREEN), 2 * numPixelsOfDisc(9), 2 * 9);
}

class SceneFieldTest : public SceneViewTest
{
protected:
    // Four points side by side.
    SceneFieldTest()
    {
        sendCorners();
        ItemUpdate points = item(ItemKind::Cloud, {-2, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0});
        points.size = 5;
        sendColoured("points", points, RED);
    }

    void sendField(const std::string& name, const Numbers& values, bool areLabels = false)
    {
        ItemUpdate update;
        SceneField field{name, {values, 1}, areLabels};
        update.addField(field);
        send(m_View, "points", update);
    }

    void expectColours(const RGBA8& a, const RGBA8& b, const RGBA8& c, const RGBA8& d)
    {
        const QImage shown = picture();
        double x = -2;
        for (const RGBA8& expected : {a, b, c, d}) {
            EXPECT_EQ(rgba(shown.pixelColor(pixelOf({x, 0, 0}))), expected) << "at x = " << x;
            x += 1;
        }
    }

    const ColourMap m_Viridis = findColourMap("viridis").value();
};

TEST_F(SceneFieldTest, NumbersHaveTheColoursOfTheMap)
{
    sendField("a", {10, 12.5, 15, 20});
    expectColours(m_Viridis.sample(0), m_Viridis.sample(0.25), m_Viridis.sample(0.5), m_Viridis.sample(1));
    ItemUpdate update;
    update.colourMap = "magma";
    update.range = std::pair(15., 10.);
    send(m_View, "points", update);
    const ColourMap magma = findColourMap("magma").value();
    expectColours(magma.sample(1), magma.sample(0.5), magma.sample(0), magma.sample(0));
}

TEST_F(SceneFieldTest, NaNIsGreyAndInfinityAtTheEnd)
{
    sendField("a", {NAN, INFINITY, 1, 2});
    expectColours(ColourMap::colourOfNaN(), m_Viridis.sample(1), m_Viridis.sample(0), m_Viridis.sample(1));
    sendField("a", {7, 7, 7, 7});
    expectColours(m_Viridis.sample(0.5), m_Viridis.sample(0.5), m_Viridis.sample(0.5), m_Viridis.sample(0.5));
}

TEST_F(SceneFieldTest, LabelsHaveColoursOfTheirOwn)
{
    sendField("labels", {0, 1, 2, 255}, true);
    expectColours(colourOfLabel(0), colourOfLabel(1), colourOfLabel(2), colourOfLabel(255));
}

TEST_F(SceneFieldTest, OneIsShown)
{
    const auto show = [this](const std::string& name) {
        ItemUpdate update;
        update.shown = name;
        send(m_View, "points", update);
    };
    sendField("a", {0, 0, 0, 1});
    sendField("b", {1, 0, 0, 0});
    expectColours(m_Viridis.sample(0), m_Viridis.sample(0), m_Viridis.sample(0), m_Viridis.sample(1));
    show("b");
    expectColours(m_Viridis.sample(1), m_Viridis.sample(0), m_Viridis.sample(0), m_Viridis.sample(0));
    show("");
    expectColours(rgba(RED), rgba(RED), rgba(RED), rgba(RED));
    ItemUpdate colours;
    colours.colours = NumberTuples{Colours(std::vector<RGBA8>(4, rgba(GREEN))), 4};
    send(m_View, "points", colours);
    expectColours(rgba(RED), rgba(RED), rgba(RED), rgba(RED));
    show("colours");
    expectColours(rgba(GREEN), rgba(GREEN), rgba(GREEN), rgba(GREEN));
}

TEST_F(SceneFieldTest, NumbersWaitForTheirPoints)
{
    sendField("a", {0, 1});
    expectColours(rgba(RED), rgba(RED), rgba(RED), rgba(RED));
    ItemUpdate points = item(ItemKind::Cloud, {-2, 0, 0, -1, 0, 0});
    send(m_View, "points", points);
    EXPECT_EQ(rgba(picture().pixelColor(pixelOf({-1, 0, 0}))), m_Viridis.sample(1));
}

class SceneRadiusTest : public SceneViewTest
{
protected:
    SceneRadiusTest() { sendCorners(); }

    void sendPoints(const Points& points, const Numbers& radii)
    {
        ItemUpdate update = item(ItemKind::Cloud, points);
        update.radii = NumberTuples{radii, 1};
        update.normals = NumberTuples{Points(std::vector<Vector3d>(points.size() / 3, Vector3d(0, -1, 0))), 3};
        sendColoured("points", update, RED);
    }

    // Of the points in that part of the picture.
    double widthIn(const QRect& part)
    {
        const QRect rect = rectOf(picture().copy(part), RED);
        EXPECT_NEAR(rect.width(), rect.height(), 1) << "a disc";
        return std::max(rect.width(), rect.height());
    }

    double widthOfAll() { return widthIn({0, 0, 200, 100}); }

    double pixels(double units, double depth)
    {
        return units / m_View.getCamera().unitsPerPixel(depth, m_View.viewSize());
    }
};

TEST_F(SceneRadiusTest, PointsAreAsLargeAsTheyAreInTheScene)
{
    sendPoints({0, 0, 0}, {1.5});
    EXPECT_NEAR(widthOfAll(), pixels(3, 0), 1);
    EXPECT_GT(widthOfAll(), 20);
    EXPECT_LE((rectOf(picture(), RED).center() - pixelOf({0, 0, 0})).manhattanLength(), 2);
    const QImage large = m_View.picture({400, 200});
    EXPECT_NEAR(rectOf(large, RED).width(), 2 * pixels(3, 0), 1);
}

TEST_F(SceneRadiusTest, TheyAreDiscs)
{
    sendPoints({0, 0, 0}, {2});
    const QRect rect = rectOf(picture(), RED);
    EXPECT_GT(rect.width(), 30);
    EXPECT_NEAR(numPixels(picture(), RED), 3.14159265 / 4 * rect.width() * rect.height(), 2 * rect.width());
}

TEST_F(SceneRadiusTest, ThoseFartherAwayAreSmaller)
{
    look("front", false);
    sendPoints({-3, -4, 0, 3, 5, 0}, {1});
    const double eye = -m_View.getCamera().eye()[1];
    const double closer = widthIn({0, 0, 100, 100});
    const double farther = widthIn({100, 0, 100, 100});
    EXPECT_NEAR(closer, pixels(2, eye - 4), 1);
    EXPECT_NEAR(farther, pixels(2, eye + 5), 1);
    EXPECT_GT(closer, 1.4 * farther);
}

TEST_F(SceneRadiusTest, EachMayHaveItsOwn)
{
    sendPoints({-3, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 4}, {1., 0.5, NAN, -1.});
    EXPECT_NEAR(widthIn({0, 0, 90, 100}), pixels(2, 0), 1);
    EXPECT_NEAR(widthIn({115, 0, 85, 100}), pixels(1, 0), 1);
    EXPECT_EQ(numPixels(picture().copy(90, 0, 20, 100), RED), 2) << "what is no radius is a pixel";
}

TEST_F(SceneRadiusTest, TheLaterOfPixelsAndUnitsHolds)
{
    sendPoints({0, 0, 0}, {1});
    ItemUpdate sized;
    sized.size = 5;
    send(m_View, "points", sized);
    EXPECT_NEAR(widthOfAll(), 5, 1);
    sendPoints({0, 0, 0}, {1});
    EXPECT_NEAR(widthOfAll(), pixels(2, 0), 1);
}

TEST_F(SceneRadiusTest, RadiiWaitForTheirPoints)
{
    ItemUpdate sized;
    sized.size = 5;
    send(m_View, "points", sized);
    sendPoints({0, 0, 0}, {1, 0.5});
    EXPECT_NEAR(widthOfAll(), 5, 1);
    sendPoints({-3, 0, 0, 3, 0, 0}, {1, 0.5});
    EXPECT_NEAR(widthIn({115, 0, 85, 100}), pixels(1, 0), 1);
}

TEST_F(SceneRadiusTest, WhatIsScaledScalesThem)
{
    sendPoints({0, 0, 0}, {0.5});
    SceneUpdate scaled;
    scaled.transforms["points"] = {{3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1}};
    m_View.apply(scaled);
    EXPECT_NEAR(widthOfAll(), pixels(3, 0), 1);
}

TEST_F(SceneRadiusTest, TheyAreNeverLargerThanTheDriverCan)
{
    float sizes[2];
    {
        const std::shared_ptr<SceneContext> context = SceneContext::get();
        const SceneContext::Scope scope(*context);
        glGetFloatv(GL_ALIASED_POINT_SIZE_RANGE, sizes);
    }
    if (sizes[1] > 700)
        GTEST_SKIP() << "the driver's points are larger than the picture";
    for (const double radius : {100., 1e300}) {
        sendPoints({0, 0, 0}, {radius});
        look("front");
        EXPECT_NEAR(rectOf(m_View.picture({1500, 1500}), RED).width(), int(sizes[1]), 1);
    }
}

TEST_F(SceneRadiusTest, LightFallsOnThemAsOnOthers)
{
    ItemUpdate update = item(ItemKind::Cloud, {-3, 0, 0, -1, 0, 0, 1, 0, 0, 3, 0, 0});
    update.normals = NumberTuples{Points({0, -2, 0, 1, -1, 0, 0, 1, 0, 0, 0, 0}), 3};
    update.size = 9;
    sendColoured("points", update, QColor(200, 100, 40));
    const auto colours = [this] {
        std::vector<QColor> all;
        for (const double x : {-3., -1., 1., 3.})
            all.push_back(picture().pixelColor(pixelOf({x, 0, 0})));
        return all;
    };
    const std::vector<QColor> expected = colours();
    ItemUpdate scaled;
    scaled.radii = NumberTuples{Numbers{0.5}, 1};
    send(m_View, "points", scaled);
    const std::vector<QColor> shown = colours();
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(shown[i].red(), expected[i].red(), 1) << i;
        EXPECT_NEAR(shown[i].blue(), expected[i].blue(), 1) << i;
    }
    EXPECT_EQ(shown[3].red(), 50) << "without a direction it has what light is everywhere";
}

TEST_F(SceneRadiusTest, ColoursAndDepthsAreAsWithoutThem)
{
    ItemUpdate update = item(ItemKind::Cloud, {-2, 0, 0, 2, 0, 0});
    update.radii = NumberTuples{Numbers{1.0}, 1};
    update.colours = NumberTuples{Colours(std::vector<RGBA8>{rgba(RED), rgba(GREEN)}), 4};
    send(m_View, "points", update);
    EXPECT_EQ(picture().pixelColor(pixelOf({-2, 0, 0})), RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({2, 0, 0})), GREEN);
    sendColoured("wall", item(ItemKind::Mesh, squareAt({0, -1, 0}, 4), {}, {{0, 1, 2, 3}}), Qt::blue);
    EXPECT_EQ(numPixels(picture(), RED), 0);
}

// Two triangles side by side with different colours, and no colours in between.
class ScenePartsTest : public SceneViewTest
{
protected:
    static ItemUpdate square() { return item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}); }

    static NumberTuples redAndGreen() { return {Colours(std::vector<RGBA8>{rgba(RED), rgba(GREEN)}), 4}; }

    static void addField(ItemUpdate& update, const std::string& name, const Numbers& values)
    {
        SceneField field{name, {values, 1}, false};
        update.addField(field);
    }

    QColor colourAt(const Vector3d& point) { return picture().pixelColor(pixelOf(point)); }

    void expectFaces(const RGBA8& first, const RGBA8& second)
    {
        EXPECT_EQ(rgba(colourAt({0.3, 0, -0.2})), first);
        EXPECT_EQ(rgba(colourAt({0.9, 0, -0.9})), first);
        EXPECT_EQ(rgba(colourAt({-0.3, 0, 0.2})), second);
        EXPECT_EQ(rgba(colourAt({-0.9, 0, 0.9})), second);
    }

    const ColourMap m_Viridis = findColourMap("viridis").value();
};

TEST_F(ScenePartsTest, FacesHaveColoursOfTheirOwn)
{
    const NumberTuples normals{Points(std::vector<Vector3d>(4, Vector3d(0, -1, 0))), 3};
    for (const bool isSmooth : {false, true})
        for (const bool areNormals : {false, true}) {
            ItemUpdate mesh = square();
            mesh.isSmooth = isSmooth;
            mesh.colours = redAndGreen();
            if (areNormals)
                mesh.normals = normals;
            send(m_View, isSmooth ? areNormals ? "a" : "b" : areNormals ? "c" : "d", mesh);
            expectFaces(rgba(RED), rgba(GREEN));
            SceneUpdate gone;
            gone.clear();
            m_View.apply(gone);
        }
}

TEST_F(ScenePartsTest, NumbersAndColoursOneAfterTheOtherSuitFaces)
{
    ItemUpdate mesh = square();
    addField(mesh, "area", {1, 2});
    send(m_View, "mesh", mesh);
    expectFaces(m_Viridis.sample(0), m_Viridis.sample(1));
    ItemUpdate colours;
    colours.colours = NumberTuples{Colours(std::vector<int>{255, 0, 0, 0, 255, 0}), 0};
    send(m_View, "mesh", colours);
    expectFaces(rgba(RED), rgba(GREEN));
}

TEST_F(ScenePartsTest, ThoseOfVerticesAndOfFacesTakeTurns)
{
    ItemUpdate mesh = square();
    mesh.isSmooth = true;
    addField(mesh, "vertices", {1, 1, 1, 1});
    addField(mesh, "faces", {0, 1});
    send(m_View, "mesh", mesh);
    for (int i = 0; i < 2; ++i) {
        ItemUpdate update;
        update.shown = "faces";
        send(m_View, "mesh", update);
        expectFaces(m_Viridis.sample(0), m_Viridis.sample(1));
        update.shown = "vertices";
        send(m_View, "mesh", update);
        expectFaces(m_Viridis.sample(0.5), m_Viridis.sample(0.5));
    }
}

TEST_F(ScenePartsTest, FacesThatAreLeftOutKeepTheirNumbers)
{
    ItemUpdate mesh = item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 0, 1, 0, 1, 2, 0, 2, 3});
    addField(mesh, "number", {0, 1, 2});
    send(m_View, "mesh", mesh);
    expectFaces(m_Viridis.sample(0.5), m_Viridis.sample(1));
}

TEST_F(ScenePartsTest, PolygonsHaveColoursOfTheirOwn)
{
    ItemUpdate mesh =
        item(ItemKind::Mesh, {-1, 0, -1, 1, 0, -1, 1, 0, 1, -1, 0, 1, -1, 0, 0}, {}, {{0, 1}, {0, 1, 2, 4}, {4, 2, 3}});
    addField(mesh, "number", {0, 1, 2});
    send(m_View, "mesh", mesh);
    EXPECT_EQ(rgba(colourAt({0.9, 0, -0.9})), m_Viridis.sample(0.5));
    EXPECT_EQ(rgba(colourAt({-0.9, 0, -0.2})), m_Viridis.sample(0.5));
    EXPECT_EQ(rgba(colourAt({-0.9, 0, 0.9})), m_Viridis.sample(1));
}

TEST_F(ScenePartsTest, AsManyVerticesHaveThemUnlessItIsSaid)
{
    ItemUpdate mesh = square();
    mesh.shape->faces.numbers = Numbers({0, 1, 2, 0, 2, 3, 0, 0, 1, 1, 1, 2});
    addField(mesh, "a", {0, 0, 0, 1});
    send(m_View, "mesh", mesh);
    EXPECT_NE(rgba(colourAt({-0.3, 0, 0.2})), m_Viridis.sample(0)) << "mixed from vertices";
    ItemUpdate update;
    update.onFaces.insert("a");
    send(m_View, "mesh", update);
    expectFaces(m_Viridis.sample(0), m_Viridis.sample(0));
    addField(update, "a", {0, 1, 0, 0});
    send(m_View, "mesh", update);
    expectFaces(m_Viridis.sample(0), m_Viridis.sample(1));
}

TEST_F(ScenePartsTest, StretchesAndSegmentsHaveColoursOfTheirOwn)
{
    sendCorners();
    ItemUpdate lines = item(ItemKind::Lines, {-2, 0, 0, 0, 0, 0, NAN, 0, 0, 0, 0, 1, 2, 0, 1});
    lines.size = 3;
    addField(lines, "stretch", {0, 1, 2, 4});
    send(m_View, "lines", lines);
    for (const double x : {-1.8, -1.0, -0.2})
        EXPECT_EQ(rgba(colourAt({x, 0, 0})), m_Viridis.sample(0));
    for (const double x : {0.2, 1.0, 1.8})
        EXPECT_EQ(rgba(colourAt({x, 0, 1})), m_Viridis.sample(1));
    lines = item(ItemKind::Segments, {-2, 0, 0, -1, 0, 0, 1, 0, 0, 2, 0, 0});
    lines.colours = redAndGreen();
    send(m_View, "lines", lines);
    EXPECT_EQ(colourAt({-1.1, 0, 0}), RED);
    EXPECT_EQ(colourAt({1.1, 0, 0}), GREEN);
}

TEST_F(ScenePartsTest, ColoursWaitForTheirFaces)
{
    ItemUpdate mesh = square();
    mesh.colour = rgba(RED);
    addField(mesh, "area", {0, 0, 1});
    ItemUpdate same = mesh;
    SceneItem waiting(0);
    waiting.apply(same);
    EXPECT_THAT(
        waiting.waiting(), testing::ElementsAre("3 numbers of \"area\" for 4 points and 2 faces; they are not shown"));
    send(m_View, "mesh", mesh);
    expectFaces(rgba(RED), rgba(RED));
    mesh = square();
    mesh.shape->faces.numbers = Numbers({0, 1, 2, 0, 1, 1, 0, 2, 3});
    send(m_View, "mesh", mesh);
    expectFaces(m_Viridis.sample(0), m_Viridis.sample(1));
}

// A wall of points behind a smaller one.
TEST_F(SceneViewTest, CloudsWithoutNormalsAreShadedByTheirDepths)
{
    const auto wall = [](double size, double y) {
        std::vector<Vector3d> points;
        for (int i = -100; i <= 100; ++i)
            for (int j = -100; j <= 100; ++j)
                points.push_back({size * i / 100, y, size * j / 100});
        return points;
    };
    sendColoured("far", item(ItemKind::Cloud, wall(5, 0)), RED);
    sendColoured("near", item(ItemKind::Cloud, wall(2, -3)), GREEN);
    const QPoint edge = pixelOf({2, 0, 0});
    const QImage shaded = picture();
    EXPECT_EQ(shaded.pixelColor(edge - QPoint(10, 0)), GREEN);
    EXPECT_EQ(shaded.pixelColor(edge + QPoint(10, 0)), RED) << "away from edges nothing is dark";
    int numDark = 0;
    for (int x = 0; x < 5; ++x) {
        const QColor behind = shaded.pixelColor(edge + QPoint(x, 0));
        numDark += behind.green() == 0 && behind.red() > 0 && behind.red() < 200;
    }
    EXPECT_GT(numDark, 0) << "behind an edge it is";

    ItemUpdate lit;
    lit.normals = NumberTuples{Points(std::vector<Vector3d>(201 * 201, Vector3d(0, -1, 0))), 3};
    send(m_View, "far", lit);
    send(m_View, "near", lit);
    EXPECT_EQ(numPixels(picture(), RED) + numPixels(picture(), GREEN) + numPixels(picture(), GROUND), 200 * 100)
        << "normals light both walls evenly";
}

TEST_F(SceneViewTest, ShadedCloudsHideAndAreHidden)
{
    std::vector<Vector3d> points;
    for (int i = -100; i <= 100; ++i)
        for (int j = -100; j <= 100; ++j)
            points.push_back({i / 100., 0, j / 100.});
    sendColoured("cloud", item(ItemKind::Cloud, points), RED);
    sendColoured("mesh", item(ItemKind::Mesh, squareAt({0, 1, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}), GREEN);
    EXPECT_EQ(picture().pixelColor(100, 50), RED);
    look("back");
    EXPECT_EQ(picture().pixelColor(100, 50), GREEN);
}

TEST_F(SceneViewTest, OpacityLetsThroughWhatIsBehind)
{
    ItemUpdate front = item(ItemKind::Mesh, squareAt({0, -1, 0}), {}, std::vector{0, 1, 2, 0, 2, 3});
    front.opacity = 0.5;
    sendColoured("a", front, RED);
    sendColoured("b", item(ItemKind::Mesh, squareAt({0, 1, 0}, 0.5), {}, std::vector{0, 1, 2, 0, 2, 3}), GREEN);
    const QColor mixed = picture().pixelColor(100, 50);
    EXPECT_NEAR(mixed.red(), 128, 2);
    EXPECT_NEAR(mixed.green(), 127, 2);
    EXPECT_EQ(mixed.blue(), 0);
    ItemUpdate gone;
    gone.opacity = 0;
    send(m_View, "a", gone);
    EXPECT_EQ(picture().pixelColor(100, 50), GREEN);
}

TEST_F(SceneViewTest, HiddenAndRemovedItemsAreNotSeen)
{
    const auto mesh = item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3});
    sendColoured("car/body", mesh, RED);
    ItemUpdate hidden;
    hidden.isVisible = false;
    send(m_View, "car/body", hidden);
    EXPECT_EQ(numPixels(picture(), GROUND), 200 * 100);
    hidden.isVisible = true;
    send(m_View, "car/body", hidden);
    EXPECT_EQ(picture().pixelColor(100, 50), RED);
    SceneUpdate removal;
    removal.remove("car");
    m_View.apply(removal);
    EXPECT_EQ(numPixels(picture(), GROUND), 200 * 100);
}

TEST_F(SceneViewTest, LinesGoThroughTheirPoints)
{
    sendCorners();
    ItemUpdate lines = item(ItemKind::Lines, {-2, 0, 0, 0, 0, 0, 2, 0, 0});
    lines.size = 3;
    sendColoured("lines", lines, RED);
    for (const double x : {-1.5, -0.5, 0.5, 1.5})
        EXPECT_EQ(picture().pixelColor(pixelOf({x, 0, 0})), RED) << x;
    lines.shape->kind = ItemKind::Segments;
    lines.shape->points.numbers = Points({-2, 0, 0, -1, 0, 0, 1, 0, 0, 2, 0, 0});
    send(m_View, "lines", lines);
    EXPECT_EQ(picture().pixelColor(pixelOf({1.5, 0, 0})), RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({0, 0, 0})), GROUND);
}

TEST_F(SceneViewTest, NaNLeavesGaps)
{
    sendCorners();
    ItemUpdate lines = item(ItemKind::Lines, {-3, 0, 0, -2, 0, 0, NAN, 0, 0, 2, 0, 0, 3, 0, 0});
    lines.size = 3;
    sendColoured("lines", lines, RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({2.5, 0, 0})), RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({0, 0, 0})), GROUND);

    ItemUpdate points = item(ItemKind::Cloud, {1, 0, 3, 0, INFINITY, 0, 1e300, 0, 0, -1, 0, 3});
    points.colours = NumberTuples{Colours(std::vector<RGBA8>{rgba(GREEN), rgba(RED), rgba(RED), rgba(GREEN)}), 4};
    points.size = 5;
    send(m_View, "points", points);
    EXPECT_NEAR(numPixels(picture(), GREEN), 2 * numPixelsOfDisc(5), 2 * 5);

    std::vector<Vector3d> square = squareAt({0, 0, -2});
    square[3] = {NAN, NAN, NAN};
    sendColoured("mesh", item(ItemKind::Mesh, square, {}, std::vector{0, 1, 2, 0, 2, 3}), Qt::blue);
    EXPECT_EQ(picture().pixelColor(pixelOf({0.5, 0, -2.5})), QColor(Qt::blue));
    EXPECT_EQ(picture().pixelColor(pixelOf({-0.5, 0, -1.5})), GROUND);
}

TEST_F(SceneViewTest, DegenerateFacesAndNothingAreDrawnAsNothing)
{
    sendCorners();
    const QImage before = picture();
    sendColoured("line", item(ItemKind::Mesh, {0, 0, 0, 1, 0, 0, 2, 0, 0}, {}, std::vector{0, 1, 2, 0, 0, 1}), RED);
    for (const ItemKind kind : {ItemKind::Cloud, ItemKind::Mesh, ItemKind::Lines, ItemKind::Segments, ItemKind::Vectors,
             ItemKind::Boxes, ItemKind::Text})
        sendColoured("empty", item(kind, {}), RED);
    sendColoured("alone", item(ItemKind::Lines, {1, 0, 1}), RED);
    sendColoured("nowhere", item(ItemKind::Cloud, {NAN, NAN, NAN}), RED);
    EXPECT_EQ(picture(), before);
}

TEST_F(SceneViewTest, ArrowsPointAlongTheirDirections)
{
    sendCorners();
    ItemUpdate arrow = item(ItemKind::Vectors, {0, 0, -2}, {0, 0, 4});
    arrow.size = 3;
    sendColoured("arrow", arrow, RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({0, 0, -1})), RED);
    const QRect rect = rectOf(picture(), RED);
    EXPECT_NEAR(rect.top(), pixelOf({0, 0, 2}).y(), 2);
    EXPECT_NEAR(rect.bottom(), pixelOf({0, 0, -2}).y(), 2);
    const QImage head = picture().copy(rect.adjusted(0, 0, 0, -rect.height() / 2));
    EXPECT_GT(rectOf(head, RED).width(), 4) << "it has a head";
}

TEST_F(SceneViewTest, BoxesHaveEdges)
{
    sendCorners();
    ItemUpdate boxes = item(ItemKind::Boxes, {-4, 0, -2, 1, 0, -2}, {-1, 1, 2, 4, 1, 2});
    boxes.size = 3;
    sendColoured("boxes", boxes, RED);
    for (const double x : {-4.0, -1.0, 1.0, 4.0})
        EXPECT_EQ(picture().pixelColor(pixelOf({x, 0, 0.5})), RED) << x;
    EXPECT_EQ(picture().pixelColor(pixelOf({2, 0, 2})), RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({2, 0, 0})), GROUND);
    EXPECT_EQ(picture().pixelColor(pixelOf({0, 0, 2})), GROUND);
}

TEST_F(SceneViewTest, FramesHaveThreeColours)
{
    sendCorners();
    ItemUpdate frame = item(ItemKind::Frame, {});
    frame.shape->frame = {{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 0, -1, 1}};
    frame.size = 3;
    send(m_View, "frame", frame);
    const QColor x = picture().pixelColor(pixelOf({2, 0, -1}));
    const QColor z = picture().pixelColor(pixelOf({1, 0, 0}));
    EXPECT_GT(x.red(), 2 * x.blue());
    EXPECT_GT(z.blue(), 2 * z.red());
}

TEST_F(SceneViewTest, TextsStandAtTheirPositions)
{
    sendCorners();
    const QImage before = picture();
    ItemUpdate text = item(ItemKind::Text, {1, 0, 1});
    text.shape->text = "here";
    send(m_View, "text", text);
    const QImage after = picture();
    QRect changed;
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x)
            if (after.pixel(x, y) != before.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
    const QPoint place = pixelOf({1, 0, 1});
    EXPECT_NEAR(changed.left(), place.x() + 6, 3);
    EXPECT_NEAR(changed.center().y(), place.y(), 4);
}

TEST_F(SceneViewTest, ABranchIsMoved)
{
    sendCorners();
    ItemUpdate point = item(ItemKind::Cloud, {1, 0, 0});
    point.size = 5;
    sendColoured("car/lidar", point, RED);
    SceneUpdate moved;
    moved.transforms["car"] = translation({0, 0, 2});
    moved.transforms["car/lidar"] = {{0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 0, 1}}; // x becomes z
    m_View.apply(moved);
    EXPECT_LE((rectOf(picture(), RED).center() - pixelOf({0, 0, 3})).manhattanLength(), 1);
    moved.transforms["car"] = translation({0, 0, -2});
    m_View.apply(moved);
    EXPECT_LE((rectOf(picture(), RED).center() - pixelOf({0, 0, -1})).manhattanLength(), 1);
}

TEST_F(SceneViewTest, EdgesAreDarkerAndOnFaces)
{
    sendCorners();
    // Quadrangles side by side, of which the cut has none, and a face without area.
    ItemUpdate mesh = item(ItemKind::Mesh, {-3, 0, -2, 0, 0, -2, 3, 0, -2, -3, 0, 2, 0, 0, 2, 3, 0, 2, 3, 0, 4}, {},
        {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 5, 6}});
    mesh.areEdgesSeen = true;
    mesh.size = 3;
    sendColoured("mesh", mesh, RED);
    const QColor edge(114, 0, 0);
    for (const std::string side : {"front", "back"}) {
        look(side);
        const QImage shown = picture();
        for (const Vector3d& point : {Vector3d(-3, 0, 0), Vector3d(0, 0, 1), Vector3d(3, 0, -1), Vector3d(-1.5, 0, 2)})
            EXPECT_EQ(shown.pixelColor(pixelOf(point)), edge) << point[0] << ' ' << point[2];
        EXPECT_EQ(shown.pixelColor(pixelOf({-1.5, 0, 0})), RED) << "none between triangles";
        EXPECT_EQ(shown.pixelColor(pixelOf({3, 0, 3})), GROUND) << "none of what is no face";
    }
    ItemUpdate without;
    without.areEdgesSeen = false;
    send(m_View, "mesh", without);
    EXPECT_EQ(numPixels(picture(), edge), 0);
}

TEST_F(SceneViewTest, EdgesFollowWhatIsSentAndHideBehindFaces)
{
    sendCorners();
    ItemUpdate mesh = item(ItemKind::Mesh, squareAt({0, 1, 0}), {}, {{0, 1, 2, 3}});
    mesh.areEdgesSeen = true;
    mesh.size = 3;
    sendColoured("mesh", mesh, RED);
    const QColor edge(114, 0, 0);
    EXPECT_EQ(picture().pixelColor(pixelOf({1, 0, 0})), edge);
    send(m_View, "mesh", item(ItemKind::Mesh, squareAt({0, 1, 0}, 2), {}, {{0, 1, 2, 3}}));
    EXPECT_EQ(picture().pixelColor(pixelOf({1, 0, 0})), RED);
    EXPECT_EQ(picture().pixelColor(pixelOf({2, 0, 0})), edge);
    sendColoured("wall", item(ItemKind::Mesh, squareAt({0, -1, 0}, 3), {}, {{0, 1, 2, 3}}), GREEN);
    EXPECT_EQ(numPixels(picture(), edge), 0);
}

// On slopes, where depths of edges and faces differ most, as wide as lines alone are.
TEST_F(SceneViewTest, EdgesOnSlopesAreWhole)
{
    ItemUpdate slope = item(ItemKind::Mesh, {-3, -4, -2, 0, -4, -2, 3, -4, -2, -3, 4, 1, 0, 4, 1, 3, 4, 1}, {},
        {{0, 1, 4, 3}, {1, 2, 5, 4}});
    slope.areEdgesSeen = true;
    slope.size = 3;
    sendColoured("slope", slope, RED);
    const QColor edge(114, 0, 0);
    m_View.getCamera().setDirection(50, 35);
    const int onFaces = numPixels(picture(), edge);
    SceneUpdate cleared;
    cleared.clear();
    m_View.apply(cleared);
    ItemUpdate lines = item(ItemKind::Lines, {0, -4, -2, -3, -4, -2, -3, 4, 1, 3, 4, 1, 3, -4, -2, 0, -4, -2, 0, 4, 1});
    lines.size = 3;
    sendColoured("lines", lines, edge);
    m_View.getCamera().setDirection(50, 35);
    const int alone = numPixels(picture(), edge);
    EXPECT_GT(alone, 500);
    EXPECT_GE(onFaces, alone - alone / 50);
}

TEST_F(SceneViewTest, BackFacesMayBeLeftOut)
{
    ItemUpdate mesh = item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, {{0, 1, 2, 3}});
    sendColoured("mesh", mesh, RED);
    const auto isSeenFrom = [this](const std::string& side) {
        look(side);
        return picture().pixelColor(100, 50) == RED;
    };
    EXPECT_TRUE(isSeenFrom("front"));
    EXPECT_TRUE(isSeenFrom("back"));
    ItemUpdate front;
    front.areBackFacesSeen = false;
    send(m_View, "mesh", front);
    EXPECT_TRUE(isSeenFrom("front"));
    EXPECT_FALSE(isSeenFrom("back"));
    SceneUpdate mirrored;
    mirrored.transforms["mesh"] = {{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
    m_View.apply(mirrored);
    EXPECT_TRUE(isSeenFrom("front")) << "a mirror turns nothing inside out";
    EXPECT_FALSE(isSeenFrom("back"));
}

TEST_F(SceneViewTest, WhatIsMirroredIsLitAsItWas)
{
    sendColoured("mesh", item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, {{0, 1, 2, 3}}), RED);
    SceneUpdate mirrored;
    mirrored.transforms["mesh"] = {{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
    m_View.apply(mirrored);
    EXPECT_EQ(picture().pixelColor(100, 50), RED);
    sendColoured("other", item(ItemKind::Mesh, squareAt({0, -1, 0}, 0.5), {}, {{0, 1, 2, 3}}), GREEN);
    EXPECT_EQ(picture().pixelColor(100, 50), GREEN) << "and so is what comes after it";
}

TEST_F(SceneViewTest, DataAreSavedAsTheyWereSent)
{
    QTemporaryDir folder;
    sendColoured("points", item(ItemKind::Cloud, {1, 0.1, 2}), RED);
    const QString path = folder.filePath("scene.csv");
    EXPECT_EQ(m_View.saveData(path), "");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "\"x\",\"y\",\"z\"\n1,0.1,2\n");
}

// The same picture, wherever it is and however large.
TEST_F(SceneViewTest, FarAndTinyAndHugeDataLookAlike)
{
    const auto show = [this](const Vector3d& origin, double scale) {
        const auto at = [&](std::vector<Vector3d> points) {
            for (Vector3d& point : points)
                point = origin + scale * point;
            return Points(std::move(points));
        };
        sendColoured("mesh", item(ItemKind::Mesh, at(squareAt({0, 1, 0})), {}, std::vector{0, 1, 2, 0, 2, 3}), RED);
        ItemUpdate points = item(ItemKind::Cloud, at(squareAt({0.03, -1, 0.06}, 0.4)));
        points.size = 5;
        sendColoured("points", points, GREEN);
        look("front", false);
        return picture();
    };
    const QImage expected = show({0, 0, 0}, 1);
    EXPECT_NEAR(numPixels(expected, GREEN), 4 * numPixelsOfDisc(5), 4 * 5);
    EXPECT_EQ(show({0, 0, 0}, 1e-6), expected);
    EXPECT_EQ(show({0, 0, 0}, 1e7), expected);
    EXPECT_EQ(show({5.5e6, -4.2e6, 120}, 1), expected);
    EXPECT_EQ(show({5.5e6, -4.2e6, 120}, 1e-2), expected);
}

TEST_F(SceneViewTest, SmoothMeshesAreLitOtherwise)
{
    ItemUpdate roof = item(ItemKind::Mesh, {-1, 0, -1, -1, 0, 1, 0, -1, -1, 0, -1, 1, 1, 0, -1, 1, 0, 1}, {},
        std::vector<std::array<int, 4>>{{0, 2, 3, 1}, {2, 4, 5, 3}});
    sendColoured("roof", roof, QColor(200, 200, 200));
    const int half = qRed(picture().pixel(80, 50));
    EXPECT_NEAR(half, 200 * (0.25 + 0.75 * std::sqrt(0.5)), 2) << "each face by itself";
    EXPECT_NEAR(qRed(picture().pixel(98, 50)), half, 2);
    roof.isSmooth = true;
    sendColoured("roof", roof, QColor(200, 200, 200));
    EXPECT_GT(qRed(picture().pixel(100, 50)), 190) << "the ridge faces the light";
    roof.normals = NumberTuples{Points(std::vector<Vector3d>(6, Vector3d(1, 0, 0))), 3};
    sendColoured("roof", roof, QColor(200, 200, 200));
    EXPECT_NEAR(qRed(picture().pixel(80, 50)), 50, 2) << "normals across the light";
}

TEST_F(SceneViewTest, PicturesAreOfAnySize)
{
    sendColoured("quad", item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}), RED);
    for (const QSize& size : {QSize(1, 1), QSize(37, 91), QSize(1601, 1003)}) {
        const QImage picture = m_View.picture(size);
        ASSERT_EQ(picture.size(), size);
        EXPECT_EQ(picture.pixelColor(size.width() / 2, size.height() / 2), RED);
        const int expected = int(0.9 * std::min(size.width(), size.height()));
        EXPECT_GE(std::min(rectOf(picture, RED).width(), rectOf(picture, RED).height()), expected);
    }
}

TEST_F(SceneViewTest, ColoursFollowThePalette)
{
    send(m_View, "quad", item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}));
    const QColor onLight = picture().pixelColor(100, 50);
    QPalette dark = m_View.palette();
    dark.setColor(QPalette::Base, QColor(10, 20, 30));
    m_View.setPalette(dark);
    EXPECT_EQ(picture().pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_GT(picture().pixelColor(100, 50).lightness(), onLight.lightness());
}

TEST_F(SceneViewTest, TheWidgetShowsThePicture)
{
    sendColoured("quad", item(ItemKind::Mesh, squareAt({0, 0, 0}), {}, std::vector{0, 1, 2, 0, 2, 3}), RED);
    m_View.show();
    QApplication::processEvents();
    if (m_View.devicePixelRatioF() != 1)
        GTEST_SKIP() << "pixels of the screen are not those of the picture";
    EXPECT_EQ(m_View.grab().toImage().convertToFormat(QImage::Format_RGB32), m_View.picture(m_View.size()));
}

TEST_F(SceneViewTest, NewDataAreFittedUntilTheCameraIsChosen)
{
    sendCorners();
    const SceneCamera before = m_View.getCamera();
    sendColoured("points", item(ItemKind::Cloud, {1, 0, 1}), RED);
    EXPECT_EQ(m_View.getCamera(), before) << "what is within does not move it";
    sendColoured("points", item(ItemKind::Cloud, {50, 0, 1}), RED);
    EXPECT_FALSE(m_View.getCamera() == before);
    m_View.showChoice();
    const SceneCamera chosen = m_View.getCamera();
    sendColoured("points", item(ItemKind::Cloud, {500, 0, 1}), RED);
    look("top", false);
    SceneUpdate cleared;
    cleared.clear();
    m_View.apply(cleared);
    EXPECT_EQ(m_View.getCamera().getPivot(), chosen.getPivot());
    EXPECT_EQ(m_View.getCamera().getElevation(), 0);
}

TEST(SceneWaitingTest, APictureSaysAllThatIsNotInIt)
{
    SceneView view("wrong");
    ItemUpdate cloud = item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0, 2, 0, 0});
    cloud.radii = NumberTuples{Numbers{1, 2}, 1};
    cloud.normals = NumberTuples{Points{0, 0, 1}, 3};
    cloud.colours = NumberTuples{Colours{1, 2, 3, 4, 5, 6}, 3};
    cloud.fields.push_back({"a", {Numbers{3, 4}, 1}, false});
    cloud.fields.push_back({"b", {Numbers{3, 4, 5, 6}, 1}, false});
    cloud.shown = "c";
    send(view, "cloud", cloud);
    testing::internal::CaptureStderr();
    view.picture({100, 100});
    const std::string lines = testing::internal::GetCapturedStderr();
    const std::string begin = "warning: tavo: scene(\"wrong\"), \"cloud\": ";
    const std::string end = " for 3 points; they are not shown\n";
    EXPECT_EQ(lines, begin + "2 colours" + end + begin + "1 normals" + end + begin + "2 radii" + end + begin +
                         "2 numbers of \"a\"" + end + begin + "4 numbers of \"b\"" + end + begin +
                         "there are no numbers \"c\" to be shown\n");
    ItemUpdate numbers;
    numbers.fields.push_back({"c", {Numbers{3, 4, 5}, 1}, false});
    send(view, "other", item(ItemKind::Cloud, {0, 0, 0, 1, 0, 0, 2, 0, 0}));
    send(view, "other", numbers);
    testing::internal::CaptureStderr();
    view.picture({100, 100});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "each is said once";
}

} // namespace
} // namespace tavo
