#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <thread>

#include "tavo/points/RegularVolume.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/show/Scene.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/scenes/SceneUpdate.h"

// What the handles send of volumes, and what they refuse.
namespace tavo {
namespace {

using testing::HasSubstr;

std::optional<ItemUpdate> takeVolume()
{
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == "volumes")
            return static_cast<SceneUpdate&>(*part.pending.update).items["v"];
    return {};
}

void expectRefused(const std::function<void()>& send, const std::string& line)
{
    testing::internal::CaptureStderr();
    send();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(line + "; what was shown stays"));
    EXPECT_FALSE(takeVolume());
}

const std::vector<float> EIGHT(8, 1.0F);

TEST(SceneVolumeTest, AStatementIsOneDelivery)
{
    scene("volumes").volume("v", EIGHT, {2, 2, 2}, {1, 2, 3}, {4, 5, 6}).range(0, 2).colourMap("grey").opacity(0.5);
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.shape->kind, ItemKind::Volume);
    EXPECT_EQ(sent.shape->grid->size, Vector3i(2, 2, 2));
    EXPECT_EQ(sent.shape->grid->spacing, Vector3d(1, 2, 3));
    EXPECT_EQ(sent.shape->grid->origin, Vector3d(4, 5, 6));
    EXPECT_EQ(sent.fields.at(0).name, "value");
    EXPECT_EQ(sent.fields.at(0).values.size(), 8U);
    EXPECT_EQ(sent.range, std::pair(0.0, 2.0));
    EXPECT_EQ(sent.colourMap, "grey");
    EXPECT_EQ(sent.opacity, 0.5);
}

TEST(SceneVolumeTest, SizesAndSpacingsAreOfManyTypes)
{
    const std::size_t n = 2;
    scene("volumes").volume("v", EIGHT, {n, 2L, std::uint8_t(2)}, 0.5);
    EXPECT_EQ(takeVolume()->shape->grid->spacing, Vector3d(0.5, 0.5, 0.5));
    scene("volumes").volume("v", EIGHT, Vector3i(1, 2, 4), Vector3f(1, 2, 4), {}, {{0, 2, 0}, {0, 0, 3}, {1, 0, 0}});
    const VolumeGrid grid = takeVolume()->shape->grid.value();
    EXPECT_EQ(grid.size, Vector3i(1, 2, 4));
    EXPECT_EQ(grid.spacing, Vector3d(1, 2, 4));
    EXPECT_EQ(grid.axes[0], Vector3d(0, 1, 0)) << "lengths do not matter";
    EXPECT_EQ(grid.axes[1], Vector3d(0, 0, 1));
}

TEST(SceneVolumeTest, SamplesKeepTheirTypeAndAreMovedOrShared)
{
    std::vector<std::int16_t> shorts{1, 2, 3, 4, 5, 6, 7, 8};
    const void* const there = shorts.data();
    scene("volumes").volume("v", std::move(shorts), {2, 2, 2});
    takeVolume()->fields.at(0).values.numbers.visit([there](const auto* numbers, std::size_t) {
        EXPECT_EQ(numbers, there) << "nothing was copied";
        EXPECT_EQ(sizeof *numbers, sizeof(std::int16_t));
    });
    const auto shared = std::make_shared<const std::vector<double>>(8, 1.0);
    scene("volumes").volume("v", shared, {2, 2, 2});
    takeVolume()->fields.at(0).values.numbers.visit(
        [&shared](const auto* numbers, std::size_t) { EXPECT_EQ(static_cast<const void*>(numbers), shared->data()); });
}

TEST(SceneVolumeTest, WhatSomebodyElseMayStillChangeIsCopied)
{
    auto shared = std::make_shared<std::vector<float>>(8, 1.0F);
    const void* const there = shared->data();
    const auto sentData = [] { return takeVolume()->fields.at(0).values.numbers.getData(); };
    scene("volumes").volume("v", shared, {2, 2, 2});
    EXPECT_NE(sentData(), there);
    scene("volumes").volume("v", std::move(shared), {2, 2, 2});
    EXPECT_EQ(sentData(), there) << "nobody else holds it";
    scene("volumes").volume("v", std::shared_ptr<std::vector<float>>(), {2, 2, 2});
    EXPECT_FALSE(takeVolume()) << "nothing is no volume";
}

TEST(SceneVolumeTest, SeveralNumbersOfASampleAreColours)
{
    scene("volumes").volume("v", std::vector<std::uint8_t>(24), {2, 2, 2});
    EXPECT_EQ(takeVolume()->colours->width, 3U);
    scene("volumes").volume("v", std::vector<std::array<float, 4>>(8), {2, 2, 2});
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.colours->width, 4U);
    EXPECT_TRUE(sent.fields.empty());
}

TEST(SceneVolumeTest, ARegularVolumeFillsItsBox)
{
    auto points = std::make_unique<PointSet>(makeLayout({{"ignored", 2, FLOAT}, {"a", 1, INT}, {"b", 1, FLOAT}}), 8U);
    const RegularVolume volume({2, 2, 2}, Box3f({0, 0, 0}, {2, 4, 6}), std::move(points));
    scene("volumes").volume("v", volume);
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.shape->grid->spacing, Vector3d(1, 2, 3));
    EXPECT_EQ(sent.shape->grid->origin, Vector3d(0.5, 1, 1.5));
    sent.fields.at(0).values.numbers.visit(
        []<typename T>(const T*, std::size_t) { EXPECT_TRUE(std::is_integral_v<T>) << "the first channel"; });
    scene("volumes").volume("v", volume, "b");
    takeVolume()->fields.at(0).values.numbers.visit(
        []<typename T>(const T*, std::size_t) { EXPECT_TRUE(std::is_floating_point_v<T>); });
    expectRefused([&] { scene("volumes").volume("v", volume, "c"); },
        "scene(\"volumes\").volume(\"v\"): it has no channel of one, three or four numbers for each sample by the name "
        "\"c\"");
    expectRefused(
        [&] {
            scene("volumes").volume("v", RegularVolume({2, 2, 2}, volume.getBoundingBox()));
        },
        "scene(\"volumes\").volume(\"v\"): it has no channel of one, three or four numbers for each sample");
}

TEST(SceneVolumeTest, SizesThatDoNotMatchAreRefused)
{
    const Scene scene = tavo::scene("volumes");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {2, 2, 3});
        },
        "scene(\"volumes\").volume(\"v\"): 8 numbers are no samples of 2 x 2 x 3, which take 12, or three or four "
        "times "
        "as many for colours");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {100000, 100000, 1});
        },
        "8 numbers are no samples of 100000 x 100000 x 1, which take 1e+10, or three or four times as many for "
        "colours");
    const std::int64_t huge = std::int64_t(1) << 62;
    expectRefused([&] { scene.volume("v", EIGHT, {huge, huge, huge}); }, "samples are too many along one axis");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {std::uint64_t(1) << 63, 2, ~std::uint64_t(0)});
        },
        "9.223372037e+18 x 2 x 9.223372037e+18 samples are too many along one axis");
    const std::int64_t two32 = std::int64_t(1) << 32;
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {two32, two32, 1});
        },
        "4294967296 x 4294967296 x 1 samples are too many along one axis");
    expectRefused([&] { scene.volume("v", EIGHT, {4, 0, 2}); }, "4 x 0 x 2 is no size of a volume");
    expectRefused([&] { scene.volume("v", EIGHT, {-2, -2, 2}); }, "-2 x -2 x 2 is no size of a volume");
    expectRefused([&] { scene.volume("v", std::vector<float>(), {0, 0, 0}); }, "0 x 0 x 0 is no size of a volume");
}

TEST(SceneVolumeTest, GridsThatAreNoneAreRefused)
{
    const Scene scene = tavo::scene("volumes");
    const double inf = std::numeric_limits<double>::infinity();
    expectRefused([&] { scene.volume("v", EIGHT, {2, 2, 2}, 0); }, "0 x 0 x 0 is no distance of samples");
    expectRefused([&] { scene.volume("v", EIGHT, {2, 2, 2}, {1, -1, 1}); }, "1 x -1 x 1 is no distance of samples");
    expectRefused([&] { scene.volume("v", EIGHT, {2, 2, 2}, {1, NAN, 1}); }, "1 x nan x 1 is no distance of samples");
    expectRefused([&] { scene.volume("v", EIGHT, {2, 2, 2}, {1, 1, inf}); }, "1 x 1 x inf is no distance of samples");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {2, 2, 2}, 1e300);
        },
        "a distance of 1e+300 x 1e+300 x 1e+300 is too large for floats to tell where 2 x 2 x 2 samples are");
    expectRefused([&] { scene.volume("v", EIGHT, {2, 2, 2}, 1, {NAN, 0, 0}); }, "its origin is not finite");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {2, 2, 2}, 1, {}, {{1, 0, 0}, {0, 0, 0}, {0, 0, 1}});
        },
        "an axis of its orientation has no direction");
    expectRefused(
        [&] {
            scene.volume("v", EIGHT, {2, 2, 2}, 1, {}, {{1, 0, 0}, {0, 1, 0}, {1, 1, 0}});
        },
        "the axes of its orientation lie in a plane");
}

TEST(SceneVolumeTest, ATransferFunctionIsARangeAndOpacitiesInIt)
{
    scene("volumes").volume("v", EIGHT, {2, 2, 2}).transferFunction({{100, 0}, {150, 0.25}, {300, 1}});
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.range, std::pair(100.0, 300.0));
    EXPECT_EQ(sent.opacities, (OpacityCurve{{0, 0}, {0.25, 0.25}, {1, 1}}));
    const Item item = scene("volumes").volume("v", EIGHT, {2, 2, 2});
    takeVolume();
    expectRefused(
        [&] {
            item.transferFunction({{0, 1}});
        },
        "scene(\"volumes\").transferFunction(\"v\"): 1 points are too few");
    expectRefused([&] { item.transferFunction({{0, 0}, {1, 1.5}}); }, "point 1 has a value of 1 and an opacity of 1.5");
    expectRefused([&] { item.transferFunction({{NAN, 0}, {1, 1}}); }, "point 0 has a value of nan and an opacity of 0");
    expectRefused(
        [&] {
            item.transferFunction({{2, 0}, {1, 1}});
        },
        "the value of point 1, 1, is below that before it, 2");
    expectRefused([&] { item.transferFunction({{2, 0}, {2, 1}}); }, "all points have the value 2");
}

TEST(SceneVolumeTest, APresetIsColoursOpacitiesAndMaybeARange)
{
    const Item item = scene("volumes").volume("v", EIGHT, {2, 2, 2}).maximumIntensity().preset("CT bone");
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.colourMap, "bone");
    EXPECT_EQ(sent.range, std::pair(100.0, 1300.0));
    EXPECT_EQ(sent.opacities->front(), (OpacityPoint{0, 0}));
    EXPECT_EQ(sent.isMaximum, true);
    for (const char* name : {"grey", "hot", "bone", "viridis", "CT soft tissue", "CT lung", "MRI"}) {
        item.preset(name);
        const auto preset = takeVolume().value();
        EXPECT_TRUE(findColourMap(preset.colourMap.value())) << name;
        EXPECT_GE(preset.opacities->size(), 2U) << name;
    }
    expectRefused([&] { item.preset("x"); }, "scene(\"volumes\").preset(\"v\"): there is no preset \"x\"; there are "
                                             "grey, hot, bone, viridis, CT bone, CT soft tissue, CT lung, MRI, "
                                             "categories");
}

TEST(SceneVolumeTest, APresetOfCategoriesLeavesTheColourMap)
{
    const Item item = scene("volumes").volume("v", EIGHT, {2, 2, 2}).colourMap("heat").preset("categories");
    const auto sent = takeVolume().value();
    EXPECT_EQ(sent.areCategories, true);
    EXPECT_EQ(sent.colourMap, "heat");
    item.preset("grey");
    EXPECT_EQ(takeVolume().value().areCategories, false);
}

TEST(SceneVolumeTest, AnIsosurfaceIsAnItemBelowTheVolume)
{
    const Item volume = scene("volumes").volume("v", EIGHT, {2, 2, 2}).lighting();
    volume.isosurface(0.5).opacity(0.25);
    volume.isosurface(2, "skin").colour({1, 2, 3, 255});
    for (Batch::Part& part : inbox::take()) {
        auto& items = static_cast<SceneUpdate&>(*part.pending.update).items;
        EXPECT_EQ(items["v"].isLit, true);
        EXPECT_FALSE(items["v"].opacity);
        EXPECT_EQ(items["v/isosurface"].isosurface->volume, "v");
        EXPECT_EQ(items["v/isosurface"].isosurface->value, 0.5);
        EXPECT_EQ(items["v/isosurface"].opacity, 0.25);
        EXPECT_EQ(items["v/skin"].isosurface->value, 2);
        EXPECT_EQ(items["v/skin"].colour, RGBA8(1, 2, 3, 255));
    }
    expectRefused([&] { volume.isosurface(NAN); }, "scene(\"volumes\").isosurface(\"v\"): a value of nan is nowhere");
    expectRefused([&] { volume.isosurface(-INFINITY); }, "a value of -inf is nowhere");
}

// Of what is sent under one path, the later one holds.
TEST(SceneVolumeTest, AMeshAndAnIsosurfaceDisplaceEachOther)
{
    const Item other = scene("volumes").volume("o", EIGHT, {2, 2, 2});
    other.isosurface(1, "m");
    scene("volumes").mesh("o/m", {0, 0, 0, 1, 0, 0, 0, 1, 0}, std::vector{0, 1, 2});
    const auto taken = [] {
        for (Batch::Part& part : inbox::take())
            return static_cast<SceneUpdate&>(*part.pending.update).items["o/m"];
        return ItemUpdate();
    };
    ItemUpdate sent = taken();
    EXPECT_TRUE(sent.shape && !sent.isosurface);
    scene("volumes").mesh("o/m", {0, 0, 0, 1, 0, 0, 0, 1, 0}, std::vector{0, 1, 2});
    other.isosurface(1, "m");
    sent = taken();
    EXPECT_TRUE(!sent.shape && sent.isosurface);
}

TEST(SceneVolumeTest, AnyThreadMaySendOne)
{
    std::thread([] { scene("volumes").volume("v", std::vector<float>(8), {2, 2, 2}); }).join();
    EXPECT_TRUE(takeVolume());
}

} // namespace
} // namespace tavo
