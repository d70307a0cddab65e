#include "vireo/show/slices/SlicesView.h"

#include <QApplication>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/slices/layers.h"
#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/show.h"
#include "vireo/show/slices/SliceVolume.h"
#include "vireo/show/slices/sliceLegend.h"

namespace tavo {
namespace {

using testing::HasSubstr;

class SlicesViewTest : public testing::Test
{
protected:
    SlicesViewTest()
    {
        m_View.resize(420, 340);
        m_View.show();
        QApplication::processEvents();
    }

    void send(const SliceLayer& volume)
    {
        SlicesUpdate update;
        update.volume = volume;
        m_View.apply(update);
        QApplication::processEvents();
    }

    std::string textOfPlace() { return m_View.textOfPlace().toStdString(); }
    std::string textOfVolume() { return m_View.textOfVolume().toStdString(); }

    SlicesView m_View{"head"};
};

// Where its lines meet.
Vector3d crosshairOf(const SceneView& scene)
{
    const NumberTuples& points = scene.getModel().items().at("crosshair").shape()->points;
    return {points.numbers[6], points.numbers[1], points.numbers[2]};
}

SliceLayer cube(int side)
{
    return layerBy({side, side, side}, [](int x, int y, int z) { return x + y + z; });
}

TEST_F(SlicesViewTest, TheCrosshairBeginsInTheMiddleAndStaysWhereItWasPut)
{
    send(cube(20));
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(10, 10, 10));
    send(cube(30));
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(15, 15, 15)) << "nobody has put it anywhere";
    m_View.moveTo({3, 4, 25});
    send(cube(30));
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(3, 4, 25));
    SliceLayer moved = cube(20);
    moved.grid.origin = {-1, 0, 0};
    send(moved);
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(4, 4, 19))
        << "at the place where it was, as far as there is a volume";
    send(cube(30));
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(3, 4, 25));
}

TEST_F(SlicesViewTest, TheProgramMovesTheCrosshair)
{
    SlicesUpdate update;
    update.crosshair = Vector3d(14, 26.2, 1000);
    m_View.apply(update);
    send(layerBy({10, 10, 10}, [](int, int, int) { return 1; }, {2, 2, 2}, {10, 20, 30}));
    EXPECT_EQ(m_View.getModel().voxel(), Vector3i(2, 3, 9));
}

TEST_F(SlicesViewTest, NewSamplesLeaveTheSightAlone)
{
    send(cube(20));
    m_View.zoom(3, 0, m_View.cells().planes[0].center());
    const SliceSight sight = m_View.getSight();
    send(cube(20));
    EXPECT_EQ(m_View.getSight(), sight);
    m_View.resize(300, 300);
    QApplication::processEvents();
    EXPECT_EQ(m_View.getSight().scale, sight.scale);
    m_View.showAll();
    EXPECT_LT(m_View.getSight().scale, sight.scale);
    EXPECT_FALSE(m_View.isChosen());
}

TEST_F(SlicesViewTest, WhatIsUnderThePointerIsSaid)
{
    SliceLayer volume =
        layerOf(std::vector<std::int64_t>{9'007'199'254'740'993, 2, 3, 4}, {2, 2, 1}, {0.5, 1, 1}, {-10, 5, 2});
    send(volume);
    m_View.hover(Vector3d(0.2, 0, 0));
    EXPECT_EQ(textOfPlace(), "9007199254740993  voxel 0, 0, 0  at -9.9, 5, 2") << "with all its digits";
    m_View.hover(Vector3d(0, 5, 0));
    EXPECT_EQ(textOfPlace(), "4  voxel 1, 1, 0  at -9.5, 6, 2") << "beside the volume it is about the crosshair";
    send(layerOf<float>({1, 2, 3, 4}, {2, 2, 1}));
    m_View.change([](SlicesModel& model) { model.setInterpolated(true); });
    m_View.hover(Vector3d(0.5, 0, 0));
    EXPECT_EQ(textOfPlace(), "1.5  voxel 1, 0, 0  at 0.5, 0, 0");
}

TEST_F(SlicesViewTest, WhatLiesOnTheVolumeIsSaidToo)
{
    SlicesUpdate update;
    update.volume = layerBy({2, 2, 1}, [](int x, int, int) { return x; });
    update.overlay = layerOf<float>({0.25F}, {1, 1, 1});
    update.labels.emplace_back();
    update.labels.back().samples = {layerOf<int>({0, 17, 0, 5}, {2, 2, 1}).samples.numbers, 1};
    update.labels.back().names = {{17, "hippocampus"}, {0, "nothing"}};
    m_View.apply(update);
    m_View.hover(Vector3d(0, 0, 0));
    EXPECT_EQ(textOfPlace(), "0  voxel 0, 0, 0  at 0, 0, 0  overlay 0.25  nothing");
    m_View.hover(Vector3d(1, 0, 0));
    EXPECT_EQ(textOfPlace(), "1  voxel 1, 0, 0  at 1, 0, 0  hippocampus") << "the overlay does not reach so far";
    m_View.hover(Vector3d(1, 1, 0));
    EXPECT_THAT(textOfPlace(), HasSubstr("label 5"));
    SlicesUpdate elsewhere;
    elsewhere.labels = {{{Numbers(std::vector<int>{7}), 1}, layerOf<int>({7}, {1, 1, 1}).grid, {}}};
    m_View.apply(elsewhere);
    EXPECT_EQ(textOfPlace(), "1  voxel 1, 1, 0  at 1, 1, 0") << "nor do labels elsewhere";
}

TEST_F(SlicesViewTest, TheConventionIsSaidWhereThereIsOne)
{
    send(layerOf<float>({1, 2, NAN, 4}, {2, 2, 1}));
    EXPECT_EQ(textOfVolume(), "2 x 2 x 1, 1 not finite, window 1 to 4");
    SliceLayer oriented = cube(3);
    oriented.isOriented = true;
    send(oriented);
    EXPECT_EQ(textOfVolume(), "3 x 3 x 3, right is left, window 0 to 6");
}

TEST_F(SlicesViewTest, APictureShowsThreePlanesWithTheCrosshair)
{
    send(layerBy({10, 10, 10}, [](int, int, int) { return 77; }));
    const QSize size(400, 300);
    const QImage picture = m_View.picture(size);
    ASSERT_EQ(picture.size(), size);
    const SliceCells cells = SliceCells::of(size, true);
    const SliceSight sight = SliceSight::fitting(m_View.getModel().grid(), m_View.getModel().planes(), cells);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto place = [&](const Vector3d& index) {
            return sight.placeOf(m_View.getModel().grid(), m_View.getModel().planes()[i], cells.planes[i], index)
                .toPoint();
        };
        EXPECT_EQ(qRed(picture.pixel(place({2, 2, 2}))), 0) << "one number is the beginning of its window";
        EXPECT_EQ(qRed(picture.pixel(place({5, 5, 5}))), 0) << "the middle of the crosshair is left out";
        QPoint across = place({5, 5, 5});
        across.setX(place({9, 9, 9}).x());
        int brightest = 0;
        for (int y = -2; y <= 2; ++y)
            brightest = std::max(brightest, qBlue(picture.pixel(across + QPoint(0, y))));
        EXPECT_EQ(brightest, 255);
    }
}

TEST_F(SlicesViewTest, APictureTellsTheColoursThatLieOnTheVolume)
{
    const QSize size(700, 500);
    const auto numOf = [](const QImage& image, const RGBA8& colour) {
        int number = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                number += image.pixel(x, y) == qRgb(colour[0], colour[1], colour[2]);
        return number;
    };
    send(cube(8));
    const QImage plain = m_View.picture(size);
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {
        layerBy({8, 8, 8}, [](int x, int, int) { return x < 4 ? 0 : 5; }).samples.numbers, 1};
    update.labels.back().names = {{5, "bone"}, {6, "nowhere"}};
    m_View.apply(update);
    const QImage labelled = m_View.picture(size);
    const RGBA8 bone = colourOfLabel(5), nowhere = colourOfLabel(6);
    EXPECT_EQ(numOf(plain, bone), 0);
    EXPECT_GT(numOf(labelled, bone), 30) << "a square beside its name; in the slices it is mixed";
    EXPECT_EQ(numOf(labelled, nowhere), 0) << "only what is in these slices";
    SlicesUpdate overlay;
    overlay.overlay = cube(8);
    overlay.overlaySettings.colourMap = "viridis";
    m_View.apply(overlay);
    EXPECT_GT(numOf(m_View.picture(size), findColourMap("viridis")->entries()[128]), 3) << "a bar";
    EXPECT_EQ(m_View.picture({120, 90}).size(), QSize(120, 90)) << "without, where there is no room";
    SlicesUpdate removal;
    removal.overlay.emplace();
    removal.labels.emplace_back();
    m_View.apply(removal);
    EXPECT_EQ(m_View.picture(size), plain);
}

TEST_F(SlicesViewTest, TheLegendIsAsWideAsWhatStandsInIt)
{
    const auto widthOf = [this](const char* name) {
        SlicesUpdate update;
        update.labels.emplace_back();
        update.labels.back().samples = {layerBy({8, 8, 8}, [](int, int, int) { return 5; }).samples.numbers, 1};
        update.labels.back().names = {{5, name}};
        m_View.apply(update);
        return widthOfSliceLegend(m_View.getModel(), {1600, 900}, m_View.fontMetrics());
    };
    send(cube(8));
    EXPECT_EQ(widthOfSliceLegend(m_View.getModel(), {1600, 900}, m_View.fontMetrics()), 0);
    const int narrow = widthOf("bone");
    const int wide = widthOf("a name of twenty or so");
    EXPECT_GT(narrow, 0);
    EXPECT_GT(wide, narrow);
    EXPECT_GT(wide, m_View.fontMetrics().horizontalAdvance("a name of twenty or so"));
    EXPECT_EQ(widthOf("a name of more letters than anybody wants to read beside slices, or anywhere"),
        26 * m_View.fontMetrics().averageCharWidth());
}

TEST_F(SlicesViewTest, NumbersOfTheOverlayAreWhole)
{
    const auto widthOf = [this](double least) {
        SlicesUpdate update;
        update.overlay = layerOf<double>({least}, {1, 1, 1});
        update.overlaySettings.window.emplace(least, least + 0.5);
        m_View.apply(update);
        return widthOfSliceLegend(m_View.getModel(), {1600, 900}, m_View.fontMetrics());
    };
    send(cube(8));
    EXPECT_GT(widthOf(1e12), m_View.fontMetrics().horizontalAdvance("overlay  +1000000000000"));
}

TEST_F(SlicesViewTest, LabelsThatDoNotFitAreALine)
{
    const auto labelsOf = [this](std::size_t number) {
        SlicesUpdate update;
        update.labels = {{{Numbers(std::vector<int>(number, 3)), 1}, {}, {}}};
        testing::internal::CaptureStderr();
        m_View.apply(update);
        return testing::internal::GetCapturedStderr();
    };
    send(cube(2));
    EXPECT_THAT(labelsOf(7), HasSubstr("slices(\"head\").labels: 7 labels are not those of 2 x 2 x 2 samples, which "
                                       "take 8; they are not shown"));
    EXPECT_EQ(labelsOf(8), "");
    EXPECT_THAT(labelsOf(6), HasSubstr("which take 8; what was shown stays"));
    EXPECT_THAT(textOfPlace(), HasSubstr("label 3"));
}

TEST_F(SlicesViewTest, TheVolumeStandsBesideItsSlicesAndFollowsThem)
{
    EXPECT_FALSE(m_View.getVolume()) << "there is none yet";
    send(layerBy({16, 16, 16}, [](int x, int, int) { return x < 8 ? 0 : 200; }));
    SceneView& scene = m_View.getVolume()->scene();
    EXPECT_EQ(scene.geometry(), m_View.cells().volume);
    EXPECT_TRUE(scene.isVisible());
    const QImage before = scene.picture({80, 80});
    ASSERT_FALSE(before.isNull());
    m_View.moveTo({1, 2, 3});
    EXPECT_EQ(crosshairOf(scene), Vector3d(8, 8, 8)) << "not while it moves";
    for (int i = 0; i < 100 && crosshairOf(scene) != Vector3d(1, 2, 3); ++i)
        QTest::qWait(20);
    EXPECT_EQ(crosshairOf(scene), Vector3d(1, 2, 3));
    SlicesUpdate update;
    update.settings.window = std::pair(1000.0, 2000.0);
    m_View.apply(update);
    m_View.picture({80, 80});
    EXPECT_NE(scene.picture({80, 80}), before) << "a picture has the window of the slices";
    const QImage whole = m_View.picture({400, 300});
    const QRect cell = SliceCells::of({400, 300}, true).volume;
    EXPECT_EQ(whole.copy(cell), scene.picture(cell.size()).convertToFormat(whole.format()));
}

TEST_F(SlicesViewTest, TheVolumeIsHiddenOnWish)
{
    send(cube(8));
    clickKey(&m_View, Qt::Key_V);
    EXPECT_FALSE(m_View.getVolume());
    EXPECT_TRUE(m_View.cells().volume.isEmpty());
    send(cube(9));
    EXPECT_FALSE(m_View.getVolume());
    clickKey(&m_View, Qt::Key_V);
    ASSERT_TRUE(m_View.getVolume());
    EXPECT_EQ(m_View.getVolume()->scene().geometry(), m_View.cells().volume);
    m_View.resize(700, 500);
    QApplication::processEvents();
    EXPECT_EQ(m_View.getVolume()->scene().geometry(), m_View.cells().volume);
}

TEST_F(SlicesViewTest, AViewOfNothingHasAPicture)
{
    SlicesUpdate update;
    update.crosshair = Vector3d(1, 2, 3);
    update.overlay = layerOf<float>({0.25F}, {1, 1, 1});
    m_View.apply(update);
    m_View.showAll();
    m_View.zoom(2, 0, {10, 10});
    EXPECT_EQ(m_View.picture({60, 40}).size(), QSize(60, 40));
    EXPECT_EQ(textOfPlace(), "");
    EXPECT_EQ(m_View.saveData("unused.nii"), "there are no samples");
}

TEST(SlicesWindowTest, TheFrontDoorShowsAndSavesThem)
{
    const QTemporaryDir folder;
    const std::string picture = folder.filePath("head.png").toStdString();
    const std::string data = folder.filePath("head.nii").toStdString();
    slices("head", std::vector<float>(1000, 2), {10, 10, 10}).window(0, 2);
    EXPECT_TRUE(savePicture("head", picture, 300, 200));
    EXPECT_EQ(QImage(QString::fromStdString(picture)).size(), QSize(300, 200));
    EXPECT_TRUE(saveData("head", data));
    EXPECT_EQ(QFileInfo(QString::fromStdString(data)).size(), 352 + 4000);
    remove(std::string("head"));
}

} // namespace
} // namespace tavo
