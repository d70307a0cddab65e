#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/vireo/show/scenes/sceneUpdates.h"

// Options of items and of views, each by what it changes in a picture.
namespace tavo {
namespace {

const QColor RED(255, 0, 0);
const QColor GREEN(0, 255, 0);

NumberTuples coloursOf(const std::vector<QColor>& colours)
{
    std::vector<RGBA8> sent;
    for (const QColor& colour : colours)
        sent.emplace_back(colour.red(), colour.green(), colour.blue(), 255);
    return {Colours(sent), 4};
}

void addScalar(ItemUpdate& update, const std::string& name, const Numbers& values)
{
    SceneField field{name, {values, 1}, false};
    update.addField(field);
}

// Letters and slanting lines are smoothed.
bool isNear(const QColor& one, const QColor& other)
{
    return std::abs(one.red() - other.red()) < 80 && std::abs(one.green() - other.green()) < 80 &&
           std::abs(one.blue() - other.blue()) < 80;
}

QRect partNear(const QImage& picture, const QColor& colour)
{
    QRect rect;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (isNear(picture.pixelColor(x, y), colour))
                rect |= QRect(x, y, 1, 1);
    return rect;
}

int numNear(const QImage& picture, const QColor& colour)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            number += isNear(picture.pixelColor(x, y), colour);
    return number;
}

// Of pixels side by side.
int longestRun(const QImage& picture, const QColor& colour)
{
    int longest = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0, run = 0; x < picture.width(); ++x) {
            run = picture.pixelColor(x, y) == colour ? run + 1 : 0;
            longest = std::max(longest, run);
        }
    return longest;
}

class SceneOptionsTest : public testing::Test
{
protected:
    SceneOptionsTest()
    {
        setGround(Qt::white, Qt::black);
        m_View.resize(200, 100);
        setBearings(false);
        look(true);
        ItemUpdate corners = item(ItemKind::Cloud, {-5, 0, -5, 5, 0, 5});
        corners.colour = RGBA8(0, 0, 255, 255);
        corners.size = 1;
        send(m_View, "corners", corners);
    }

    void setGround(const QColor& ground, const QColor& ink)
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, ground);
        palette.setColor(QPalette::Text, ink);
        m_View.setPalette(palette);
    }

    void setBearings(bool areShown)
    {
        SceneUpdate update;
        update.hasBearings = areShown;
        m_View.apply(update);
    }

    void look(bool isOrthographic)
    {
        SceneUpdate update = seenFrom("front", isOrthographic);
        m_View.apply(update);
    }

    QImage picture(const QSize& size = {200, 100}) { return m_View.picture(size); }

    QColor colourAt(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return picture().pixelColor(int(std::floor(pixel.x)), int(std::floor(pixel.y)));
    }

    static QColor mapped(double place)
    {
        const RGBA8 colour = findColourMap("viridis")->sample(place);
        return {colour[0], colour[1], colour[2]};
    }

    SceneView m_View{"options"};
};

TEST_F(SceneOptionsTest, TextsAreInTheInkUnlessTheyHaveAColour)
{
    ItemUpdate text = item(ItemKind::Text, {0, 0, 0});
    text.shape->text = "HHH";
    send(m_View, "text", text);
    EXPECT_GT(numNear(picture(), Qt::black), 5);
    setGround(QColor(20, 20, 20), Qt::white);
    EXPECT_GT(numNear(picture(), Qt::white), 5);
    ItemUpdate red;
    red.colour = RGBA8(255, 0, 0, 255);
    send(m_View, "text", red);
    EXPECT_EQ(numNear(picture(), Qt::white), 0);
    EXPECT_GT(numNear(picture(), RED), 10);
}

TEST_F(SceneOptionsTest, TextsMoveWithTheirBranch)
{
    ItemUpdate text = item(ItemKind::Text, {-3, 0, 0});
    text.shape->text = "HHH";
    text.colour = RGBA8(255, 0, 0, 255);
    send(m_View, "car/text", text);
    const int before = partNear(picture(), RED).left();
    SceneUpdate moved;
    moved.transforms["car"] = translation({3, 0, 0});
    m_View.apply(moved);
    const double pixels = 3 / m_View.getCamera().unitsPerPixel(1, m_View.viewSize());
    EXPECT_NEAR(partNear(picture(), RED).left(), before + pixels, 2);
}

TEST_F(SceneOptionsTest, ArrowsAndBoxesHaveColoursOfTheirOwn)
{
    ItemUpdate arrows = item(ItemKind::Vectors, {-3, 0, -3, 3, 0, -3}, {0, 0, 4, 0, 0, 4});
    arrows.size = 3;
    arrows.colours = coloursOf({RED, GREEN});
    send(m_View, "item", arrows);
    EXPECT_EQ(colourAt({-3, 0, -1}), RED);
    EXPECT_EQ(colourAt({3, 0, -1}), GREEN);
    ItemUpdate boxes = item(ItemKind::Boxes, {-4, 0, -2, 1, 0, -2}, {-1, 1, 2, 4, 1, 2});
    addScalar(boxes, "number", {0, 1});
    send(m_View, "item", boxes);
    ItemUpdate shown;
    shown.shown = "number";
    send(m_View, "item", shown);
    EXPECT_EQ(colourAt({-4, 0, 0.5}), mapped(0));
    EXPECT_EQ(colourAt({4, 0, 0.5}), mapped(1));
}

TEST_F(SceneOptionsTest, PointsOfLinesHaveNumbersAndColours)
{
    ItemUpdate lines = item(ItemKind::Lines, {-4, 0, 0, -2, 0, 0, 2, 0, 0, 4, 0, 0});
    lines.size = 3;
    addScalar(lines, "number", {0, 0, 1, 1});
    send(m_View, "lines", lines);
    EXPECT_EQ(colourAt({-3, 0, 0}), mapped(0));
    EXPECT_EQ(colourAt({3, 0, 0}), mapped(1));
    ItemUpdate colours;
    colours.colours = coloursOf({RED, RED, GREEN, GREEN});
    send(m_View, "lines", colours);
    EXPECT_EQ(colourAt({-3, 0, 0}), RED);
    EXPECT_EQ(colourAt({3, 0, 0}), GREEN);
}

// Besides an opacity that colours have themselves.
TEST_F(SceneOptionsTest, OpacityGoesForNumbersAndColoursToo)
{
    ItemUpdate mesh = item(ItemKind::Mesh, {-4, 0, -4, 4, 0, -4, 4, 0, 4, -4, 0, 4}, {}, {{0, 1, 2, 3}});
    mesh.opacity = 0.5;
    addScalar(mesh, "number", {1, 1, 1, 1});
    send(m_View, "mesh", mesh);
    EXPECT_NEAR(colourAt({0, 0, 0}).red(), (255 + mapped(0.5).red()) / 2, 3);
    ItemUpdate colours;
    colours.colours = coloursOf({RED, RED, RED, RED});
    send(m_View, "mesh", colours);
    EXPECT_NEAR(colourAt({0, 0, 0}).green(), 128, 3);
    colours.colours = NumberTuples{Colours(std::vector<RGBA8>(4, RGBA8(255, 0, 0, 128))), 4};
    send(m_View, "mesh", colours);
    EXPECT_NEAR(colourAt({0, 0, 0}).green(), 191, 3);
}

TEST_F(SceneOptionsTest, FramesAreScaledAndTurned)
{
    ItemUpdate frame = item(ItemKind::Frame, {});
    frame.shape->frame = {{0, 0, 3, 0, 0, 3, 0, 0, -3, 0, 0, 0, 0, 0, 0, 1}}; // x upwards, z to the left
    frame.size = 3;
    send(m_View, "frame", frame);
    EXPECT_GT(colourAt({0, 0, 2}).red(), 2 * colourAt({0, 0, 2}).blue());
    EXPECT_GT(colourAt({-2, 0, 0}).blue(), 2 * colourAt({-2, 0, 0}).red());
    EXPECT_EQ(colourAt({2, 0, 0}), QColor(Qt::white));
}

// So that they look like smaller ones. The mark at the right has the colour, too.
TEST_F(SceneOptionsTest, LargePicturesHaveLargePointsLinesEdgesAndTexts)
{
    const auto expectDouble = [this](const ItemUpdate& update) {
        send(m_View, "item", update);
        const QRect small = partNear(picture({1600, 1200}).copy(0, 0, 1200, 1200), RED);
        const QRect large = partNear(picture({3200, 2400}).copy(0, 0, 2400, 2400), RED);
        EXPECT_NEAR(large.height(), 2 * small.height(), std::max(2, small.height() / 8));
        EXPECT_GE(small.height(), 3);
    };
    ItemUpdate point = item(ItemKind::Cloud, {0, 0, 0});
    point.colour = RGBA8(255, 0, 0, 255);
    point.size = 9;
    expectDouble(point);
    ItemUpdate line = item(ItemKind::Lines, {-3, 0, 0, 3, 0, 0});
    line.size = 5;
    expectDouble(line);
    ItemUpdate text = item(ItemKind::Text, {0, 0, 0});
    text.shape->text = "HHH";
    expectDouble(text);
    ItemUpdate mesh = item(ItemKind::Mesh, {-3, 0, -1, 3, 0, -1, 3, 0, 1, -3, 0, 1}, {}, {{0, 1, 2, 3}});
    mesh.areEdgesSeen = true;
    mesh.size = 9;
    send(m_View, "item", mesh);
    const QColor edge(114, 0, 0);
    const auto thickness = [&](const QSize& size) {
        const QImage seen = picture(size);
        return numPixels(seen.copy(size.width() / 2, 0, 1, size.height()), edge);
    };
    EXPECT_NEAR(thickness({3200, 2400}), 2 * thickness({1600, 1200}), 2);
    EXPECT_GE(thickness({1600, 1200}), 16) << "two of them";
}

TEST_F(SceneOptionsTest, BearingsAreInPictures)
{
    look(false);
    m_View.resize(600, 400);
    EXPECT_EQ(numNear(picture({600, 400}), Qt::black), 0);
    setBearings(true);
    EXPECT_GT(numNear(picture({600, 400}), Qt::black), 500);
}

TEST_F(SceneOptionsTest, OrthographicPicturesHaveABarOfLength)
{
    m_View.resize(600, 400);
    setBearings(true);
    const auto longestInCorner = [this] { return longestRun(picture({600, 400}).copy(0, 350, 150, 50), Qt::black); };
    EXPECT_GT(longestInCorner(), 30);
    look(false);
    EXPECT_LT(longestInCorner(), 30);
}

// What is compared differs in nothing else.
TEST_F(SceneOptionsTest, BarsOfColoursHaveTheirNumbersAndNames)
{
    const auto shown = [this](const std::string& name, const Numbers& values) {
        SceneUpdate gone;
        gone.remove("points");
        m_View.apply(gone);
        ItemUpdate points = item(ItemKind::Cloud, {-1, 0, 0, 1, 0, 0});
        addScalar(points, name, values);
        send(m_View, "points", points);
        return picture({600, 400});
    };
    const QImage one = shown("a", {3, 7});
    EXPECT_EQ(one, shown("a", {3, 7}));
    EXPECT_NE(one, shown("b", {3, 7}));
    EXPECT_NE(one, shown("a", {4, 8}));
}

TEST_F(SceneOptionsTest, LegendsHaveTheNamesOfTheirCategories)
{
    const auto shown = [this](const std::string& two, const std::string& seven) {
        ItemUpdate points = item(ItemKind::Cloud, {-1, 0, 0, 1, 0, 0});
        SceneField labels{"labels", {Numbers{2, 7}, 1}, true};
        points.addField(labels);
        points.labelNames = {{2, two}, {7, seven}};
        send(m_View, "points", points);
        return picture({600, 400});
    };
    const QImage one = shown("ground", "meadow");
    EXPECT_EQ(one, shown("ground", "meadow"));
    EXPECT_NE(one, shown("meadow", "ground"));
}

TEST_F(SceneOptionsTest, TheOrientationMarkHasLetters)
{
    setGround(QColor(20, 20, 20), QColor(20, 20, 200));
    m_View.resize(600, 400);
    EXPECT_GT(numNear(picture({600, 400}).copy(m_View.markRoom()->toRect()), Qt::white), 5);
}

} // namespace
} // namespace tavo
