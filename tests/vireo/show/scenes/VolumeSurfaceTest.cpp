#include <QPushButton>
#include <QTemporaryDir>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <limits>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/Grid.h"
#include "vireo/show/scenes/SceneProgress.h"
#include "vireo/show/volumes/volumeItem.h"
#include "vireo/show/volumes/whyNoVolume.h"

// Isosurfaces of volumes, as items of their scenes.
namespace tavo {
namespace {

using testing::HasSubstr;

// Around the origin, 4 wide. Its samples are as far from 4 as they are from the middle, in units of the scene.
ItemUpdate ball(int size)
{
    const double spacing = 4.0 / size;
    const double first = -0.5 * (size - 1) * spacing;
    std::vector<float> samples;
    for (int z = 0; z < size; ++z)
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                samples.push_back(
                    static_cast<float>(4 - std::hypot(first + x * spacing, first + y * spacing, first + z * spacing)));
    ItemUpdate update = volumeItem(gridOf({{size, size, size}, spacing, {first, first, first}, {}}),
        {NumberTuples{Samples(std::move(samples)), 1}});
    update.isVisible = false;
    return update;
}

ItemUpdate surfaceAt(double value, const std::string& volume = "v")
{
    ItemUpdate update;
    update.isosurface = IsosurfaceOf{volume, value};
    update.colour = RGBA8(255, 0, 0, 255);
    return update;
}

class VolumeSurfaceTest : public testing::Test
{
protected:
    VolumeSurfaceTest()
    {
        QPalette palette = m_View.palette();
        palette.setColor(QPalette::Base, Qt::white);
        m_View.setPalette(palette);
        m_View.resize(200, 200);
        SceneUpdate plain = seenFrom("front");
        plain.hasBearings = false;
        m_View.apply(plain);
        send(m_View, "corners", item(ItemKind::Cloud, {-2, 0, -2, 2, 0, 2}));
    }

    const SceneItem& surface() const { return m_View.getModel().items().at("v/isosurface"); }

    std::size_t numFaces() const { return surface().shape() ? surface().shape()->numParts() : 0; }

    // From the middle of the volume to the surface: of all its points the least and the greatest.
    std::pair<double, double> radii() const
    {
        const NumberTuples& points = surface().shape()->points;
        std::pair<double, double> radii(1e9, 0);
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double radius =
                std::hypot(points.numbers[3 * i], points.numbers[3 * i + 1], points.numbers[3 * i + 2]);
            radii = {std::min(radii.first, radius), std::max(radii.second, radius)};
        }
        return radii;
    }

    std::string saidOf(const std::function<void()>& act)
    {
        testing::internal::CaptureStderr();
        act();
        return testing::internal::GetCapturedStderr();
    }

    SceneView m_View{"surfaces"};
};

TEST_F(VolumeSurfaceTest, IsAClosedSurfaceOfTheScene)
{
    send(m_View, "v", ball(32));
    send(m_View, "v/isosurface", surfaceAt(2.5));
    EXPECT_NEAR(radii().first, 1.5, 0.01);
    EXPECT_NEAR(radii().second, 1.5, 0.01);
    EXPECT_TRUE(surface().isClosedSurface());
    const QImage picture = m_View.picture({200, 200});
    const QColor middle = picture.pixelColor(100, 100);
    EXPECT_GT(middle.red(), 240) << "it faces the light";
    EXPECT_EQ(middle.green(), 0);
    const QColor edge = picture.pixelColor(100 + int(1.4 / 4 * 190), 100);
    EXPECT_EQ(edge.green(), 0);
    EXPECT_LT(edge.red(), 160) << "it is inclined";
    EXPECT_EQ(picture.pixelColor(100 + int(1.6 / 4 * 200), 100), QColor(Qt::white));
}

// Light changes from pixel to pixel, and not from triangle to triangle.
TEST_F(VolumeSurfaceTest, IsSmooth)
{
    send(m_View, "v", ball(16));
    send(m_View, "v/isosurface", surfaceAt(2.5));
    const QImage picture = m_View.picture({200, 200});
    int last = picture.pixelColor(100, 100).red();
    for (int x = 100; x < 150; ++x) {
        const int red = picture.pixelColor(x, 100).red();
        EXPECT_LE(red, last + 2) << x;
        EXPECT_GE(red, last - 8) << x;
        last = red;
    }
}

TEST_F(VolumeSurfaceTest, FollowsNewSamplesAndValues)
{
    send(m_View, "v/isosurface", surfaceAt(2.5));
    EXPECT_EQ(numFaces(), 0U) << "there is no volume yet";
    send(m_View, "v", ball(16));
    EXPECT_NEAR(radii().second, 1.5, 0.03);
    send(m_View, "v/isosurface", surfaceAt(3));
    EXPECT_NEAR(radii().second, 1, 0.03);
    const void* const points = surface().shape()->points.numbers.getData();
    ItemUpdate look;
    look.opacity = 0.5;
    send(m_View, "v", look);
    send(m_View, "v/isosurface", look);
    EXPECT_EQ(surface().shape()->points.numbers.getData(), points) << "it is not made again for a look";
    ItemUpdate constant = ball(16);
    constant.fields.at(0).values.numbers = Samples(std::vector<float>(16 * 16 * 16, 3));
    constant.shape->grid->spacing = Vector3d(1, 1, 1);
    send(m_View, "v", constant);
    EXPECT_EQ(numFaces(), 0U) << "all are inside";
    send(m_View, "v", ball(16));
    EXPECT_NEAR(radii().second, 1, 0.03);
    ItemUpdate moved = ball(16);
    moved.shape->grid->origin += Vector3d(10, 0, 0);
    send(m_View, "v", moved);
    EXPECT_GT(radii().first, 8) << "the same numbers elsewhere";
}

TEST_F(VolumeSurfaceTest, KeepsNoSamplesAndGoesWithItsVolume)
{
    auto samples = std::make_shared<const std::vector<float>>(8, 1.0F);
    const std::weak_ptr<const std::vector<float>> kept = samples;
    ItemUpdate small = volumeItem(gridOf({{2, 2, 2}, 1, {}, {}}), {NumberTuples{Samples(samples), 1}});
    samples.reset();
    send(m_View, "v", std::move(small));
    send(m_View, "v/isosurface", surfaceAt(1));
    SceneUpdate removed;
    removed.remove("v");
    m_View.apply(removed);
    EXPECT_TRUE(kept.expired());
    EXPECT_EQ(m_View.getModel().items().count("v/isosurface"), 0U);
    send(m_View, "v", ball(16));
    EXPECT_EQ(m_View.getModel().items().count("v/isosurface"), 0U);
}

TEST_F(VolumeSurfaceTest, AMeshTakesItsPlace)
{
    send(m_View, "v", ball(16));
    send(m_View, "v/isosurface", surfaceAt(3));
    send(m_View, "v/isosurface", item(ItemKind::Mesh, {0, 0, 0, 1, 0, 0, 0, 0, 1}, {}, std::vector{0, 1, 2}));
    send(m_View, "v", ball(16));
    EXPECT_EQ(numFaces(), 1U);
}

// In a thread, while the view goes on.
TEST_F(VolumeSurfaceTest, OfALargeVolumeComesLater)
{
    constexpr int LARGE = 164;
    send(m_View, "v", ball(LARGE));
    send(m_View, "v/isosurface", surfaceAt(2.5));
    EXPECT_EQ(numFaces(), 0U);
    EXPECT_TRUE(m_View.getModel().isBusy());
    EXPECT_TRUE(QTest::qWaitFor([this] { return numFaces() > 0; }, 60000));
    EXPECT_FALSE(m_View.getModel().isBusy());
    EXPECT_NEAR(radii().second, 1.5, 0.001);
    send(m_View, "v/isosurface", surfaceAt(3));
    EXPECT_NEAR(radii().second, 1.5, 0.001) << "that from before stays";
    m_View.picture({200, 200});
    EXPECT_NEAR(radii().second, 1, 0.001) << "a picture waits for it";
    send(m_View, "v/isosurface", surfaceAt(2.5));
    SceneUpdate removed;
    removed.remove("v");
    m_View.apply(removed);
    EXPECT_FALSE(m_View.getModel().isBusy()) << "it is given up";
}

TEST_F(VolumeSurfaceTest, GoesWhenTheSamplesBecomeColours)
{
    send(m_View, "v", ball(16));
    send(m_View, "v/isosurface", surfaceAt(2.5));
    ASSERT_GT(numFaces(), 0U);
    const VolumeGrid grid = *m_View.getModel().items().at("v").shape()->grid;
    const std::string said = saidOf([&] {
        send(m_View, "v", volumeItem(grid, {Numbers(std::vector<float>(3 * grid.numSamples(), 0.5F)), 3}));
    });
    EXPECT_THAT(said, HasSubstr("are colours, which have no isosurface"));
    EXPECT_EQ(numFaces(), 0U);
    send(m_View, "v", ball(16));
    EXPECT_GT(numFaces(), 0U) << "of numbers there is one again";
}

// The view goes on meanwhile.
TEST_F(VolumeSurfaceTest, WhatTakesLongShowsItsProgressAndIsGivenUp)
{
    m_View.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_View));
    m_View.getProgress().setDelay(0);
    const auto* const progress = m_View.findChild<QWidget*>("sceneProgress");
    auto* const button = m_View.findChild<QPushButton*>("giveUp");
    ASSERT_TRUE(progress && button);
    send(m_View, "v", ball(200));
    send(m_View, "v/isosurface", surfaceAt(2.5));
    EXPECT_FALSE(progress->isVisible());
    ASSERT_TRUE(QTest::qWaitFor([progress] { return progress->isVisible(); }));
    clickMouse(button);
    EXPECT_FALSE(progress->isVisible());
    EXPECT_FALSE(m_View.getModel().isBusy());
    m_View.picture({20, 20});
    EXPECT_EQ(numFaces(), 0U) << "it stays as it was";
    send(m_View, "v/isosurface", surfaceAt(3));
    EXPECT_TRUE(QTest::qWaitFor([this] { return numFaces() > 0; }, 60000));
    EXPECT_TRUE(QTest::qWaitFor([progress] { return !progress->isVisible(); }));
}

TEST_F(VolumeSurfaceTest, SaysWhyThereIsNone)
{
    EXPECT_THAT(saidOf([this] {
        send(m_View, "v/isosurface", surfaceAt(2.5));
        m_View.picture({20, 20});
    }),
        HasSubstr("scene(\"surfaces\"), \"v/isosurface\": there is no volume \"v\"\n"));
    ItemUpdate two = volumeItem(gridOf({{2, 1, 1}, 1, {}, {}}), {NumberTuples{Numbers{-1.5, 7}, 1}});
    EXPECT_THAT(saidOf([&] {
        send(m_View, "v", two);
        send(m_View, "v/isosurface", surfaceAt(8));
    }),
        HasSubstr("\"v/isosurface\": there is no surface at 8: the samples of \"v\" are from -1.5 to 7\n"));
    ItemUpdate colours = volumeItem(gridOf({{2, 1, 1}, 1, {}, {}}), {NumberTuples{Numbers{1, 1, 1, 0, 0, 0}, 3}});
    EXPECT_THAT(saidOf([&] {
        send(m_View, "c", colours);
        send(m_View, "c/isosurface", surfaceAt(8, "c"));
    }),
        HasSubstr("\"c/isosurface\": the samples of \"c\" are colours, which have no isosurface\n"));
}

TEST_F(VolumeSurfaceTest, IsSavedAsAnyOtherSurface)
{
    SceneUpdate sent;
    sent.items["v"] = ball(8);
    sent.items["v/isosurface"] = surfaceAt(2.5);
    QTemporaryDir folder;
    const QString file = folder.filePath("surface.csv");
    EXPECT_EQ(sent.saveData(file), "");
    std::ifstream text(file.toStdString());
    const std::string all(std::istreambuf_iterator<char>(text), {});
    EXPECT_THAT(all, HasSubstr("normal x"));
    EXPECT_GT(std::count(all.begin(), all.end(), '\n'), 100);
}

} // namespace
} // namespace tavo
