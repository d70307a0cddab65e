#include <QApplication>
#include <QPushButton>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <numbers>
#include <tuple>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/Grid.h"
#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/scenes/SceneProgress.h"
#include "vireo/show/volumes/largestStack.h"
#include "vireo/show/volumes/volumeItem.h"
#include "vireo/show/volumes/whyNoVolume.h"

// Pictures of volumes in scenes.
namespace tavo {
namespace {

const QColor RED(255, 0, 0);
const QColor GREEN(0, 255, 0);
const QColor BLUE(0, 0, 255);
const QColor GROUND(Qt::white);

ItemUpdate volume(const SentGrid& grid, const Samples& samples, OpacityCurve opacities = {{0, 1}, {1, 1}})
{
    ItemUpdate update = volumeItem(gridOf(grid), {samples, numChannelsOf(grid, samples.size())});
    update.opacities = std::move(opacities);
    update.range = std::pair(0.0, 1.0);
    return update;
}

// Around the origin, as large as it is said to be.
SentGrid centred(const Vector3i& size, const Vector3d& spacing)
{
    return {size, spacing,
        {-0.5 * (size[0] - 1) * spacing[0], -0.5 * (size[1] - 1) * spacing[1], -0.5 * (size[2] - 1) * spacing[2]}, {}};
}

// Cells of 2 x 2 x 2 in a row along x, each of three samples, so that there is no other colour in the middle of it.
template <typename T>
ItemUpdate row(const std::vector<T>& cells, OpacityCurve opacities = {{0, 1}, {1, 1}})
{
    std::vector<T> samples;
    for (const T& cell : cells)
        samples.insert(samples.end(), 3, cell);
    return volume(centred({samples.size(), 1, 1}, {2.0 / 3, 2, 2}), samples, std::move(opacities));
}

class VolumeViewTest : public testing::Test
{
protected:
    VolumeViewTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, GROUND);
        m_View.setPalette(palette);
        m_View.resize(200, 100);
        SceneUpdate plain;
        plain.hasBearings = false;
        m_View.apply(plain);
        look("front");
        ItemUpdate corners = item(ItemKind::Cloud, {-5, 0, -5, 5, 0, 5});
        corners.colour = RGBA8(0, 0, 0, 255);
        corners.size = 1;
        send(m_View, "corners", corners);
    }

    void look(const std::string& side)
    {
        SceneUpdate update = seenFrom(side);
        m_View.apply(update);
    }

    void cutOut(const Vector3d& low, const Vector3d& high)
    {
        SceneUpdate update;
        update.isCutOut = true;
        update.clipBox.emplace().emplace();
        (*update.clipBox)->extend(low);
        (*update.clipBox)->extend(high);
        m_View.apply(update);
    }

    // A square of one colour across the view from the front.
    void sendWall(const std::string& path, double y, const QColor& colour)
    {
        ItemUpdate wall =
            item(ItemKind::Mesh, {-4, y, -4, 4, y, -4, 4, y, 4, -4, y, 4}, {}, std::vector{0, 1, 2, 0, 2, 3});
        wall.colour = RGBA8(colour.red(), colour.green(), colour.blue(), 255);
        send(m_View, path, wall);
    }

    QImage picture() { return m_View.picture({200, 100}); }

    QColor colourAt(const Vector3d& point)
    {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(point, m_View.viewSize());
        return picture().pixelColor(int(std::floor(pixel.x)), int(std::floor(pixel.y)));
    }

    static QColor mapped(double place, const char* map = "viridis")
    {
        const RGBA8 colour = findColourMap(map)->sample(place);
        return {colour[0], colour[1], colour[2]};
    }

    SceneView m_View{"volumes"};
};

TEST_F(VolumeViewTest, SamplesAreColouredCellsThatFillTheBox)
{
    // Rising with z, two by two by two, each as large as 2 x 2 x 2.
    send(m_View, "volume", volume(centred({2, 2, 2}, {2, 2, 2}), std::vector<float>{0, 0, 0, 0, 1, 1, 1, 1}));
    EXPECT_EQ(colourAt({0, 0, 1.7}), mapped(1));
    EXPECT_EQ(colourAt({0, 0, -1.7}), mapped(0));
    for (const Vector3d& inside : {Vector3d(-1.9, 0, -1.9), Vector3d(1.9, 0, 1.9)})
        EXPECT_NE(colourAt(inside), GROUND);
    for (const Vector3d& outside :
        {Vector3d(-2.2, 0, 0), Vector3d(2.2, 0, 0), Vector3d(0, 0, -2.2), Vector3d(0, 0, 2.2)})
        EXPECT_EQ(colourAt(outside), GROUND);
    look("left");
    for (const Vector3d& inside : {Vector3d(0, -1.9, 1.9), Vector3d(0, 1.9, 1.9)})
        EXPECT_EQ(colourAt(inside), mapped(1));
}

TEST_F(VolumeViewTest, BoxCountsForTheViewOfAll)
{
    send(m_View, "volume", volume(centred({4, 4, 4}, {10, 10, 10}), std::vector<float>(64, 1)));
    EXPECT_EQ(colourAt({19, 0, 19}), mapped(1));
    EXPECT_EQ(colourAt({-19, 0, -19}), mapped(1));
    const QRect rect = rectOf(picture(), mapped(1));
    EXPECT_GT(rect.height(), 80);
    EXPECT_LE(std::abs(rect.width() - rect.height()), 1);
}

TEST_F(VolumeViewTest, HidesWhatIsBehindItAndIsHiddenByWhatIsBefore)
{
    send(m_View, "volume", volume(centred({4, 4, 4}, {1, 1, 1}), std::vector<float>(64, 1)));
    sendWall("behind", 3, RED);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    EXPECT_EQ(colourAt({3, 0, 3}), RED);
    sendWall("before", -3, GREEN);
    EXPECT_EQ(colourAt({0, 0, 0}), GREEN);
}

TEST_F(VolumeViewTest, WhatIsInItIsSeenThroughWhatIsBeforeIt)
{
    const OpacityCurve thin{{0, 0.1}, {1, 0.1}};
    ItemUpdate black = volume(centred({40, 40, 40}, {0.1, 0.1, 0.1}), std::vector<float>(64000, 1), thin);
    black.shown = "";
    black.colour = RGBA8(0, 0, 0, 255);
    send(m_View, "volume", black);
    sendWall("wall", 0.02, GREEN);
    EXPECT_NEAR(colourAt({0, 0, 0}).green(), 255 * std::pow(0.9, 20), 8) << "behind half of it";
    sendWall("wall", 1.02, GREEN);
    EXPECT_NEAR(colourAt({0, 0, 0}).green(), 255 * std::pow(0.9, 30), 8) << "behind three quarters";
    sendWall("wall", 3, GREEN);
    EXPECT_NEAR(colourAt({0, 0, 0}).green(), 255 * std::pow(0.9, 40), 8) << "behind all";
}

// As thick everywhere, of slices that lie farther apart along some axes.
TEST_F(VolumeViewTest, IsAsOpaqueFromEverySide)
{
    const OpacityCurve thin{{0, 0.05}, {1, 0.05}};
    ItemUpdate black = volume(centred({8, 16, 32}, {0.5, 0.25, 0.125}), std::vector<float>(4096, 1), thin);
    black.shown = "";
    black.colour = RGBA8(0, 0, 0, 255);
    send(m_View, "volume", black);
    for (const char* side : {"front", "back", "left", "right", "top", "bottom"}) {
        look(side);
        EXPECT_NEAR(colourAt({0, 0, 0}).green(), 255 * std::pow(0.95, 32), 4) << side;
    }
    for (const double degrees : {20.0, 44.0, 46.0, 70.0}) {
        m_View.getCamera().setDirection(degrees, 0);
        m_View.showChoice();
        const double longer =
            1 / std::max(std::cos(degrees * std::numbers::pi / 180), std::sin(degrees * std::numbers::pi / 180));
        EXPECT_NEAR(colourAt({0, 0, 0}).green(), 255 * std::pow(0.95, 32 * longer), 5) << degrees;
    }
}

TEST_F(VolumeViewTest, WhatIsNoNumberIsNotSeen)
{
    const float inf = std::numeric_limits<float>::infinity();
    send(m_View, "volume", row(std::vector<float>{NAN, inf, 1, -inf, NAN}));
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    for (const double x : {-4.0, -2.0, 2.0, 4.0})
        EXPECT_EQ(colourAt({x, 0, 0}), GROUND) << x;
    send(m_View, "volume", volume(centred({2, 2, 2}, {2, 2, 2}), std::vector<double>(8, NAN)));
    EXPECT_EQ(numPixels(picture(), GROUND), 200 * 100 - 2) << "but for the corners";
}

TEST_F(VolumeViewTest, NumbersOfAllTypesLookTheSame)
{
    const auto expectSame = [this]<typename T>(T largest) {
        const T half = largest / 2;
        ItemUpdate update = row(std::vector<T>{0, half, largest});
        update.range = std::pair(0.0, double(largest));
        send(m_View, "volume", update);
        EXPECT_EQ(colourAt({-2.5, 0, 0}), mapped(0));
        EXPECT_NEAR(colourAt({0, 0, 0}).green(), mapped(double(half) / double(largest)).green(), 1) << sizeof(T);
        EXPECT_EQ(colourAt({2.5, 0, 0}), mapped(1));
    };
    expectSame(std::uint8_t(255));
    expectSame(std::int8_t(127));
    expectSame(std::uint16_t(60000));
    expectSame(std::int16_t(30000));
    expectSame(std::uint32_t(4000000000));
    expectSame(std::int32_t(-2000000000));
    expectSame(std::int64_t(1) << 60);
    expectSame(1e-20F);
    expectSame(1e200);
}

TEST_F(VolumeViewTest, RangeHasTheFirstAndTheLastColour)
{
    ItemUpdate update = row(std::vector<std::int16_t>{-1000, 0, 40, 3000});
    update.range = std::pair(0.0, 80.0);
    update.colourMap = "grey";
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({-3.5, 0, 0}), mapped(0, "grey"));
    EXPECT_NEAR(colourAt({1, 0, 0}).red(), mapped(0.5, "grey").red(), 3) << "of a window that is a fiftieth of all";
    EXPECT_EQ(colourAt({3.5, 0, 0}), mapped(1, "grey"));
    ItemUpdate other;
    other.range = std::pair(-1000.0, -1000.0);
    send(m_View, "volume", other);
    EXPECT_EQ(colourAt({-1, 0, 0}), mapped(1, "grey")) << "above a range that is none";
    EXPECT_NEAR(colourAt({-3.5, 0, 0}).red(), mapped(0.5, "grey").red(), 3);
}

// Of its own range, which is none, or of one that it is in, below or above.
TEST_F(VolumeViewTest, AConstantIsSeenAsOne)
{
    for (const double constant : {5.0, 0.0, -1e200, 5e-324, 1e-310}) {
        ItemUpdate update = volume(centred({3, 3, 3}, {1, 1, 1}), std::vector<double>(27, constant));
        update.range.reset();
        SceneUpdate removed;
        removed.remove("volume");
        m_View.apply(removed);
        send(m_View, "volume", update);
        EXPECT_EQ(colourAt({0, 0, 0}), mapped(0.5)) << constant;
    }
    ItemUpdate update = volume(centred({3, 3, 3}, {1, 1, 1}), std::vector<float>(27, 5));
    const std::tuple<double, double, double> places[] = {{0, 10, 0.5}, {0, 5, 1}, {6, 6, 0}, {4, 4, 1}, {5, 5, 0.5}};
    for (const auto& [from, to, place] : places) {
        update.range = std::pair(from, to);
        send(m_View, "volume", update);
        EXPECT_EQ(colourAt({0, 0, 0}), mapped(place)) << from << ' ' << to;
    }
}

TEST_F(VolumeViewTest, TheSmallestNumbersAreToldApart)
{
    for (const double largest : {1e-310, 1e-322}) {
        ItemUpdate update = row(std::vector<double>{0, largest});
        update.range = std::pair(0.0, largest);
        send(m_View, "volume", update);
        EXPECT_EQ(colourAt({-1.8, 0, 0}), mapped(0)) << largest;
        EXPECT_EQ(colourAt({1.8, 0, 0}), mapped(1)) << largest;
    }
}

TEST_F(VolumeViewTest, OfNoNumbersThereIsOneLineAndNoBar)
{
    ItemUpdate update = volume(centred({2, 2, 2}, {2, 2, 2}), std::vector<float>(8, NAN));
    update.range.reset();
    testing::internal::CaptureStderr();
    send(m_View, "nothing", update);
    m_View.resize(600, 400);
    const QImage shown = m_View.picture({600, 400});
    m_View.picture({600, 400});
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, testing::HasSubstr("scene(\"volumes\"), \"nothing\": none of its 2 x 2 x 2 samples is a number: "
                                         "there is nothing to see"));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1);
    EXPECT_EQ(rectOf(shown, mapped(1)), QRect()) << "there is no bar of its colours";
    update = volume(centred({2, 2, 2}, {2, 2, 2}), std::vector<float>{NAN, NAN, NAN, 1, NAN, NAN, NAN, 2});
    send(m_View, "nothing", update);
    EXPECT_NE(rectOf(m_View.picture({600, 400}), mapped(1)), QRect());
}

TEST_F(VolumeViewTest, OpacityFollowsTheValues)
{
    const OpacityCurve band{{0, 0}, {0.4, 0}, {0.5, 1}, {0.6, 0}, {1, 0}};
    ItemUpdate update = row(std::vector<float>{0, 0.5, 1}, band);
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({-2.5, 0, 0}), GROUND);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(0.5));
    EXPECT_EQ(colourAt({2.5, 0, 0}), GROUND);
    ItemUpdate none;
    none.opacity = 0.0;
    send(m_View, "volume", none);
    EXPECT_EQ(colourAt({0, 0, 0}), GROUND);
}

TEST_F(VolumeViewTest, WhatIsWhiteHasADarkGround)
{
    const auto ground = [this] { return picture().pixelColor(0, 50); };
    ItemUpdate update = row(std::vector<float>{0, 1}, {{0, 0}, {1, 1}});
    send(m_View, "volume", update);
    EXPECT_EQ(ground(), GROUND) << "viridis ends in yellow";
    update.colourMap = "grey";
    send(m_View, "volume", update);
    EXPECT_LT(ground().lightness(), 60);
    EXPECT_EQ(colourAt({1.5, 0, 0}), QColor(Qt::white));
    update.opacities = OpacityCurve{{0, 1}, {1, 0}};
    send(m_View, "volume", update);
    EXPECT_EQ(ground(), GROUND) << "what is white is not seen";
    update.opacities.reset();
    update.isVisible = false;
    send(m_View, "volume", update);
    EXPECT_EQ(ground(), GROUND);
}

QColor ofLabel(std::int64_t label)
{
    const RGBA8 colour = colourOfLabel(label);
    return {colour[0], colour[1], colour[2]};
}

ItemUpdate asCategories(ItemUpdate update)
{
    update.areCategories = true;
    update.range.reset();
    return update;
}

TEST_F(VolumeViewTest, CategoriesHaveColoursOfTheirOwn)
{
    send(m_View, "volume", asCategories(row(std::vector<std::int32_t>{-7, 0, 3, 2000000})));
    EXPECT_EQ(colourAt({-3, 0, 0}), ofLabel(-7));
    EXPECT_EQ(colourAt({-1, 0, 0}), GROUND) << "0 is none";
    EXPECT_EQ(colourAt({1, 0, 0}), ofLabel(3));
    EXPECT_EQ(colourAt({3, 0, 0}), ofLabel(2000000));
    const auto labels = m_View.getModel().items().at("volume").shownLabels();
    ASSERT_TRUE(labels);
    EXPECT_EQ(labels->categories.size(), 3U) << "none is no category";
    send(m_View, "volume", asCategories(row(std::vector<float>{4, NAN, 2.5F})));
    EXPECT_EQ(colourAt({-2, 0, 0}), ofLabel(4));
    EXPECT_EQ(colourAt({0, 0, 0}), GROUND) << "no number is no category";
    EXPECT_EQ(colourAt({2, 0, 0}), ofLabel(2));
}

TEST_F(VolumeViewTest, ThereIsNothingBetweenCategories)
{
    send(m_View, "volume", asCategories(volume(centred({2, 1, 1}, {4, 2, 2}), std::vector<std::uint8_t>{1, 9})));
    const QImage shown = picture();
    const int numShown = numPixels(shown, ofLabel(1)) + numPixels(shown, ofLabel(9));
    EXPECT_GT(numShown, 100);
    EXPECT_EQ(numShown + numPixels(shown, GROUND), 200 * 100 - 2) << "but for the corners";
}

TEST_F(VolumeViewTest, ManyCategoriesAreToldApart)
{
    constexpr std::size_t NUMBER = 900;
    std::vector<std::uint16_t> samples;
    for (std::size_t i = 0; i < NUMBER; ++i)
        samples.push_back(static_cast<std::uint16_t>(1 + 7 * i));
    send(m_View, "volume", asCategories(volume(centred({NUMBER, 1, 1}, {9.0 / NUMBER, 2, 2}), samples)));
    const QImage shown = picture();
    const int y = 50;
    std::size_t numFound = 0;
    for (int x = 0; x < shown.width(); ++x) {
        const Vector3d place = m_View.getCamera().unproject({x + 0.5, y + 0.5, 1}, m_View.viewSize());
        const double index = std::floor((place[0] + 4.5) / 9 * NUMBER);
        if (index >= 0 && index < NUMBER && shown.pixelColor(x, y) == ofLabel(1 + 7 * std::int64_t(index)))
            ++numFound;
    }
    EXPECT_GT(numFound, 60U);
}

TEST_F(VolumeViewTest, CategoriesAreAsOpaqueAsTheirValues)
{
    ItemUpdate update = asCategories(row(std::vector<std::uint8_t>{1, 2, 3}, {{0, 0}, {0.5, 1}, {1, 0}}));
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({-2, 0, 0}), GROUND);
    EXPECT_EQ(colourAt({0, 0, 0}), ofLabel(2)) << "the middle of the categories";
    EXPECT_EQ(colourAt({2, 0, 0}), GROUND);
    const auto hit = [this](double x) {
        const SceneItem& item = m_View.getModel().items().at("volume");
        return item.sampleAlong({*item.shape()->grid, {}, {x, -10, 0}, {0, 1, 0}, true});
    };
    EXPECT_EQ(hit(-2), std::nullopt);
    EXPECT_EQ(hit(0), 4U);
    update.opacities.reset();
    SceneUpdate removed;
    removed.remove("volume");
    m_View.apply(removed);
    send(m_View, "volume", update);
    for (const double x : {-2.0, 0.0, 2.0})
        EXPECT_NE(colourAt({x, 0, 0}), GROUND) << "all alike unless something is said";
}

TEST_F(VolumeViewTest, CategoriesBecomeNumbersAndTheReverse)
{
    ItemUpdate update = row(std::vector<std::uint8_t>{1, 1, 1});
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    send(m_View, "volume", asCategories(update));
    EXPECT_EQ(colourAt({0, 0, 0}), ofLabel(1));
    ItemUpdate numbers;
    numbers.areCategories = false;
    send(m_View, "volume", numbers);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    m_View.chooseOf(
        "volume", [](ItemChoice& choice, const ItemState& state) { choice.fields[state.shown].areLabels = true; });
    const QColor chosen = colourAt({0, 0, 0});
    EXPECT_NE(chosen, mapped(1)) << "a person has chosen it";
    EXPECT_NE(chosen, ofLabel(1)) << "and what was said of numbers is not meant for categories";
}

// Of all of them, where the greatest is no more than the others.
TEST_F(VolumeViewTest, OfCategoriesThereIsNoGreatest)
{
    ItemUpdate update =
        asCategories(volume(centred({1, 2, 1}, {2, 2, 2}), std::vector<std::uint8_t>{1, 200}, {{0, 1}, {1, 1}}));
    update.isMaximum = true;
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({0, 0, 0}), ofLabel(1)) << "the one before the other";
}

TEST_F(VolumeViewTest, LightFallsOnWhereCategoriesEnd)
{
    constexpr int SIDE = 24;
    std::vector<std::uint8_t> samples;
    for (int z = 0; z < SIDE; ++z)
        for (int y = 0; y < SIDE; ++y)
            for (int x = 0; x < SIDE; ++x) {
                const double radius = std::hypot(x - 11.5, y - 11.5, z - 11.5);
                samples.push_back(radius > 10 ? 0 : x < SIDE / 2 ? 1 : 250);
            }
    ItemUpdate ball = asCategories(volume(centred({SIDE, SIDE, SIDE}, {0.25, 0.25, 0.25}), samples));
    ball.isLit = true;
    send(m_View, "volume", ball);
    EXPECT_EQ(colourAt({-0.3, 0, 0}), ofLabel(1)) << "seen straight on";
    EXPECT_EQ(colourAt({0.3, 0, 0}), ofLabel(250));
    EXPECT_LT(colourAt({-2.3, 0, 0}).lightness(), ofLabel(1).lightness() - 10) << "inclined";
    EXPECT_LT(colourAt({2.3, 0, 0}).lightness(), ofLabel(250).lightness() - 10);
}

TEST_F(VolumeViewTest, LargeOnesOfCategoriesAreCoarseAtFirst)
{
    constexpr int SIDE = 128;
    m_View.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_View));
    std::vector<std::int16_t> samples(SIDE * SIDE * SIDE, 12);
    send(m_View, "v", asCategories(volume(centred({SIDE, SIDE, SIDE}, {0.0625, 0.0625, 0.0625}), samples)));
    m_View.repaint();
    EXPECT_TRUE(m_View.isBusy());
    const QPoint middle(m_View.width() / 2, m_View.height() / 2);
    EXPECT_EQ(m_View.grab().toImage().pixelColor(middle), ofLabel(12));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_View.isBusy(); }, 60000));
    EXPECT_EQ(m_View.grab().toImage().pixelColor(middle), ofLabel(12));
}

// The greatest lies in the middle, between two that hide it.
TEST_F(VolumeViewTest, OfGreatestValuesNothingHidesThem)
{
    const OpacityCurve rising{{0, 0}, {1, 0.5}};
    std::vector<float> samples;
    for (const float value : {0.5F, 1.0F, 0.5F})
        samples.insert(samples.end(), 9, value);
    ItemUpdate update = volume({{9, 3, 1}, {0.5, 1, 4}, {-2, -1, 0}, {}}, samples, rising);
    update.isMaximum = true;
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1)) << "as opaque as can be";
    sendWall("wall", -2, GREEN);
    EXPECT_EQ(colourAt({0, 0, 0}), GREEN);
    sendWall("wall", 0.5, GREEN);
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1)) << "before the wall";
    sendWall("wall", 5, GREEN);
    ItemUpdate smoke;
    smoke.isMaximum = false;
    send(m_View, "volume", smoke);
    EXPECT_NE(colourAt({0, 0, 0}), mapped(1));
    EXPECT_EQ(colourAt({3, 0, 0}), GREEN) << "beside it";
}

// As opaque as the whole, and the whole again at rest.
TEST_F(VolumeViewTest, FewerSlicesAreDrawnWhileItMoves)
{
    std::vector<float> samples;
    for (int z = 0; z < 40; ++z)
        for (int i = 0; i < 1600; ++i)
            samples.push_back(i % 40 > 19 ? 1.0F : 0.5F);
    constexpr int ROUNDING = 14; // of 40 layers, each of which is rounded
    const OpacityCurve thin{{0, 0.05}, {1, 0.05}};
    send(m_View, "volume", volume(centred({40, 40, 40}, {0.1, 0.1, 0.1}), samples, thin));
    const auto grab = [this] { return m_View.grab().toImage().convertToFormat(QImage::Format_RGB32); };
    const QImage whole = grab();
    m_View.getSliceMotion().measure(1);
    m_View.showChoice();
    EXPECT_EQ(m_View.getSliceMotion().step(), 8U);
    const QImage moving = grab();
    EXPECT_NE(moving, whole);
    for (const Vector3d& place : {Vector3d(-1, 0, 0), Vector3d(1, 0, 0)}) {
        const SceneCamera::Pixel pixel = m_View.getCamera().project(place, m_View.viewSize());
        const QColor few = moving.pixelColor(int(pixel.x), int(pixel.y));
        const QColor all = whole.pixelColor(int(pixel.x), int(pixel.y));
        EXPECT_NEAR(few.red(), all.red(), ROUNDING);
        EXPECT_NEAR(few.green(), all.green(), ROUNDING);
        EXPECT_NEAR(few.blue(), all.blue(), ROUNDING);
    }
    m_View.getSliceMotion().measure(0.001);
    m_View.showChoice();
    EXPECT_EQ(m_View.getSliceMotion().step(), 8U) << "never more in a gesture";
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_View.isBusy(); }, 60000));
    EXPECT_EQ(m_View.getSliceMotion().step(), 1U);
    EXPECT_EQ(grab(), whole);
}

// A ball, opaque within, that the camera looks at from several sides: it is bright in the middle, and darker where it
// is inclined, by as much as a surface would be.
TEST_F(VolumeViewTest, LightFallsOnItByItsGradients)
{
    constexpr int SIZE = 48;
    constexpr double SPACING = 4.0 / SIZE;
    std::vector<float> samples;
    for (int z = 0; z < SIZE; ++z)
        for (int y = 0; y < SIZE; ++y)
            for (int x = 0; x < SIZE; ++x) {
                const double radius = SPACING * std::hypot(x - 23.5, y - 23.5, z - 23.5);
                samples.push_back(static_cast<float>(2 - radius));
            }
    ItemUpdate update = volume(centred({SIZE, SIZE, SIZE}, {SPACING, SPACING, SPACING}), samples,
        {{0, 0}, {0.19, 0}, {0.2, 1}, {1, 1}}); // within a radius of 1.6
    update.range = std::pair(0.0, 2.0);
    update.shown = "";
    update.colour = RGBA8(200, 200, 200, 255);
    send(m_View, "volume", update);
    const int plain = colourAt({0, 0, 0}).red();
    EXPECT_NEAR(plain, 200, 1);
    ItemUpdate lit;
    lit.isLit = true;
    send(m_View, "volume", lit);
    for (const auto& [degrees, height] :
        {std::pair(0.0, 0.0), {90.0, 0.0}, {180.0, 30.0}, {35.0, 20.0}, {10.0, 89.0}}) {
        m_View.getCamera().setDirection(degrees, height);
        m_View.showChoice();
        EXPECT_NEAR(colourAt({0, 0, 0}).red(), 200, 6) << degrees;
        const SceneCamera::Pixel middle = m_View.getCamera().project({0, 0, 0}, m_View.viewSize());
        const double pixels = 1 / m_View.getCamera().unitsPerPixel(m_View.getCamera().getDistance(), m_View.viewSize());
        const QImage shown = picture();
        for (const double out : {-1.2, 1.2}) { // where the surface is inclined by about 49 degrees
            const double there = 200 * (0.25 + 0.75 * std::sqrt(1 - std::pow(1.2 / 1.6, 2)));
            EXPECT_NEAR(shown.pixelColor(int(middle.x + out * pixels), int(middle.y)).red(), there, 14) << degrees;
            EXPECT_NEAR(shown.pixelColor(int(middle.x), int(middle.y + out * pixels)).red(), there, 14) << degrees;
        }
    }
    lit.isMaximum = true;
    send(m_View, "volume", lit);
    EXPECT_NEAR(colourAt({0, 0, 0}).red(), 200, 1) << "none on greatest values";
}

TEST_F(VolumeViewTest, SamplesOfThreeOrFourNumbersAreColours)
{
    using Bytes = std::array<std::uint8_t, 3>;
    const OpacityCurve bright{{0, 0}, {0.5, 1}, {1, 1}};
    send(m_View, "volume", row(std::vector<Bytes>{{255, 0, 0}, {0, 0, 255}, {0, 0, 0}}, bright));
    EXPECT_EQ(colourAt({-2.5, 0, 0}), RED);
    EXPECT_EQ(colourAt({0, 0, 0}), BLUE);
    EXPECT_EQ(colourAt({2.8, 0, 0}), GROUND) << "black is not seen";
    using Floats = std::array<float, 4>;
    send(m_View, "volume", row(std::vector<Floats>{{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 0}}));
    EXPECT_EQ(colourAt({-2.5, 0, 0}), RED);
    EXPECT_EQ(colourAt({0, 0, 0}), GREEN);
    EXPECT_EQ(colourAt({2.8, 0, 0}), GROUND);
    send(m_View, "volume", row(std::vector<float>{1, 1, 1}));
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1)) << "numbers again";
}

TEST_F(VolumeViewTest, LiesWhereItsAxesPointAndItsBranchIsMoved)
{
    SentGrid grid = centred({4, 1, 1}, {1, 1, 1});
    grid.origin = {0, 0, -1.5};
    grid.orientation = {{0, 0, 3}, {1, 0, 0}, {0, 1, 0}};
    send(m_View, "a/volume", volume(grid, std::vector<float>{0, 0, 1, 1}));
    EXPECT_EQ(colourAt({0, 0, 1.8}), mapped(1)) << "upright";
    EXPECT_EQ(colourAt({0, 0, -1.8}), mapped(0));
    EXPECT_EQ(colourAt({1.8, 0, 0}), GROUND);
    SceneUpdate moved;
    moved.transforms["a"] = translation({3, 0, 0});
    m_View.apply(moved);
    EXPECT_EQ(colourAt({0, 0, 1.8}), GROUND);
    EXPECT_EQ(colourAt({3, 0, 1.8}), mapped(1));
    SceneUpdate removed;
    removed.remove("a");
    m_View.apply(removed);
    EXPECT_EQ(colourAt({3, 0, 1.8}), GROUND);
}

TEST_F(VolumeViewTest, OneSampleIsACell)
{
    send(m_View, "volume", volume({{1, 1, 1}, {2.0}, {1, 0, 1}, {}}, std::vector<std::uint8_t>{1}));
    const double pixels = 2 / m_View.getCamera().unitsPerPixel(m_View.getCamera().getDistance(), m_View.viewSize());
    EXPECT_NEAR(rectOf(picture(), mapped(1)).width(), pixels, 1);
    EXPECT_NEAR(rectOf(picture(), mapped(1)).height(), pixels, 1);
    EXPECT_EQ(colourAt({1, 0, 1}), mapped(1));
}

// As many textures as that there are none.
TEST_F(VolumeViewTest, ALongOneIsDrawnScaledDownAndThatIsSaid)
{
    constexpr int LENGTH = 1'000'000;
    std::vector<std::uint8_t> samples(LENGTH, 0);
    std::fill(samples.begin() + LENGTH / 2, samples.end(), std::uint8_t(1));
    testing::internal::CaptureStderr();
    send(m_View, "long", volume(centred({1, 1, LENGTH}, {2, 2, 8e-6}), samples));
    EXPECT_EQ(colourAt({0, 0, 3.8}), mapped(1));
    EXPECT_EQ(colourAt({0, 0, -3.8}), mapped(0));
    look("top");
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        testing::HasSubstr(
            "scene(\"volumes\"), \"long\": 1 x 1 x 1000000 samples are more than textures hold; they are "
            "drawn as 1 x 1 x 1954"));
}

TEST_F(VolumeViewTest, OneLargerThanItsTexturesMayBeIsDrawnAtAPartOfItsResolutionAndThatIsSaid)
{
    const double before = std::exchange(largestStack, 100 * 100 * 12); // of bytes, a fiftieth of all
    const std::vector<std::uint8_t> samples(100 * 100 * 100, 1);
    testing::internal::CaptureStderr();
    send(m_View, "large", volume(centred({100, 100, 100}, {0.08, 0.08, 0.08}), samples));
    EXPECT_EQ(colourAt({3, 0, 3}), mapped(1));
    EXPECT_EQ(colourAt({-3, 0, -3}), mapped(1));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
        testing::HasSubstr(
            "\"large\": 100 x 100 x 100 samples are more than textures hold; they are drawn as 25 x 25 x 25"));
    largestStack = before;
}

// A corner of it, an eighth: what is behind it is seen, and what is beside it is as it was.
TEST_F(VolumeViewTest, WhatIsCutOutIsNotSeen)
{
    sendWall("wall", 4.5, BLUE);
    send(m_View, "v", volume(centred({6, 6, 6}, {1, 1, 1}), std::vector<float>(216, 0.25F)));
    cutOut({0, -4, 0}, {4, 4, 4});
    EXPECT_EQ(colourAt({1.5, 0, 1.5}), BLUE);
    for (const Vector3d& beside : {Vector3d(-1.5, 0, 1.5), Vector3d(1.5, 0, -1.5), Vector3d(-1.5, 0, -1.5)})
        EXPECT_EQ(colourAt(beside), mapped(0.25));
    look("right");
    EXPECT_EQ(colourAt({0, 0, 1.5}), mapped(0.25)) << "the half behind it";
    SceneUpdate none;
    none.clipBox.emplace();
    m_View.apply(none);
    look("front");
    EXPECT_EQ(colourAt({1.5, 0, 1.5}), mapped(0.25));
}

// Layers that are cut are put together in the order of their depths, wherever one looks from.
TEST_F(VolumeViewTest, WhatIsLeftOfACutIsAsOpaqueAsThat)
{
    const OpacityCurve some{{0, 0.1}, {1, 0.1}};
    std::vector<float> samples;
    for (int i = 0; i < 8 * 8 * 8; ++i)
        samples.push_back(float(i % 8 + i / 8 % 8 + i / 64) / 21);
    const auto pictures = [this] {
        std::vector<QImage> all;
        for (const char* side : {"front", "back", "left", "right", "top", "bottom"}) {
            look(side);
            all.push_back(picture());
        }
        m_View.getCamera().turn(0.7, 0.4, {});
        m_View.showChoice();
        all.push_back(picture());
        m_View.showAll();
        return all;
    };
    send(m_View, "v", volume(centred({8, 8, 8}, {1, 1, 1}), samples, some));
    const std::vector<QImage> whole = pictures();
    cutOut({-1e-3, -1e-3, -1e-3}, {1e-3, 1e-3, 1e-3}); // next to nothing
    const std::vector<QImage> cut = pictures();
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (int y = 5; y < 100; y += 10)
            for (int x = 5; x < 200; x += 10)
                EXPECT_NEAR(qGray(whole[i].pixel(x, y)), qGray(cut[i].pixel(x, y)), 3) << i << ": " << x << ", " << y;
}

TEST_F(VolumeViewTest, OfGreatestValuesThoseThatAreCutOutDoNotCount)
{
    ItemUpdate cells = row<float>({0.25F, 1, 0.5F});
    cells.isMaximum = true;
    send(m_View, "v", cells);
    look("right");
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    cutOut({-1.2, -4, -4}, {1.2, 4, 4});
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(0.5));
}

TEST_F(VolumeViewTest, SurfacesAndPointsAreCutOutToo)
{
    sendWall("wall", 0, RED);
    cutOut({0, -1, 0}, {3, 1, 3});
    EXPECT_EQ(colourAt({1, 0, 1}), GROUND);
    EXPECT_EQ(colourAt({-1, 0, 1}), RED);
    EXPECT_EQ(colourAt({1, 0, -1}), RED);
}

// One value far away neither hides the others, nor takes their colours from them.
TEST_F(VolumeViewTest, OneHotSampleDoesNotHideTheRest)
{
    std::vector<float> samples;
    for (int i = 0; i < 16 * 16 * 16; ++i)
        samples.push_back(float(i % 16) / 15);
    samples[0] = 1e9F;
    ItemUpdate update = volume(centred({16, 16, 16}, {0.5, 0.5, 0.5}), samples);
    update.range.reset();
    send(m_View, "v", update);
    const auto [from, to] = m_View.getModel().items().at("v").state().range;
    EXPECT_NEAR(from, 0, 1e-6);
    EXPECT_NEAR(to, 1, 1e-6);
    EXPECT_EQ(colourAt({-3.75, 0, 0}), mapped(0));
    EXPECT_EQ(colourAt({3.75, 0, 0}), mapped(1));
    const QColor middle = colourAt({0, 0, 0});
    EXPECT_NEAR(middle.green(), mapped(0.5).green(), 6);
    m_View.chooseOf("v", [](ItemChoice& choice, const ItemState& state) { choice.fields[state.shown].isWhole = true; });
    EXPECT_EQ(m_View.getModel().items().at("v").state().range.second, double(1e9F)) << "a person may have all";
    EXPECT_EQ(colourAt({3.75, 0, 0}), mapped(0));
}

// In the window; pictures that are saved are whole at once.
TEST_F(VolumeViewTest, ALargeOneIsCoarseAtOnceAndThenWhole)
{
    constexpr int SIDE = 128;
    std::vector<std::uint16_t> samples;
    for (int i = 0; i < SIDE * SIDE * SIDE; ++i)
        samples.push_back(i % SIDE % 2 == 0 ? 65535 : 0); // of which a coarse one sees only the even ones
    ItemUpdate large = volume(centred({SIDE, SIDE, SIDE}, {0.0625, 0.0625, 0.0625}), samples);
    large.range = std::pair(0.0, 65535.0);
    m_View.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_View));
    send(m_View, "v", large);
    const QColor coarse = m_View.grab().toImage().pixelColor(100, 50);
    EXPECT_EQ(coarse, mapped(1));
    EXPECT_TRUE(m_View.isBusy());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !m_View.isBusy(); }, 60000));
    QApplication::processEvents();
    const QColor whole = m_View.grab().toImage().pixelColor(100, 50);
    EXPECT_NE(whole, coarse);
    EXPECT_EQ(whole, picture().pixelColor(100, 50));
}

TEST_F(VolumeViewTest, ALargeOneStaysCoarseIfItIsGivenUp)
{
    constexpr int SIDE = 200;
    std::vector<std::uint16_t> samples;
    for (int i = 0; i < SIDE * SIDE * SIDE; ++i)
        samples.push_back(i % SIDE % 2 == 0 ? 65535 : 0);
    ItemUpdate large = volume(centred({SIDE, SIDE, SIDE}, {0.04, 0.04, 0.04}), samples);
    large.range = std::pair(0.0, 65535.0);
    m_View.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_View));
    m_View.getProgress().setDelay(0);
    const auto* const progress = m_View.findChild<QWidget*>("sceneProgress");
    send(m_View, "v", large);
    m_View.grab();
    ASSERT_TRUE(QTest::qWaitFor([progress] { return progress->isVisible(); }));
    clickMouse(m_View.findChild<QPushButton*>("giveUp"));
    EXPECT_FALSE(progress->isVisible());
    EXPECT_FALSE(m_View.isBusy());
    look("front");
    EXPECT_EQ(m_View.grab().toImage().pixelColor(100, 50), mapped(1)) << "coarse";
    EXPECT_FALSE(m_View.isBusy());
    EXPECT_NE(picture().pixelColor(100, 50), mapped(1)) << "what is saved is whole";
}

TEST_F(VolumeViewTest, PicturesOfLargeOnesAreWholeAtOnce)
{
    constexpr int SIDE = 128;
    std::vector<std::uint16_t> samples(SIDE * SIDE * SIDE);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = i % 2 == 0 ? 65535 : 0;
    ItemUpdate large = volume(centred({SIDE, SIDE, SIDE}, {0.0625, 0.0625, 0.0625}), samples);
    large.range = std::pair(0.0, 65535.0);
    send(m_View, "v", large);
    EXPECT_NE(colourAt({0, 0, 0}), mapped(1)) << "what lies between is seen";
    EXPECT_FALSE(m_View.isBusy());
}

TEST_F(VolumeViewTest, WhatIsScaledDownHasTheMeanOfWhatIsThere)
{
    constexpr int LENGTH = 4096;
    std::vector<float> samples;
    for (int i = 0; i < LENGTH; ++i)
        samples.push_back(i % 2 == 0 ? 1.0F : i < LENGTH / 2 ? 0.0F : NAN);
    send(m_View, "volume", volume(centred({LENGTH, 1, 1}, {8.0 / LENGTH, 2, 2}), samples, {{0, 1}, {1, 1}}));
    EXPECT_EQ(colourAt({-2, 0, 0}), mapped(0.5)) << "of 1 and 0";
    const QColor half = colourAt({2, 0, 0});
    EXPECT_NEAR(half.red(), (mapped(1).red() + 255) / 2, 2) << "half of it is there";
}

// The vector is kept, not copied.
TEST_F(VolumeViewTest, SamplesAreShared)
{
    auto shared = std::make_shared<const std::vector<float>>(8, 1.0F);
    const std::weak_ptr<const std::vector<float>> kept = shared;
    send(m_View, "volume", volume(centred({2, 2, 2}, {2, 2, 2}), Samples(shared)));
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
    shared.reset();
    EXPECT_FALSE(kept.expired());
    SceneUpdate removed;
    removed.remove("volume");
    m_View.apply(removed);
    EXPECT_TRUE(kept.expired());
}

TEST_F(VolumeViewTest, WhatAPersonChoosesWins)
{
    ItemUpdate update = volume(centred({2, 2, 2}, {2, 2, 2}), std::vector<float>(8, 1));
    send(m_View, "volume", update);
    m_View.chooseOf("volume", [](ItemChoice& choice, const ItemState& state) {
        EXPECT_EQ(state.kind, ItemKind::Volume);
        EXPECT_FALSE(state.hasSize());
        choice.fields[state.shown].opacities = OpacityCurve{{0, 0}, {1, 0}};
    });
    EXPECT_EQ(colourAt({0, 0, 0}), GROUND);
    send(m_View, "volume", update);
    EXPECT_EQ(colourAt({0, 0, 0}), GROUND) << "sent again";
    m_View.choose([](SceneChoices& choices) { choices.reset("volume"); });
    EXPECT_EQ(colourAt({0, 0, 0}), mapped(1));
}

} // namespace
} // namespace tavo
