#include <cmath>
#include <gtest/gtest.h>

#include "tests/vireo/show/scenes/sceneUpdates.h"

// Surfaces that can be seen through, in each other. Faces are seen straight on or at 45 degrees, so that it is known
// how bright they are.
namespace tavo {
namespace {

const QColor RED(255, 0, 0);
const QColor GREEN(0, 255, 0);

QColor mixed(const QColor& ground, const QColor& colour, double opacity, double brightness = 1)
{
    const auto part = [=](int behind, int before) {
        return int(std::lround((1 - opacity) * behind + opacity * brightness * before));
    };
    return {part(ground.red(), colour.red()), part(ground.green(), colour.green()), part(ground.blue(), colour.blue())};
}

void expectNear(const QColor& found, const QColor& expected, const std::string& where)
{
    constexpr int ROUNDING = 4;
    EXPECT_NEAR(found.red(), expected.red(), ROUNDING) << where;
    EXPECT_NEAR(found.green(), expected.green(), ROUNDING) << where;
    EXPECT_NEAR(found.blue(), expected.blue(), ROUNDING) << where;
}

ItemUpdate coloured(ItemUpdate update, const QColor& colour, double opacity)
{
    update.colour = RGBA8(colour.red(), colour.green(), colour.blue(), 255);
    update.opacity = opacity;
    return update;
}

// The surface of a cube about the origin.
ItemUpdate cube(double half)
{
    std::vector<Vector3d> corners;
    for (int i = 0; i < 8; ++i)
        corners.emplace_back((i & 1) != 0 ? half : -half, (i & 2) != 0 ? half : -half, (i & 4) != 0 ? half : -half);
    const std::vector<std::array<int, 4>> faces{
        {0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    return item(ItemKind::Mesh, corners, {}, faces);
}

// A sheet that rises along x.
ItemUpdate sheet(double slope)
{
    return item(ItemKind::Mesh,
        std::vector<Vector3d>{{-2, -2, -2 * slope}, {2, -2, 2 * slope}, {2, 2, 2 * slope}, {-2, 2, -2 * slope}}, {},
        std::vector{0, 1, 2, 0, 2, 3});
}

class TranslucentSurfacesTest : public testing::Test
{
protected:
    TranslucentSurfacesTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, Qt::white);
        m_View.setPalette(palette);
        m_View.resize(200, 200);
        SceneUpdate plain;
        plain.hasBearings = false;
        m_View.apply(plain);
    }

    QImage seen(const std::string& side)
    {
        SceneUpdate update = seenFrom(side);
        m_View.apply(update);
        return m_View.picture({200, 200});
    }

    QColor colourAt(const std::string& side, const Vector3d& point)
    {
        const QImage picture = seen(side);
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return picture.pixelColor(int(pixel.x), int(pixel.y));
    }

    void expectNestedFromAllSides(const std::string& order)
    {
        QColor expected = Qt::white;
        for (const QColor& colour : {RED, GREEN, GREEN, RED})
            expected = mixed(expected, colour, 0.5);
        for (const std::string side : {"front", "back", "left", "right", "top", "bottom"})
            expectNear(colourAt(side, {}), expected, order + ", " + side);
    }

    SceneView m_View{"test"};
};

TEST_F(TranslucentSurfacesTest, OneInAnotherIsSeenThroughItFromAllSides)
{
    send(m_View, "a", coloured(cube(2), RED, 0.5));
    send(m_View, "b", coloured(cube(1), GREEN, 0.5));
    expectNestedFromAllSides("from outside");
    send(m_View, "a", coloured(cube(1), GREEN, 0.5));
    send(m_View, "b", coloured(cube(2), RED, 0.5));
    expectNestedFromAllSides("from inside");
}

TEST_F(TranslucentSurfacesTest, WhatCrossesIsBeforeAndBehind)
{
    const double bright = 0.25 + 0.75 * std::sqrt(0.5); // at 45 degrees
    send(m_View, "a", coloured(sheet(1), RED, 0.5));
    send(m_View, "b", coloured(sheet(-1), GREEN, 0.5));
    const QColor redFirst = mixed(mixed(Qt::white, GREEN, 0.5, bright), RED, 0.5, bright);
    const QColor greenFirst = mixed(mixed(Qt::white, RED, 0.5, bright), GREEN, 0.5, bright);
    expectNear(colourAt("top", {1, 0.3, 0}), redFirst, "right");
    expectNear(colourAt("top", {-1, 0.3, 0}), greenFirst, "left");
    expectNear(colourAt("bottom", {1, 0.3, 0}), greenFirst, "right, from below");
}

TEST_F(TranslucentSurfacesTest, OpaqueSurfacesHideThemAndAreSeenThroughThem)
{
    send(m_View, "a", coloured(cube(2), RED, 0.5));
    send(m_View, "b", coloured(cube(1), GREEN, 1));
    expectNear(colourAt("front", {}), mixed(GREEN, RED, 0.5), "middle");
    expectNear(colourAt("front", {1.5, 0, 0.3}), mixed(mixed(Qt::white, RED, 0.5), RED, 0.5), "beside it");
}

TEST_F(TranslucentSurfacesTest, ColoursMayBeTranslucentThemselves)
{
    ItemUpdate outer = cube(2);
    outer.colours = NumberTuples{Numbers(std::vector<unsigned char>{255, 0, 0, 128, 255, 0, 0, 128, 255, 0, 0, 128, 255,
                                     0, 0, 128, 255, 0, 0, 128, 255, 0, 0, 128, 255, 0, 0, 128, 255, 0, 0, 128}),
        4};
    ItemUpdate inner = cube(1);
    inner.colour = RGBA8(0, 255, 0, 128);
    send(m_View, "a", outer);
    send(m_View, "b", inner);
    expectNestedFromAllSides("colours");
}

// Twenty-two sheets: those at the back are mixed as they come.
TEST_F(TranslucentSurfacesTest, WhatIsBehindManyIsNotMissing)
{
    QColor expected = Qt::white;
    for (int i = 0; i < 22; ++i) {
        ItemUpdate pane = sheet(0);
        send(m_View, "pane " + std::to_string(i), coloured(pane, Qt::black, 0.1));
        SceneUpdate moved;
        moved.transforms["pane " + std::to_string(i)] = translation({0, 0, 0.1 * i});
        m_View.apply(moved);
        expected = mixed(expected, Qt::black, 0.1);
    }
    const QColor found = colourAt("top", {0.3, 0.2, 0});
    EXPECT_NEAR(found.red(), expected.red(), 8);
}

TEST_F(TranslucentSurfacesTest, EdgesLieOnTheirFaces)
{
    ItemUpdate square = coloured(sheet(0), RED, 0.5);
    square.areEdgesSeen = true;
    square.size = 4;
    send(m_View, "square", square);
    expectNear(colourAt("top", {1, -0.5, 0}), mixed(Qt::white, RED, 0.5), "face");
    const QColor edge = colourAt("top", {0.5, 0.5, 0});
    expectNear(edge, mixed(mixed(Qt::white, RED, 0.5), RED, 0.5, 0.45), "edge");
}

} // namespace
} // namespace tavo
