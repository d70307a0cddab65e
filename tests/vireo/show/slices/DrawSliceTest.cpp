#include "vireo/show/slices/drawSlice.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "tests/vireo/show/slices/layers.h"
#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/slices/sampleLine.h"

namespace tavo {
namespace {

const double NAN_D = std::numeric_limits<double>::quiet_NaN();

double sampleAt(const SliceLayer& layer, const Vector3d& place, bool isInterpolated)
{
    double number = 0;
    sampleLine(layer, {place, {}, 1}, isInterpolated, &number);
    return number;
}

TEST(SampleLineTest, ANumberIsThatOfTheCellOrLiesBetweenItsNeighbours)
{
    const SliceLayer layer = layerOf<double>({0, 1, 2, 3, 10, 11, 12, 13}, {2, 2, 2});
    EXPECT_EQ(sampleAt(layer, {0.4, 0.4, 0.4}, false), 0);
    EXPECT_EQ(sampleAt(layer, {0.6, 0.6, 0.6}, false), 13);
    EXPECT_DOUBLE_EQ(sampleAt(layer, {0.5, 0, 0}, true), 0.5);
    EXPECT_DOUBLE_EQ(sampleAt(layer, {0.5, 0.5, 0.25}, true), 4);
    EXPECT_EQ(sampleAt(layer, {-0.4, 1.4, 0}, true), 2) << "beyond the middles of the outermost cells it is theirs";
    EXPECT_TRUE(std::isnan(sampleAt(layer, {-0.6, 0, 0}, true)));
    EXPECT_TRUE(std::isnan(sampleAt(layer, {0, 0, 1.6}, false)));
    EXPECT_TRUE(std::isnan(sampleAt(layer, {NAN_D, 0, 0}, false)));
}

// As if each place were asked for by itself.
TEST(SampleLineTest, LinesAlongAnAxisAreThoseOfTheirPlaces)
{
    std::vector<double> samples;
    for (int i = 0; i < 60; ++i)
        samples.push_back(i * i % 37);
    samples[17] = NAN_D;
    const SliceLayer layer = layerOf(samples, {5, 4, 3});
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (const double step : {0.13, -0.29, 0.5, 5.0})
            for (const bool isInterpolated : {false, true})
                for (const Vector3d& start : {Vector3d(0.3, 1.25, 1), Vector3d(2, 2, 2), Vector3d(1, -3, 0)}) {
                    SampleLine line{start, {}, 40};
                    line.first[axis] = step > 0 ? -2.0 : 7.0;
                    line.step[axis] = step;
                    std::vector<double> numbers(40);
                    sampleLine(layer, line, isInterpolated, numbers.data());
                    for (int i = 0; i < line.count; ++i) {
                        const double one = sampleAt(layer, line.first + double(i) * line.step, isInterpolated);
                        const double number = numbers[std::size_t(i)];
                        EXPECT_EQ(std::isnan(number), std::isnan(one));
                        if (!std::isnan(one)) {
                            EXPECT_NEAR(number, one, 1e-9);
                        }
                    }
                }
}

TEST(SampleLineTest, WhatIsNoNumberStaysWhereItIs)
{
    const SliceLayer layer = layerOf<double>({1, NAN_D, 2, 3}, {2, 2, 1});
    EXPECT_EQ(sampleAt(layer, {0, 0.5, 0}, true), 1.5);
    EXPECT_TRUE(std::isnan(sampleAt(layer, {0.5, 0, 0}, true)));
}

TEST(SlicePlaneTest, PlanesOfAPatientAreThoseOfTheNearestAxes)
{
    SliceLayer layer = layerOf<float>(std::vector<float>(24), {2, 3, 4});
    layer.isOriented = true;
    layer.grid.axes = {Vector3d(0, -1, 0), Vector3d(0.1, 0, 0.9), Vector3d(1, 0, 0)}; // to the back, up, to the right
    const auto [axial, coronal, sagittal] = slicePlanesOf(layer, {});
    EXPECT_EQ(axial.through, 1U);
    EXPECT_EQ(axial.across, 2U);
    EXPECT_EQ(axial.up, 0U);
    EXPECT_EQ(sideOf(layer.grid, axial.across, axial.isAcrossReversed), 'L') << "the patient's left is on the right";
    EXPECT_EQ(sideOf(layer.grid, axial.up, axial.isUpReversed), 'A');
    EXPECT_EQ(coronal.through, 0U);
    EXPECT_EQ(sideOf(layer.grid, coronal.up, coronal.isUpReversed), 'S');
    EXPECT_EQ(sagittal.through, 2U);
    EXPECT_EQ(sideOf(layer.grid, sagittal.across, sagittal.isAcrossReversed), 'P') << "the front is on the left";
    const auto turned = slicePlanesOf(layer, {false, false});
    EXPECT_EQ(sideOf(layer.grid, turned[0].across, turned[0].isAcrossReversed), 'R');
    EXPECT_EQ(sideOf(layer.grid, turned[2].across, turned[2].isAcrossReversed), 'A');
}

TEST(SlicePlaneTest, WithoutAnOrientationNumbersRiseToTheRightAndUpwards)
{
    for (const SlicePlane& plane : slicePlanesOf(layerOf<float>({1}, {1, 1, 1}), {})) {
        EXPECT_FALSE(plane.isAcrossReversed || plane.isUpReversed);
        EXPECT_LT(plane.across, plane.up);
    }
}

class DrawSliceTest : public testing::Test
{
protected:
    static constexpr QSize SIZE{120, 90};

    void send(const SliceLayer& volume, std::pair<double, double> window = {0, 255})
    {
        SlicesUpdate update;
        update.volume = volume;
        update.settings.window = window;
        m_Model.apply(update);
    }

    // The picture of a plane that it fits into.
    QImage draw(std::size_t plane = 0)
    {
        m_Sight = SliceSight::fitting(m_Model.grid(), m_Model.planes(), cells());
        return drawSlice(m_Model, m_Model.planes()[plane], m_Sight, SIZE);
    }

    QPointF placeOf(const Vector3d& index, std::size_t plane = 0)
    {
        return m_Sight.placeOf(m_Model.grid(), m_Model.planes()[plane], QRect(QPoint(), SIZE), index);
    }

    QRgb colourAt(const Vector3d& index, std::size_t plane = 0)
    {
        const QImage picture = draw(plane);
        const QPointF place = placeOf(index, plane);
        return picture.pixel(int(std::floor(place.x())), int(std::floor(place.y()))) | 0xff000000;
    }

    static SliceCells cells()
    {
        const QRect cell(QPoint(), SIZE);
        return {{cell, cell, cell}, {}};
    }

    SlicesModel m_Model;
    SliceSight m_Sight;
};

TEST_F(DrawSliceTest, EverySampleIsWhereItIsInAllPlanes)
{
    const Vector3i size(5, 4, 3);
    send(layerBy(size, [](int x, int y, int z) { return 50 * x + 10 * y + z; }));
    m_Model.setVoxel({3, 1, 2});
    const auto grey = [](int level) { return qRgb(level, level, level); };
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(colourAt({double(i), double(i), 2}, 0), grey(60 * i + 2));
        EXPECT_EQ(colourAt({double(i), 1, double(i)}, 1), grey(50 * i + 10 + i));
        EXPECT_EQ(colourAt({3, double(i), double(i)}, 2), grey(150 + 11 * i));
    }
}

TEST_F(DrawSliceTest, LengthsAreAsTheSpacingSays)
{
    send(layerBy({10, 10, 10}, [](int, int, int) { return 255; }, {1, 2, 0.5}));
    const QImage axial = draw(0);
    int width = 0;
    int height = 0;
    for (int x = 0; x < SIZE.width(); ++x)
        width += qRed(axial.pixel(x, SIZE.height() / 2)) == 255 ? 1 : 0;
    for (int y = 0; y < SIZE.height(); ++y)
        height += qRed(axial.pixel(SIZE.width() / 2, y)) == 255 ? 1 : 0;
    EXPECT_NEAR(height, 2 * width, 1);
    EXPECT_NEAR(height, 0.94 * SIZE.height(), 1) << "and it fills the cell";
}

TEST_F(DrawSliceTest, NumbersAreInterpolatedOnWish)
{
    send(layerBy({2, 2, 1}, [](int x, int, int) { return 200 * x; }));
    EXPECT_EQ(qRed(colourAt({0.45, 0, 0})), 0);
    m_Model.setInterpolated(true);
    EXPECT_NEAR(qRed(colourAt({0.45, 0, 0})), 90, 4);
}

TEST_F(DrawSliceTest, WhatIsNotFiniteIsMarked)
{
    send(layerOf<float>({1, NAN, INFINITY, 2}, {2, 2, 1}), {1, 2});
    EXPECT_EQ(colourAt({1, 0, 0}), COLOUR_OF_NAN);
    EXPECT_EQ(colourAt({0, 1, 0}), COLOUR_OF_INFINITY);
    EXPECT_EQ(m_Model.numNotFinite(), 2U);
}

TEST_F(DrawSliceTest, ColoursAreColours)
{
    send(layerOf<std::uint8_t>({10, 20, 30, 40, 50, 60}, {2, 1, 1}));
    EXPECT_EQ(colourAt({1, 0, 0}), qRgb(40, 50, 60));
}

TEST_F(DrawSliceTest, TheWindowLeavesOutTheOutermost)
{
    std::vector<float> samples(1000, 5);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = float(i % 100);
    samples[0] = -1e6F;
    samples[1] = 1e6F;
    SlicesUpdate update;
    update.volume = layerOf(samples, {10, 10, 10});
    m_Model.apply(update);
    EXPECT_GE(m_Model.volume().look().from, 0);
    EXPECT_LE(m_Model.volume().look().to, 99);
    EXPECT_GT(m_Model.volume().look().to, 90);
    for (float& sample : samples)
        sample *= 2;
    update.volume = layerOf(samples, {10, 10, 10});
    m_Model.apply(update);
    EXPECT_LE(m_Model.volume().look().to, 99) << "it stays, lest the view flickers";
    m_Model.refreshWindows();
    EXPECT_GT(m_Model.volume().look().to, 150);
}

TEST_F(DrawSliceTest, OneNumberIsAWindowToo)
{
    SlicesUpdate update;
    update.volume = layerOf<double>({7}, {1, 1, 1});
    m_Model.apply(update);
    EXPECT_EQ(m_Model.volume().look().from, 7);
    EXPECT_EQ(m_Model.volume().look().to, 8);
    EXPECT_EQ(colourAt({0, 0, 0}), qRgb(0, 0, 0));
}

TEST_F(DrawSliceTest, AVolumeOfOneRowIsSeen)
{
    send(layerOf(std::vector<std::uint8_t>(1'000'000, 200), {1, 1, 1'000'000}));
    const auto numSeen = [](const QImage& picture) {
        int count = 0;
        for (int y = 0; y < SIZE.height(); ++y)
            for (int x = 0; x < SIZE.width(); ++x)
                count += picture.pixel(x, y) == qRgb(200, 200, 200) ? 1 : 0;
        return count;
    };
    EXPECT_NEAR(numSeen(draw(1)), 0.94 * SIZE.height(), 1) << "as a line";
    EXPECT_EQ(numSeen(draw(0)), 1) << "as a pixel";
}

TEST_F(DrawSliceTest, AnOverlayOfAnotherGridIsWhereItIs)
{
    send(layerBy({8, 8, 8}, [](int, int, int) { return 100; }));
    SlicesUpdate update; // the right half, at half the resolution; 0 is not seen
    update.overlay = layerBy({2, 4, 4}, [](int, int y, int) { return y < 2 ? 0 : 255; }, {2, 2, 2}, {4.5, 0.5, 0.5});
    update.overlaySettings = {std::pair(0.0, 255.0), "viridis", 1.0};
    m_Model.apply(update);
    const RGBA8 last = findColourMap("viridis")->sample(1);
    EXPECT_EQ(colourAt({6, 6, 4}), qRgb(last[0], last[1], last[2]));
    EXPECT_EQ(colourAt({4, 4, 4}), qRgb(last[0], last[1], last[2])) << "up to the edge of its cells";
    EXPECT_EQ(colourAt({3, 6, 4}), qRgb(100, 100, 100)) << "it is not there";
    EXPECT_EQ(colourAt({6, 3, 4}), qRgb(100, 100, 100)) << "nothing is above the window's beginning";
    SliceSettings half;
    half.opacity = 0.5;
    m_Model.overlay().choose(half);
    EXPECT_NEAR(qRed(colourAt({6, 6, 4})), (100 + last[0]) / 2, 1);
}

TEST_F(DrawSliceTest, LabelsHaveTheColoursOfCategories)
{
    send(layerBy({4, 4, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {layerBy({4, 4, 1}, [](int x, int, int) { return x; }).samples.numbers, 1};
    update.labels.back().names = {{2, "bone"}};
    update.labelSettings.opacity = 1;
    m_Model.apply(update);
    m_Model.setInterpolated(true);
    EXPECT_EQ(colourAt({0, 1, 0}), qRgb(100, 100, 100)) << "0 is none";
    for (const int label : {1, 2, 3}) {
        const RGBA8 colour = colourOfLabel(label);
        EXPECT_EQ(colourAt({label + 0.3, 1, 0}), qRgb(colour[0], colour[1], colour[2])) << "never between others";
    }
    EXPECT_EQ(m_Model.nameOfLabel(2), "bone");
    EXPECT_EQ(m_Model.nameOfLabel(3), "");
    EXPECT_EQ(m_Model.whyNoLabels(), "");
}

TEST_F(DrawSliceTest, LabelsMayBeLarge)
{
    constexpr std::int64_t LARGE = 1LL << 52;
    send(layerBy({2, 1, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {Numbers(std::vector<std::int64_t>{0, LARGE}), 1};
    update.labels.back().names = {{LARGE, "hash"}};
    update.labelSettings.opacity = 1;
    m_Model.apply(update);
    const RGBA8 colour = colourOfLabel(LARGE);
    EXPECT_EQ(colourAt({1, 0, 0}), qRgb(colour[0], colour[1], colour[2]));
    EXPECT_EQ(m_Model.nameOfLabel(LARGE), "hash");
}

TEST_F(DrawSliceTest, LabelsHaveTheColoursThatAreSaid)
{
    send(layerBy({4, 4, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {layerBy({4, 4, 1}, [](int x, int, int) { return x; }).samples.numbers, 1};
    update.labelSettings.opacity = 1;
    update.labelColours = {{2, RGBA8(1, 2, 3, 255)}};
    m_Model.apply(update);
    EXPECT_EQ(colourAt({2, 1, 0}), qRgb(1, 2, 3));
    const RGBA8 other = colourOfLabel(3);
    EXPECT_EQ(colourAt({3, 1, 0}), qRgb(other[0], other[1], other[2])) << "that of its category";
    EXPECT_EQ(labelsInSlice(m_Model, m_Model.planes()[0], m_Sight, SIZE), (std::set<std::int64_t>{1, 2, 3}));
}

TEST_F(DrawSliceTest, OutlinesLeaveWhatIsWithinLabels)
{
    send(layerBy({8, 8, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    const auto isLabel = [](int x, int y, int) { return x >= 2 && x < 6 && y >= 2 && y < 6 ? 7 : 0; };
    update.labels.back().samples = {layerBy({8, 8, 1}, isLabel).samples.numbers, 1};
    update.labelSettings.opacity = 1;
    update.areLabelsOutlined = true;
    m_Model.apply(update);
    const QImage picture = draw();
    const RGBA8 colour = colourOfLabel(7);
    const auto numColoured = [&](const Vector3d& from, const Vector3d& to) {
        const QRectF rect = QRectF(placeOf(from), placeOf(to)).normalized();
        int number = 0;
        for (int y = int(rect.top()); y < int(rect.bottom()); ++y)
            for (int x = int(rect.left()); x < int(rect.right()); ++x)
                number += picture.pixel(x, y) == qRgb(colour[0], colour[1], colour[2]);
        return number;
    };
    EXPECT_EQ(numColoured({2, 2, 0}, {5, 5, 0}), 0) << "within";
    for (const Vector3d& side :
        {Vector3d(1.5, 3.5, 0), Vector3d(5.5, 3.5, 0), Vector3d(3.5, 1.5, 0), Vector3d(3.5, 5.5, 0)})
        EXPECT_GT(numColoured(side - Vector3d(0.4, 0.4, 0), side + Vector3d(0.4, 0.4, 0)), 3)
            << side[0] << ", " << side[1];
    update.areLabelsOutlined = false;
    m_Model.apply(update);
    EXPECT_EQ(colourAt({4, 4, 0}), qRgb(colour[0], colour[1], colour[2]));
}

// So that they are seen in large pictures, and small labels are not all outline.
TEST_F(DrawSliceTest, OutlinesAreHalfASampleWideWithinLimits)
{
    for (const auto& [side, width] : {std::pair(8, 4), {20, 2}, {85, 1}}) {
        const auto isLabel = [side = side](int x, int y, int) {
            return std::min(x, y) >= side / 4 && std::max(x, y) < side - side / 4 ? 7 : 0;
        };
        send(layerBy({side, side, 1}, [](int, int, int) { return 100; }));
        SlicesUpdate update;
        update.labels.emplace_back();
        update.labels.back().samples = {layerBy({side, side, 1}, isLabel).samples.numbers, 1};
        update.labelSettings.opacity = 1;
        update.areLabelsOutlined = true;
        m_Model.apply(update);
        const QImage picture = draw();
        const RGBA8 colour = colourOfLabel(7);
        int numColoured = 0;
        for (int x = 0; x < picture.width(); ++x)
            numColoured += picture.pixel(x, SIZE.height() / 2) == qRgb(colour[0], colour[1], colour[2]);
        EXPECT_EQ(numColoured, 2 * width) << "on both sides, of " << side;
    }
}

// Lest it lies on the letter of a side.
TEST_F(DrawSliceTest, TheNumberOfASliceIsShownWhereThereIsRoom)
{
    SliceLayer layer = layerBy({8, 8, 8}, [](int, int, int) { return 1; });
    layer.isOriented = true;
    send(layer);
    const auto marksAt = [this](int z, const QSize& size) {
        m_Model.setVoxel({4, 4, z});
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        drawSliceMarks(painter, m_Model, m_Model.planes()[0], {}, QRect(QPoint(), size), 1);
        return picture;
    };
    m_Model.setVoxel({4, 5, 7});
    EXPECT_EQ(numberOfSlice(m_Model, m_Model.planes()[0]), "7 of 0 to 7") << "the last of eight";
    const QSize large(400, 100), small(120, 100);
    EXPECT_NE(marksAt(2, large), marksAt(3, large));
    EXPECT_EQ(marksAt(2, small), marksAt(3, small));
}

TEST_F(DrawSliceTest, WhatLiesOnTheVolumeIsTakenAway)
{
    send(layerBy({4, 4, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {layerBy({4, 4, 1}, [](int, int, int) { return 3; }).samples.numbers, 1};
    update.overlay = layerBy({4, 4, 1}, [](int x, int, int) { return x; });
    update.overlaySettings.window = std::pair(-1.0, 3.0);
    m_Model.apply(update);
    EXPECT_NE(colourAt({1, 1, 0}), qRgb(100, 100, 100));
    SlicesUpdate removal;
    removal.overlay.emplace();
    removal.labels.emplace_back();
    update.merge(removal);
    m_Model.apply(update);
    EXPECT_EQ(colourAt({1, 1, 0}), qRgb(100, 100, 100));
    EXPECT_TRUE(m_Model.overlay().isEmpty());
    EXPECT_EQ(m_Model.whyNoLabels(), "");
}

TEST_F(DrawSliceTest, LabelsOfOtherSamplesAreNotShown)
{
    send(layerBy({4, 4, 1}, [](int, int, int) { return 100; }));
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {layerBy({3, 4, 1}, [](int, int, int) { return 1; }).samples.numbers, 1};
    m_Model.apply(update);
    EXPECT_TRUE(m_Model.labels().isEmpty());
    EXPECT_EQ(m_Model.whyNoLabels(), "12 labels are not those of 4 x 4 x 1 samples, which take 16");
    send(layerBy({3, 4, 1}, [](int, int, int) { return 100; }));
    EXPECT_FALSE(m_Model.labels().isEmpty()) << "the volume may come after them";
}

// So many of one label.
SentLabels labelsOf(std::size_t number, int label, const char* name)
{
    SentLabels labels;
    labels.samples = {Numbers(std::vector<int>(number, label)), 1};
    labels.names[label] = name;
    return labels;
}

TEST_F(DrawSliceTest, LabelsThatDoNotFitLeaveThoseThatAreShown)
{
    SlicesUpdate good, bad;
    good.labels = {labelsOf(16, 1, "good")};
    bad.labels = {labelsOf(12, 2, "bad")};
    send(layerBy({4, 4, 1}, [](int, int, int) { return 100; }));
    m_Model.apply(good);
    const QRgb shown = colourAt({1, 1, 0});
    m_Model.apply(bad);
    EXPECT_EQ(colourAt({1, 1, 0}), shown);
    EXPECT_EQ(m_Model.nameOfLabel(1), "good");
    EXPECT_EQ(m_Model.nameOfLabel(2), "");
    EXPECT_EQ(m_Model.whyNoLabels(), "12 labels are not those of 4 x 4 x 1 samples, which take 16");
    send(layerBy({3, 4, 1}, [](int, int, int) { return 100; }));
    EXPECT_EQ(m_Model.nameOfLabel(2), "bad") << "it is of the next volume";
    EXPECT_EQ(m_Model.whyNoLabels(), "");
}

TEST_F(DrawSliceTest, LabelsThatFitAreFoundWhenTheVolumeComes)
{
    const auto send = [](SlicesUpdate& update, const SentLabels& labels) {
        SlicesUpdate newer;
        addLabels(newer.labels, labels);
        update.merge(newer);
    };
    const SentLabels good = labelsOf(16, 1, "good");
    const SentLabels bad = labelsOf(12, 1, "bad");
    SlicesUpdate update;
    for (const SentLabels& labels : {good, bad, bad})
        send(update, labels);
    EXPECT_EQ(update.labels.size(), 2U) << "those of one number replace each other";
    update.volume = layerBy({4, 4, 1}, [](int, int, int) { return 100; });
    m_Model.apply(update);
    EXPECT_EQ(m_Model.nameOfLabel(1), "good");
    SlicesUpdate removal;
    for (const SentLabels& labels : {good, SentLabels(), bad})
        send(removal, labels);
    m_Model.apply(removal);
    EXPECT_TRUE(m_Model.labels().isEmpty()) << "what was taken away does not come back";
    EXPECT_EQ(m_Model.nameOfLabel(1), "");
    for (int number = 1; number < 100; ++number)
        send(update, labelsOf(std::size_t(number), 1, ""));
    EXPECT_LE(update.labels.size(), 8U);
}

TEST(SliceCellsTest, CellsFillTheViewAndDoNotOverlap)
{
    for (const QSize& size : {QSize(400, 300), QSize(900, 200), QSize(200, 900), QSize(3, 2)})
        for (const bool hasVolume : {false, true}) {
            const SliceCells cells = SliceCells::of(size, hasVolume);
            EXPECT_EQ(cells.volume.isEmpty(), !hasVolume);
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_FALSE(cells.planes[i].isEmpty());
                EXPECT_FALSE(size.width() > 10 && cells.planes[i].intersects(cells.planes[(i + 1) % 3]));
            }
        }
}

} // namespace
} // namespace tavo
