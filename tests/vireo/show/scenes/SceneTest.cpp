#include "vireo/show/Scene.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <memory>

#include "tavo/points/PointSet.h"
#include "tests/vireo/show/taken.h"
#include "vireo/show/Plot.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/scenes/SceneUpdate.h"

// What the handles send, and what they refuse.
namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::unique_ptr<SceneUpdate> takeScene(const std::string& name = "scene")
{
    std::unique_ptr<SceneUpdate> scene;
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == name)
            scene.reset(static_cast<SceneUpdate*>(part.pending.update.release()));
    return scene;
}

std::vector<std::string> takePaths()
{
    std::vector<std::string> paths;
    if (const auto scene = takeScene())
        for (const auto& [path, item] : scene->items)
            paths.push_back(path);
    return paths;
}

const std::vector<Vector3d> TRIANGLE{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};

TEST(SceneTest, AStatementIsOneDelivery)
{
    bool wasWaiting = true;
    scene("scene").cloud("a", TRIANGLE).colour((wasWaiting = inbox::hasWaiting(), RGBA8(1, 2, 3, 4))).size(3);
    EXPECT_FALSE(wasWaiting);
    const auto sent = takeScene();
    EXPECT_EQ(sent->items["a"].shape->points.size(), 3U);
    EXPECT_EQ(sent->items["a"].colour, RGBA8(1, 2, 3, 4));
    EXPECT_EQ(sent->items["a"].size, 3);
}

TEST(SceneTest, AColourOfThreeNumbersIsOpaque)
{
    scene("scene").cloud("a", TRIANGLE).colour({1, 2, 3});
    EXPECT_EQ(takeScene()->items["a"].colour, RGBA8(1, 2, 3, 255));
    plot("coloured").curve("c", {1, 2}).colour("c", {1, 2, 3});
    EXPECT_EQ(takePlot("coloured")->curves.front().colour, qRgba(1, 2, 3, 255));
}

TEST(SceneTest, CategoriesHaveNames)
{
    scene("scene").cloud("a", TRIANGLE).labels({1, 2, 2}).labelNames({{1, "ground"}, {2, "trees"}});
    scene("scene").cloud("a", TRIANGLE);
    EXPECT_EQ(takeScene()->items["a"].labelNames, (std::map<std::int64_t, std::string>{{1, "ground"}, {2, "trees"}}));
}

TEST(SceneTest, WhatIsNewerTakesThePlaceOfWhatWaits)
{
    const Scene kept = scene("scene");
    kept.cloud("a", TRIANGLE).size(5);
    kept.cloud("a", {1, 2, 3});
    const auto sent = takeScene();
    EXPECT_EQ(sent->items["a"].shape->points.size(), 1U);
    EXPECT_EQ(sent->items["a"].size, 5);
}

TEST(SceneTest, ABranchGoesAndNothingElse)
{
    const Scene kept = scene("scene");
    kept.cloud("car/body", TRIANGLE);
    kept.cloud("car", TRIANGLE);
    kept.cloud("cart", TRIANGLE);
    kept.remove("car");
    const auto sent = takeScene();
    EXPECT_EQ(sent->items.size(), 1U);
    EXPECT_TRUE(sent->items.contains("cart"));
    EXPECT_THAT(sent->removed, ElementsAre("car"));
}

TEST(SceneTest, WhatIsSentAfterItsRemovalIsShown)
{
    const Scene kept = scene("scene");
    kept.clear();
    kept.remove("a");
    kept.cloud("a", TRIANGLE);
    const auto sent = takeScene();
    EXPECT_TRUE(sent->isCleared);
    EXPECT_TRUE(sent->items.contains("a"));
}

TEST(SceneTest, AHandleOfNothingSendsNothing)
{
    Scene().cloud("a", TRIANGLE).colour({1, 2, 3, 4});
    Item().size(3);
    EXPECT_FALSE(inbox::hasWaiting());
}

std::string said()
{
    return testing::internal::GetCapturedStderr();
}

TEST(SceneTest, SaysWhatAreNoPoints)
{
    testing::internal::CaptureStderr();
    scene("scene").cloud("a", {1, 2, 3, 4});
    scene("scene").segments("b", TRIANGLE);
    scene("scene").text("c", TRIANGLE, "three");
    EXPECT_EQ(said(), "warning: tavo: scene(\"scene\").cloud(\"a\"): 4 numbers are no points, which take 3 each; what "
                      "was shown stays\n"
                      "warning: tavo: scene(\"scene\").segments(\"b\"): 3 points are no segments, which take two each; "
                      "what was shown stays\n"
                      "warning: tavo: scene(\"scene\").text(\"c\"): 3 points are no position; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, SaysWhatAreNotAsManyAsTheOthers)
{
    testing::internal::CaptureStderr();
    scene("scene").vectors("v", TRIANGLE, {1, 2, 3});
    scene("scene").boxes("b", {1, 2, 3}, TRIANGLE);
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").vectors(\"v\"): 3 points and 1 directions; what was shown stays\n"
        "warning: tavo: scene(\"scene\").boxes(\"b\"): 1 minima and 3 maxima; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, SaysWhichFaceNamesNoVertex)
{
    testing::internal::CaptureStderr();
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2, 0, 1, 3});
    scene("scene").mesh("b", TRIANGLE, {0, -1, 2});
    scene("scene").mesh("c", TRIANGLE, {0, 1});
    scene("scene").mesh("d", TRIANGLE, {0., 1., NAN});
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").mesh(\"a\"): face 1 names vertex 3 of 3; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"b\"): face 0 names vertex -1 of 3; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"c\"): 2 numbers are no faces, which take 3 each; what was shown "
        "stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"d\"): face 0 names vertex nan of 3; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2});
    EXPECT_THAT(takePaths(), ElementsAre("a"));
}

TEST(SceneTest, SaysWhichIndicesAreFarOut)
{
    testing::internal::CaptureStderr();
    scene("scene").mesh("a", TRIANGLE, std::vector<std::uint64_t>{0, 1, std::numeric_limits<std::uint64_t>::max()});
    scene("scene").mesh("b", TRIANGLE, std::vector<double>{0, 1e300, 2});
    scene("scene").mesh("c", TRIANGLE, std::vector<std::int64_t>{std::numeric_limits<std::int64_t>::min(), 1, 2});
    scene("scene").mesh("d", {}, {0, 0, 0});
    scene("scene").mesh("e", TRIANGLE, std::vector<std::vector<float>>{{0, 1, 2}, {-INFINITY, 1, 2}});
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").mesh(\"a\"): face 0 names vertex 1.8446744073709552e+19 of 3; what was "
        "shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"b\"): face 0 names vertex 1.0000000000000001e+300 of 3; what was "
        "shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"c\"): face 0 names vertex -9.2233720368547758e+18 of 3; what was "
        "shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"d\"): face 0 names vertex 0 of 0; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"e\"): face 1 names vertex -inf of 3; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, TenMillionPointsAreSentAsTheyAre)
{
    std::vector<Vector3f> points(10000000);
    const void* const data = points.data();
    scene("scene").cloud("a", std::move(points));
    const NumberTuples sent = takeScene()->items["a"].shape->points;
    EXPECT_EQ(sent.size(), 10000000U);
    EXPECT_EQ(sent.numbers.visit([](const auto* first, std::size_t) { return static_cast<const void*>(first); }), data);
}

TEST(SceneTest, SaysWhichPolygonNamesNoVertex)
{
    testing::internal::CaptureStderr();
    const std::vector<int> vertices{0, 1, 2, 2, 1, 0, 3};
    scene("scene").mesh("a", TRIANGLE, {vertices, std::vector{3, 0, 4}});
    scene("scene").mesh("b", TRIANGLE, std::vector<std::vector<int>>{{0, 1, 2}, {-1, 1, 2}});
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").mesh(\"a\"): face 2 names vertex 3 of 3; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"b\"): face 1 names vertex -1 of 3; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, SaysWhatAreNoCorners)
{
    testing::internal::CaptureStderr();
    const std::vector<int> vertices{0, 1, 2, 2, 1, 0};
    scene("scene").mesh("a", TRIANGLE, {vertices, std::vector{3, 4}});
    scene("scene").mesh("b", TRIANGLE, {vertices, std::vector{7, -1}});
    scene("scene").mesh("c", TRIANGLE, {vertices, std::vector{3.5, 2.5}});
    scene("scene").mesh("d", TRIANGLE, {vertices, std::vector<int>()});
    scene("scene").mesh("e", TRIANGLE, {vertices, std::vector{INFINITY, 3.}});
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").mesh(\"a\"): 6 numbers are no faces that have 7 corners; what was shown "
        "stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"b\"): face 1 has -1 corners; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"c\"): face 0 has 3.5 corners; what was shown stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"d\"): 6 numbers are no faces that have 0 corners; what was shown "
        "stays\n"
        "warning: tavo: scene(\"scene\").mesh(\"e\"): 6 numbers are no faces that have inf corners; what was shown "
        "stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, SaysWhatIsNoMatrixAndNoSide)
{
    testing::internal::CaptureStderr();
    scene("scene").transform("a", {1, 2, 3}).view("up");
    std::vector<double> infinite(16);
    infinite[5] = std::numeric_limits<double>::infinity();
    scene("scene").frame("f", infinite);
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").transform(\"a\"): 3 numbers are no matrix, which has 16; what was shown "
        "stays\n"
        "warning: tavo: scene(\"scene\").view(\"up\"): there is no such side, but \"front\", \"back\", \"left\", "
        "\"right\", \"top\" and \"bottom\"; what was shown stays\n"
        "warning: tavo: scene(\"scene\").frame(\"f\"): a number of the matrix is not finite; what was shown stays\n");
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, TheNewestWordOnBearingsIsTaken)
{
    scene("scene").bearings().bearings(false);
    EXPECT_EQ(takeScene()->hasBearings, std::optional(false));
    scene("scene").view("top");
    EXPECT_EQ(takeScene()->hasBearings, std::nullopt);
    scene("scene").bearings();
    EXPECT_EQ(takeScene()->hasBearings, std::optional(true));
}

TEST(SceneTest, TheNewestClipBoxIsTaken)
{
    scene("scene").clipBox({0, 0, 0}, {1, 1, 1}).clipBox({5.5e6, -1, 2}, {5.6e6, 0, 2});
    const auto sent = takeScene();
    EXPECT_EQ((*sent->clipBox)->getMin(), Vector3d(5.5e6, -1, 2));
    EXPECT_EQ((*sent->clipBox)->getMax(), Vector3d(5.6e6, 0, 2));
    scene("scene").clipBox({0, 0, 0}, {1, 1, 1}).noClipBox();
    const auto none = takeScene();
    ASSERT_TRUE(none->clipBox);
    EXPECT_FALSE(*none->clipBox);
    scene("scene").view("top");
    EXPECT_FALSE(takeScene()->clipBox);
}

TEST(SceneTest, ABoxThatIsNoneClipsNothing)
{
    testing::internal::CaptureStderr();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    scene("scene").clipBox({0, 0, notANumber}, {1, 1, 1}).clipBox({0, 2, 0}, {1, 1, 1});
    EXPECT_EQ(said(), "warning: tavo: scene(\"scene\").clipBox({0, 0, nan}, {1, 1, 1}): an end of the box is not "
                      "finite; what was shown stays\n"
                      "warning: tavo: scene(\"scene\").clipBox({0, 2, 0}, {1, 1, 1}): the low end of the box is above "
                      "the high end; what was shown stays\n");
    EXPECT_EQ(takeScene(), nullptr);
}

TEST(SceneTest, FieldsAreReplacedByTheirNames)
{
    scene("scene").cloud("a", TRIANGLE).scalar("s", {1, 2, 3}).labels({4, 5, 6}).scalar("s", {7, 8, 9});
    scene("scene").cloud("a", TRIANGLE).scalar("t", {0, 0, 0}).show("s").range(0, 1).colourMap("magma");
    auto sent = takeScene();
    const ItemUpdate& item = sent->items["a"];
    ASSERT_EQ(item.fields.size(), 3U);
    EXPECT_EQ(item.fields[0].name, "s");
    EXPECT_EQ(item.fields[0].values.numbers[0], 7);
    EXPECT_TRUE(item.fields[1].areLabels);
    EXPECT_EQ(item.shown, "s");
    EXPECT_EQ(item.range, std::pair(0., 1.));
    EXPECT_EQ(item.colourMap, "magma");
}

std::vector<double> read(const NumberArray& numbers)
{
    std::vector<double> all;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        all.push_back(numbers[i]);
    return all;
}

template <typename T>
void append(std::vector<unsigned char>& bytes, std::initializer_list<T> values)
{
    const auto* const first = reinterpret_cast<const unsigned char*>(std::data(values));
    bytes.insert(bytes.end(), first, first + values.size() * sizeof(T));
}

TEST(SceneTest, APointSetBringsItsAttributes)
{
    using Attribute = VertexAttribDescriptor;
    VertexDescriptor layout;
    layout.pushAttrib(Attribute("color", 3, Attribute::TYPE_UNSIGNED_BYTE));
    layout.pushAttrib(Attribute("position", 3, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("normal", 3, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("class", 1, Attribute::TYPE_INT));
    layout.pushAttrib(Attribute("texcoord", 2, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("intensity", 1, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("returns", 1, Attribute::TYPE_UNSIGNED_BYTE));
    layout.pushAttrib(Attribute("class", 1, Attribute::TYPE_FLOAT));
    std::vector<unsigned char> bytes;
    for (const int i : {0, 1}) {
        const auto number = static_cast<float>(i);
        append<unsigned char>(bytes, {200, 100, static_cast<unsigned char>(i)});
        append(bytes, {number, 2.5F, -number, 0.0F, number, 1.0F});
        append(bytes, {-7 - i});
        append(bytes, {0.0F, 0.0F, 0.25F + number});
        append<unsigned char>(bytes, {static_cast<unsigned char>(254 + i)});
        append(bytes, {99.0F});
    }
    PointSet points(layout, 2);
    ASSERT_EQ(points.getSizeInBytes(), bytes.size());
    std::copy(bytes.begin(), bytes.end(), points.getData());
    scene("scene").cloud("set", points).size(3);
    const auto sent = takeScene();
    const ItemUpdate& item = sent->items["set"];
    EXPECT_EQ(item.size, 3);
    EXPECT_EQ(item.shape->kind, ItemKind::Cloud);
    EXPECT_THAT(read(item.shape->points.numbers), ElementsAre(0, 2.5, 0, 1, 2.5, -1));
    EXPECT_THAT(read(item.normals->numbers), ElementsAre(0, 0, 1, 0, 1, 1));
    EXPECT_THAT(read(item.colours->numbers), ElementsAre(200, 100, 0, 200, 100, 1));
    EXPECT_EQ(item.colours->width, 3U);
    ASSERT_EQ(item.fields.size(), 3U);
    EXPECT_EQ(item.fields[0].name, "class");
    EXPECT_THAT(read(item.fields[0].values.numbers), ElementsAre(-7, -8));
    EXPECT_EQ(item.fields[1].name, "intensity");
    EXPECT_THAT(read(item.fields[1].values.numbers), ElementsAre(0.25, 1.25));
    EXPECT_EQ(item.fields[2].name, "returns");
    EXPECT_THAT(read(item.fields[2].values.numbers), ElementsAre(254, 255));
}

// By name and number: what is measured is none, nor what has too many values, or parts.
TEST(SceneTest, FewWholeNumbersOfAPointSetAreCategories)
{
    using Attribute = VertexAttribDescriptor;
    VertexDescriptor layout;
    layout.pushAttrib(Attribute("position", 3, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("segment_index", 1, Attribute::TYPE_INT));
    layout.pushAttrib(Attribute("point id", 1, Attribute::TYPE_INT)); // all different
    layout.pushAttrib(Attribute("returns", 1, Attribute::TYPE_INT));
    layout.pushAttrib(Attribute("classWidth", 1, Attribute::TYPE_FLOAT)); // has parts
    layout.pushAttrib(Attribute("ClusterType", 1, Attribute::TYPE_FLOAT));
    layout.pushAttrib(Attribute("hidden", 1, Attribute::TYPE_INT)); // its end is no word
    constexpr int NUM_POINTS = 21;
    std::vector<unsigned char> bytes;
    for (int i = 0; i < NUM_POINTS; ++i) {
        append(bytes, {0.0F, 0.0F, 0.0F});
        append(bytes, {i % 20, i, i % 3});
        append(bytes, {0.5F, static_cast<float>(i % 2)});
        append(bytes, {1});
    }
    PointSet points(layout, NUM_POINTS);
    ASSERT_EQ(points.getSizeInBytes(), bytes.size());
    std::copy(bytes.begin(), bytes.end(), points.getData());
    scene("scene").cloud("set", points);
    const auto sent = takeScene();
    std::vector<std::string> categories;
    for (const SceneField& field : sent->items["set"].fields)
        if (field.areLabels)
            categories.push_back(field.name);
    EXPECT_THAT(categories, ElementsAre("segment_index", "ClusterType"));
}

TEST(SceneTest, ThereMayBeSeveralKindsOfCategories)
{
    scene("scene").cloud("a", TRIANGLE).labels("segment", {1, 2, 3}).labels({4, 5, 6}).scalar("class", {1, 2, 3});
    const auto sent = takeScene();
    const std::vector<SceneField>& fields = sent->items["a"].fields;
    ASSERT_EQ(fields.size(), 3U);
    EXPECT_EQ(fields[0].name, "segment");
    EXPECT_TRUE(fields[0].areLabels);
    EXPECT_EQ(fields[1].name, "labels");
    EXPECT_FALSE(fields[2].areLabels) << "it is what the program says";
}

TEST(SceneTest, SaysThatAPointSetHasNoPositions)
{
    using Attribute = VertexAttribDescriptor;
    testing::internal::CaptureStderr();
    for (const Attribute& position : {Attribute("position", 2, Attribute::TYPE_FLOAT),
             Attribute("position", 3, Attribute::TYPE_INT), Attribute("place", 3, Attribute::TYPE_FLOAT)}) {
        VertexDescriptor layout;
        layout.pushAttrib(position);
        scene("scene").cloud(position.getName() + std::to_string(position.getType()), PointSet(layout, 5));
    }
    EXPECT_THAT(said(), testing::HasSubstr("cloud(\"position4\"): the points have no \"position\" of three floats; "
                                           "what was shown stays\n"));
    EXPECT_THAT(takePaths(), IsEmpty());
}

TEST(SceneTest, OfSizeAndRadiusTheLaterHolds)
{
    const auto send = [] { return scene("scene").cloud("a", TRIANGLE); };
    send().size(5).radius(2);
    auto sent = takeScene();
    EXPECT_FALSE(sent->items["a"].size);
    EXPECT_EQ(sent->items["a"].radii->numbers[0], 2);
    send().radius({1, 2, 3}).size(5);
    sent = takeScene();
    EXPECT_EQ(sent->items["a"].size, 5);
    EXPECT_FALSE(sent->items["a"].radii);
    send().size(5);
    send().radius(std::vector<float>{1, 2, 3});
    send().colour({1, 2, 3, 4});
    sent = takeScene();
    EXPECT_FALSE(sent->items["a"].size);
    EXPECT_EQ(sent->items["a"].radii->size(), 3U);
    send().radius(2);
    send().size(5);
    EXPECT_FALSE(takeScene()->items["a"].radii);
}

TEST(SceneTest, EdgesAndBackFacesAreSaidOfItems)
{
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2}).edges().backFaces(false);
    auto sent = takeScene();
    EXPECT_EQ(sent->items["a"].areEdgesSeen, true);
    EXPECT_EQ(sent->items["a"].areBackFacesSeen, false);
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2}).edges();
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2}).edges(false).backFaces();
    sent = takeScene();
    EXPECT_EQ(sent->items["a"].areEdgesSeen, false);
    EXPECT_EQ(sent->items["a"].areBackFacesSeen, true);
}

TEST(SceneTest, WhatIsSaidOfFacesStays)
{
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2}).scalar("s", {1}).onFaces("s");
    scene("scene").mesh("a", TRIANGLE, {0, 1, 2}).colours({1, 2, 3}).onFaces("colours");
    EXPECT_THAT(takeScene()->items["a"].onFaces, ElementsAre("colours", "s"));
}

TEST(SceneTest, SaysWhatIsNoMapAndNoRange)
{
    testing::internal::CaptureStderr();
    scene("scene").cloud("a", TRIANGLE).colourMap("rainbow").range(0, NAN);
    EXPECT_EQ(said(),
        "warning: tavo: scene(\"scene\").colourMap(\"a\"): " + whyNoColourMap("rainbow") +
            "; what was shown stays\n"
            "warning: tavo: scene(\"scene\").range(\"a\"): an end of the range is not finite; what was shown stays\n");
    const auto sent = takeScene();
    EXPECT_FALSE(sent->items["a"].colourMap);
    EXPECT_FALSE(sent->items["a"].range);
}

// More than there is memory for.
struct Endless
{
    const Vector3d* data() const { return &point; }
    std::size_t size() const { return std::numeric_limits<std::size_t>::max() / sizeof(Vector3d); }
    Vector3d point;
};

TEST(SceneTest, SaysThatThereIsNoMemory)
{
    testing::internal::CaptureStderr();
    scene("scene").cloud("a", Endless());
    EXPECT_EQ(said(), "warning: tavo: scene(\"scene\").cloud(\"a\"): there is no memory for so many points; what was "
                      "shown stays\n");
    EXPECT_FALSE(inbox::hasWaiting());
}

TEST(SceneTest, ItemsOfWhichNothingWouldBeSeenAreNamedOnce)
{
    const std::vector<double> none;
    const std::vector<double> notNumbers(3, std::numeric_limits<double>::quiet_NaN());
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) {
        scene("nothing").cloud("none", none).labels(std::vector<int>());
        scene("nothing").lines("NaN", notNumbers).colour({255, 0, 0, 255});
        scene("nothing").cloud("far", {1e31, 0, 0}).colour({255, 0, 0, 255});
        scene("nothing").cloud("one", {1, 2, 3});
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: tavo: scene(\"nothing\").cloud(\"none\"): there are no points to show; what was shown stays\n"
        "warning: tavo: scene(\"nothing\").lines(\"NaN\"): none of the points is finite; what was shown stays\n"
        "warning: tavo: scene(\"nothing\").cloud(\"far\"): none of the points is within 1e+30 of zero; what was shown "
        "stays\n");
    const auto sent = takeScene("nothing");
    EXPECT_FALSE(sent->items.contains("none"));
    EXPECT_FALSE(sent->items["NaN"].shape);
    EXPECT_FALSE(sent->items["far"].shape);
    EXPECT_TRUE(sent->items["one"].shape);
}

TEST(SceneTest, ANumberThatCannotBeDrawnIsRefused)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const Item cloud = scene("numbers").cloud("a", TRIANGLE).size(3).opacity(0.5);
    testing::internal::CaptureStderr();
    for (const double bad : {-3.0, 0.0, notANumber, infinity})
        cloud.size(bad);
    for (const double bad : {-1.0, notANumber, infinity})
        cloud.radius(bad);
    for (const double bad : {7.0, -0.5, notANumber})
        cloud.opacity(bad);
    const std::string lines = testing::internal::GetCapturedStderr();
    const auto sent = takeScene("numbers");
    EXPECT_EQ(sent->items["a"].size, 3);
    EXPECT_EQ(sent->items["a"].opacity, 0.5);
    EXPECT_FALSE(sent->items["a"].radii);
    const std::string call = "warning: tavo: scene(\"numbers\").";
    const std::string stays = "; what was shown stays\n";
    EXPECT_EQ(lines, call + "size(\"a\"): a size of -3 pixels cannot be drawn" + stays + call +
                         "size(\"a\"): a size of 0 pixels cannot be drawn" + stays + call +
                         "size(\"a\"): a size of nan pixels cannot be drawn" + stays + call +
                         "size(\"a\"): a size of inf pixels cannot be drawn" + stays + call +
                         "radius(\"a\"): a radius of -1 cannot be drawn" + stays + call +
                         "radius(\"a\"): a radius of nan cannot be drawn" + stays + call +
                         "radius(\"a\"): a radius of inf cannot be drawn" + stays + call +
                         "opacity(\"a\"): 7 is not from 0 to 1" + stays + call +
                         "opacity(\"a\"): -0.5 is not from 0 to 1" + stays + call +
                         "opacity(\"a\"): nan is not from 0 to 1" + stays);
}

TEST(SceneTest, ATransposedTransformationIsRefused)
{
    const double rows[4][4] = {{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, 1}};
    testing::internal::CaptureStderr();
    scene("moved").transform("a", rows);
    scene("moved").transform("a", {1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: tavo: scene(\"moved\").transform(\"a\"): the last row of the matrix is 5, 6, 7, 1 and not 0, 0, 0, "
        "1: "
        "16 numbers are column by column, with the translation near the end; what was shown stays\n");
    EXPECT_EQ(takeScene("moved")->transforms["a"], translation({5, 6, 7}));
}

TEST(SceneTest, ATransformationMayBeRounded)
{
    testing::internal::CaptureStderr();
    scene("moved").transform("a", {1., 0., 0., 1e-9, 0., 1., 0., 0., 0., 0., 1., 0., 5., 6., 7., 1.0000001});
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(takeScene("moved")->transforms["a"], translation({5, 6, 7}));
}

} // namespace
} // namespace tavo
