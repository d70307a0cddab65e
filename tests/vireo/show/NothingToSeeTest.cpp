#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/points/PointSet.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/show/show.h"

// To send nothing, or nothing that is finite, is a mistake: a line says so, and what was shown stays.
namespace tavo {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

const double INF = std::numeric_limits<double>::infinity();
const std::vector<double> NONE;
const std::vector<double> BAD{NAN, INF, -INF};
const std::vector<double> THREE{1, 3, 2};
const std::vector<double> POINTS{0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 1, 0};
const std::vector<double> BAD_POINTS{0, 0, NAN, 1, INF, 0, NAN, 1, 1, 1, 1, -INF}; // each has finite numbers, too
const std::vector<float> SAMPLES{1, 2, 3, 4, 5, 6, 7, 8};
const std::vector<float> BAD_SAMPLES(8, NAN);
const std::vector<int> FACES{0, 1, 2, 1, 3, 2};

std::unique_ptr<PointSet> pointsOf(const char* name, unsigned int width, const std::vector<float>& numbers)
{
    VertexDescriptor layout;
    layout.pushAttrib(VertexAttribDescriptor(name, width, VertexAttribDescriptor::TYPE_FLOAT));
    auto points = std::make_unique<PointSet>(layout, static_cast<unsigned int>(numbers.size()) / width);
    if (!numbers.empty())
        std::memcpy(points->getData(), numbers.data(), numbers.size() * sizeof(float));
    return points;
}

class NothingToSeeTest : public testing::Test
{
protected:
    using Send = std::function<void(const std::string& view)>;

    ~NothingToSeeTest() override { clear(); }

    QImage pictureOf(const std::string& view)
    {
        const QString file = m_Folder.filePath("view.png");
        return savePicture(view, file.toStdString(), 240, 180) ? QImage(file) : QImage();
    }

    static std::string said(const Send& send, const std::string& view)
    {
        const std::size_t before = debugOutput.getText().size();
        send(view);
        return debugOutput.getText().substr(before);
    }

    // Each has a view of its own: the same line is said once.
    void expectStays(const Send& send, std::initializer_list<Send> mistakes)
    {
        for (const Send& mistake : mistakes) {
            const std::string number = std::to_string(++s_NumViews);
            const std::string shown = "shown " + number;
            send(shown);
            const QImage before = pictureOf(shown);
            ASSERT_FALSE(before.isNull());
            expectLine(said(mistake, shown), shown);
            EXPECT_EQ(pictureOf(shown), before) << shown;
            const std::string empty = "empty " + number;
            expectLine(said(mistake, empty), empty);
            EXPECT_THAT(said([this](const std::string& view) { EXPECT_TRUE(pictureOf(view).isNull()) << view; }, empty),
                HasSubstr("there is no view \"" + empty));
        }
    }

private:
    static void expectLine(const std::string& lines, const std::string& view)
    {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1) << view << ": " << lines;
        EXPECT_THAT(lines, HasSubstr("(\"" + view + "\")"));
        EXPECT_THAT(lines, EndsWith("; what was shown stays\n"));
    }

    QTemporaryDir m_Folder;
    static inline int s_NumViews = 0; // of all tests
};

TEST_F(NothingToSeeTest, CurvesStay)
{
    expectStays([](const std::string& view) { plot(view).curve("c", THREE); },
        {[](const std::string& view) { plot(view).curve("c", NONE); },
            [](const std::string& view) { plot(view).curve("c", BAD); },
            [](const std::string& view) { plot(view).curve("c", NONE, NONE); },
            [](const std::string& view) { plot(view).curve("c", BAD, THREE); },
            [](const std::string& view) {
                plot(view).curve("c", {1.0, NAN, INF}, {NAN, 2.0, 3.0});
            }});
}

TEST_F(NothingToSeeTest, TheKinOfCurvesStays)
{
    expectStays([](const std::string& view) { plot(view).points("c", THREE); },
        {[](const std::string& view) { plot(view).points("c", NONE); },
            [](const std::string& view) { plot(view).steps("c", BAD); },
            [](const std::string& view) { plot(view).bars("c", NONE); },
            [](const std::string& view) { plot(view).bars("c", THREE, BAD); }});
    expectStays([](const std::string& view) { plot(view).histogram("h", THREE); },
        {[](const std::string& view) { plot(view).histogram("h", NONE); },
            [](const std::string& view) { plot(view).histogram("h", BAD); }});
    expectStays(
        [](const std::string& view) {
            plot(view).band("b", THREE, {0, 0, 0}, THREE);
        },
        {[](const std::string& view) { plot(view).band("b", NONE, NONE, NONE); },
            [](const std::string& view) { plot(view).band("b", THREE, BAD, THREE); },
            [](const std::string& view) { plot(view).band("b", THREE, THREE, BAD); }});
}

TEST_F(NothingToSeeTest, ToAppendNothingIsNoMistake)
{
    plot("appended").append("c", THREE, THREE);
    const QImage before = pictureOf("appended");
    EXPECT_EQ(
        said([](const std::string& view) { plot(view).append("c", NONE, NONE).append("c", NONE, NONE); }, "appended"),
        "");
    EXPECT_EQ(pictureOf("appended"), before);
}

TEST_F(NothingToSeeTest, CloudsStay)
{
    expectStays([](const std::string& view) { scene(view).cloud("c", POINTS); },
        {[](const std::string& view) { scene(view).cloud("c", NONE); },
            [](const std::string& view) { scene(view).cloud("c", BAD_POINTS); }});
}

TEST_F(NothingToSeeTest, PointSetsStay)
{
    const auto points = pointsOf("position", 3, {0, 0, 0, 1, 1, 0});
    const auto noPoints = pointsOf("position", 3, {});
    const auto badPoints = pointsOf("position", 3, {NAN, 0, 0, 1, NAN, 0});
    expectStays([&](const std::string& view) { scene(view).cloud("c", *points); },
        {[&](const std::string& view) { scene(view).cloud("c", *noPoints); },
            [&](const std::string& view) { scene(view).cloud("c", *badPoints); }});
}

TEST_F(NothingToSeeTest, SurfacesStay)
{
    expectStays([](const std::string& view) { scene(view).mesh("m", POINTS, FACES); },
        {[](const std::string& view) { scene(view).mesh("m", NONE, std::vector<int>()); },
            [](const std::string& view) { scene(view).mesh("m", POINTS, std::vector<int>()); },
            [](const std::string& view) { scene(view).mesh("m", BAD_POINTS, FACES); }});
}

TEST_F(NothingToSeeTest, LinesAndTheirKinStay)
{
    expectStays([](const std::string& view) { scene(view).lines("l", POINTS); },
        {[](const std::string& view) { scene(view).lines("l", NONE); },
            [](const std::string& view) { scene(view).lines("l", BAD_POINTS); },
            [](const std::string& view) { scene(view).segments("l", NONE); },
            [](const std::string& view) {
                scene(view).segments("l", {0.0, 0.0, 0.0, 1.0, 1.0, NAN});
            },
            [](const std::string& view) { scene(view).vectors("l", NONE, NONE); },
            [](const std::string& view) { scene(view).vectors("l", POINTS, BAD_POINTS); },
            [](const std::string& view) { scene(view).boxes("l", NONE, NONE); },
            [](const std::string& view) { scene(view).boxes("l", BAD_POINTS, POINTS); },
            [](const std::string& view) {
                scene(view).text("l", {NAN, 0.0, 0.0}, "text");
            }});
}

TEST_F(NothingToSeeTest, VolumesStay)
{
    expectStays(
        [](const std::string& view) {
            scene(view).volume("v", SAMPLES, {2, 2, 2});
        },
        {[](const std::string& view) {
             scene(view).volume("v", NONE, {2, 2, 2});
         },
            [](const std::string& view) {
                scene(view).volume("v", BAD_SAMPLES, {2, 2, 2});
            },
            [](const std::string& view) {
                scene(view).volume("v", std::vector<float>(24, NAN), {2, 2, 2});
            },
            [](const std::string& view) {
                const Box3f box({0, 0, 0}, {1, 1, 1});
                scene(view).volume("v", RegularVolume({2, 2, 2}, box, pointsOf("value", 1, BAD_SAMPLES)));
            }});
}

// What the same statement says of its points would not belong to those that are still shown.
TEST_F(NothingToSeeTest, NumbersOfARefusedItemAreLeftOut)
{
    const std::vector<double> heights{1, 2, 3, 4};
    const std::vector<double> others{4, 3, 2, 1};
    expectStays([&](const std::string& view) { scene(view).cloud("c", POINTS).scalar("height", heights).radius(0.1); },
        {[&](const std::string& view) {
             scene(view)
                 .cloud("c", BAD_POINTS)
                 .scalar("height", others)
                 .labels("class", others)
                 .colours(others)
                 .normals(POINTS)
                 .radius(others);
         },
            [&](const std::string& view) { scene(view).cloud("c", NONE).scalar("height", NONE).labels(NONE); },
            [&](const std::string& view) {
                scene(view).cloud("c", {1, 2}).scalar("height", others);
            }});
    scene("heights").cloud("c", POINTS).scalar("height", others);
    {
        const Statement together;
        scene("heights again").cloud("c", NONE);
        scene("heights again").cloud("c", POINTS).scalar("height", others);
    }
    EXPECT_EQ(pictureOf("heights again"), pictureOf("heights")) << "a second try counts";
}

TEST_F(NothingToSeeTest, NumbersOfAnItemStay)
{
    const std::string view = "numbers";
    const Item item = scene(view).cloud("c", POINTS).scalar("height", {1, 2, 3, 4});
    const QImage before = pictureOf(view);
    const std::string lines = said(
        [&](const std::string&) { item.scalar("height", NONE).labels(NONE).colours(NONE).normals(NONE).radius(NONE); },
        view);
    for (const char* what : {"scalar(\"c\"): there are no numbers", "labels(\"c\"): there are no numbers",
             "colours(\"c\"): there are no colours", "normals(\"c\"): there are no normals",
             "radius(\"c\"): there are no radii"})
        EXPECT_THAT(lines, HasSubstr(what + std::string(" to show; what was shown stays\n")));
    EXPECT_EQ(pictureOf(view), before);
}

TEST_F(NothingToSeeTest, ImagesStay)
{
    const std::vector<unsigned char> padded(64);
    expectStays([](const std::string& view) { image(view, SAMPLES, 4, 2); },
        {[](const std::string& view) { image(view, NONE, 4, 2); },
            [](const std::string& view) { image(view, NONE, 0, 0); },
            [](const std::string& view) { image(view, BAD_SAMPLES, 4, 2); },
            [](const std::string& view) { image(view, BAD_SAMPLES, 2, 2).stride(4 * sizeof(float)); },
            [](const std::string& view) { image(view, BAD_SAMPLES.data(), 4, 2); },
            [](const std::string& view) { imageStack(view, BAD_SAMPLES, 2, 2, 2); }});
    expectStays([](const std::string& view) { image(view, SAMPLES, 4, 2).layer(1, SAMPLES, 2, 4); },
        {[](const std::string& view) { image(view).layer(0, NONE, 4, 2); },
            [](const std::string& view) { image(view).layer(0, BAD_SAMPLES, 4, 2); }});
}

TEST_F(NothingToSeeTest, SlicesStay)
{
    expectStays(
        [](const std::string& view) {
            slices(view, SAMPLES, {2, 2, 2});
        },
        {[](const std::string& view) {
             slices(view, NONE, {2, 2, 2});
         },
            [](const std::string& view) {
                slices(view, BAD_SAMPLES, {2, 2, 2});
            }});
    expectStays(
        [](const std::string& view) {
            slices(view, SAMPLES, {2, 2, 2}).overlay(SAMPLES, {2, 2, 2}).opacity(0.5);
        },
        {[](const std::string& view) {
             slices(view).overlay(NONE, {2, 2, 2});
         },
            [](const std::string& view) {
                slices(view).overlay(BAD_SAMPLES, {2, 2, 2});
            }});
    expectStays(
        [](const std::string& view) {
            slices(view, SAMPLES, {2, 2, 2}).labels(SAMPLES);
        },
        {[](const std::string& view) { slices(view).labels(NONE); },
            [](const std::string& view) { slices(view).labels(BAD_SAMPLES); },
            [](const std::string& view) {
                slices(view).labels(BAD_SAMPLES, {2, 2, 2});
            }});
}

TEST_F(NothingToSeeTest, WhatIsRemovedGoes)
{
    plot("plot").curve("a", THREE).curve("b", {2, 2, 2});
    const QImage both = pictureOf("plot");
    plot("plot").remove("b");
    EXPECT_NE(pictureOf("plot"), both);
    tavo::remove("plot");
    said([this](const std::string& view) { EXPECT_TRUE(pictureOf(view).isNull()); }, "plot");
}

} // namespace
} // namespace tavo
