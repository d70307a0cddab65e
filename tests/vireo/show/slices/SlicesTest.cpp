#include "vireo/show/Slices.h"

#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <limits>

#include "vireo/show/Image.h"
#include "vireo/show/Scene.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/slices/SlicesUpdate.h"

// What the handles send, and what they refuse.
namespace tavo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::vector<float> EIGHT{1, 2, 3, 4, 5, 6, 7, 8};

std::unique_ptr<SlicesUpdate> takeSlices(const std::string& name = "head")
{
    std::unique_ptr<SlicesUpdate> update;
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == name)
            update.reset(static_cast<SlicesUpdate*>(part.pending.update.release()));
    return update;
}

void expectRefused(const std::function<void()>& send, const std::string& line)
{
    testing::internal::CaptureStderr();
    send();
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr(line + "; what was shown stays"));
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_FALSE(takeSlices());
}

TEST(SlicesTest, AStatementIsOneDelivery)
{
    bool wasWaiting = true;
    slices("head", EIGHT, {2, 2, 2}, {1, 2, 3}, {4, 5, 6})
        .window(0, (wasWaiting = inbox::hasWaiting(), 9))
        .colourMap("bone")
        .crosshair(4, 7, 9);
    EXPECT_FALSE(wasWaiting);
    const auto sent = takeSlices();
    EXPECT_EQ(sent->volume->grid.size, Vector3i(2, 2, 2));
    EXPECT_EQ(sent->volume->grid.spacing, Vector3d(1, 2, 3));
    EXPECT_EQ(sent->volume->grid.origin, Vector3d(4, 5, 6));
    EXPECT_FALSE(sent->volume->isOriented);
    EXPECT_EQ(sent->settings.window, std::pair(0.0, 9.0));
    EXPECT_EQ(sent->settings.colourMap, "bone");
    EXPECT_EQ(sent->crosshair, Vector3d(4, 7, 9));
}

TEST(SlicesTest, AnOrientationIsKnownWhereItIsSaid)
{
    slices("head", EIGHT, {2, 2, 2}, 1, {0, 0, 0}, {{-2, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    const auto sent = takeSlices();
    EXPECT_TRUE(sent->volume->isOriented);
    EXPECT_EQ(sent->volume->grid.axes[0], Vector3d(-1, 0, 0));
}

TEST(SlicesTest, SamplesKeepTheirTypeAndAreMovedOrShared)
{
    std::vector<std::int16_t> shorts(8);
    const void* const there = shorts.data();
    slices("head", std::move(shorts), {2, 2, 2});
    const auto moved = takeSlices();
    EXPECT_EQ(moved->volume->samples.numbers.getData(), there) << "nothing was copied";
    EXPECT_EQ(moved->volume->samples.numbers.getType(), NumberType::Int16);
    const auto shared = std::make_shared<const std::vector<double>>(8, 1.0);
    slices("head", shared, {2, 2, 2});
    EXPECT_EQ(takeSlices()->volume->samples.numbers.getData(), shared->data());
    slices("head", std::vector<std::uint8_t>(24), {2, 2, 2});
    EXPECT_EQ(takeSlices()->volume->samples.width, 3U);
}

TEST(SlicesTest, TheNewestWinsAndWhatWasSaidStays)
{
    const Slices head = slices("head", EIGHT, {2, 2, 2}).window(1, 2);
    slices("head", {1, 2}, {2, 1, 1});
    head.overlay(EIGHT, {2, 2, 2}).opacity(0.25);
    const auto sent = takeSlices();
    EXPECT_EQ(sent->volume->grid.size, Vector3i(2, 1, 1));
    EXPECT_EQ(sent->settings.window, std::pair(1.0, 2.0));
    EXPECT_TRUE(sent->overlay);
    EXPECT_EQ(sent->overlaySettings.opacity, 0.25);
}

TEST(SlicesTest, WhatLiesOnTheVolumeHasSettingsOfItsOwn)
{
    slices("head", EIGHT, {2, 2, 2})
        .overlay(EIGHT, {2, 2, 2}, 0.5, {1, 2, 3})
        .window(2, 3)
        .colourMap("viridis")
        .opacity(0.75)
        .labels(EIGHT, {"nothing", "bone"})
        .opacity(0.125);
    const auto sent = takeSlices();
    EXPECT_EQ(sent->overlay->grid.origin, Vector3d(1, 2, 3));
    EXPECT_EQ(sent->overlaySettings.window, std::pair(2.0, 3.0));
    EXPECT_EQ(sent->overlaySettings.colourMap, "viridis");
    EXPECT_EQ(sent->overlaySettings.opacity, 0.75);
    EXPECT_FALSE(sent->settings.window);
    EXPECT_EQ(sent->labels.back().names.at(1), "bone");
    EXPECT_FALSE(sent->labels.back().grid);
    EXPECT_EQ(sent->labelSettings.opacity, 0.125);
    slices("head").labels(EIGHT, {2, 2, 2}, 2, {0, 0, 0}, {{17, "hippocampus"}});
    const auto elsewhere = takeSlices();
    EXPECT_EQ(elsewhere->labels.back().grid->spacing, Vector3d(2, 2, 2));
    EXPECT_EQ(elsewhere->labels.back().names.at(17), "hippocampus");
}

TEST(SlicesTest, LabelsHaveColoursAndOutlinesAndAreTakenAway)
{
    const SliceOverlay labels = slices("head").labels(
        EIGHT, {2, 2, 2}, 2, {0, 0, 0}, Orientation{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}, {{17, "hippocampus"}});
    labels.colours({{17, RGBA8(1, 2, 3, 255)}}).outlines();
    const auto sent = takeSlices();
    EXPECT_EQ(sent->labels.back().grid->axes[0], Vector3d(0, 1, 0));
    EXPECT_EQ(sent->labelColours->at(17), RGBA8(1, 2, 3, 255));
    EXPECT_EQ(sent->areLabelsOutlined, true);
    slices("head").removeLabels().removeOverlay();
    const auto removal = takeSlices();
    EXPECT_TRUE(removal->labels.back().samples.numbers.isEmpty());
    EXPECT_TRUE(removal->overlay->samples.numbers.isEmpty());
    const SliceOverlay overlay = slices("head").overlay(EIGHT, {2, 2, 2});
    takeSlices();
    expectRefused([=] { overlay.outlines(); }, "slices(\"head\").overlay.outlines: only labels have that");
    expectRefused([=] { overlay.colours({}); }, "slices(\"head\").overlay.colours: only labels have that");
}

TEST(SlicesTest, LabelsOfOtherSamplesWaitForTheVolume)
{
    slices("head").labels(EIGHT, {"good"});
    slices("head").labels({1, 2, 3}, {"bad"}).labels({4, 5, 6}, {"bad, too"});
    const auto sent = takeSlices();
    ASSERT_EQ(sent->labels.size(), 2U);
    EXPECT_EQ(sent->labels.front().names.at(0), "good");
    EXPECT_EQ(sent->labels.back().names.at(0), "bad, too");
    slices("head").labels(EIGHT).removeLabels();
    EXPECT_EQ(takeSlices()->labels.size(), 1U);
}

TEST(SlicesTest, BadVolumesAreRefusedInALine)
{
    expectRefused(
        [] {
            slices("head", EIGHT, {2, 2, 3});
        },
        "slices(\"head\"): 8 numbers are no samples of 2 x 2 x 3, which take 12, or three or four times as many for "
        "colours");
    expectRefused([] { slices("head", EIGHT, {2, 0, 4}); }, "slices(\"head\"): 2 x 0 x 4 is no size of a volume");
    expectRefused(
        [] {
            slices("head", EIGHT, {100'000, 100'000, 1});
        },
        "slices(\"head\"): 8 numbers are no samples of 100000 x 100000 x 1, which take 1e+10, or three or four times "
        "as "
        "many for colours");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double bad : {0.0, -1.0, nan})
        expectRefused(
            [bad] {
                slices("head", EIGHT, {2, 2, 2}, {1, bad, 1});
            },
            "slices(\"head\"): 1 x " + QString::number(bad).toStdString() + " x 1 is no distance of samples");
    expectRefused(
        [nan] {
            slices("head", EIGHT, {2, 2, 2}, 1, {0, nan, 0});
        },
        "slices(\"head\"): its origin is not finite");
    expectRefused(
        [] {
            slices("head").overlay(EIGHT, {3, 2, 2});
        },
        "slices(\"head\").overlay: 8 numbers are no samples of 3 x 2 x 2, which take 12, or three or four times as "
        "many "
        "for colours");
    expectRefused(
        [] {
            slices("head").labels(std::vector<int>(24), {2, 2, 2});
        },
        "slices(\"head\").labels: labels are one number for each sample, and not colours");
}

TEST(SlicesTest, BadSettingsAreRefusedInALine)
{
    const Slices head = slices("head");
    const double infinite = std::numeric_limits<double>::infinity();
    expectRefused(
        [=] { head.window(2, 2); }, "slices(\"head\").window(2, 2): a window goes from one number to another");
    expectRefused([=] { head.crosshair(0, infinite, 0); }, "slices(\"head\").crosshair(0, inf, 0): that is no place");
    testing::internal::CaptureStderr();
    head.colourMap("jet");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("colourMap(\"jet\"): there is no map \"jet\""));
    const SliceOverlay overlay = head.overlay(EIGHT, {2, 2, 2});
    const SliceOverlay labels = head.labels(EIGHT);
    takeSlices();
    expectRefused([=] { overlay.opacity(1.5); }, "slices(\"head\").overlay.opacity(1.5): an opacity is from 0 to 1");
    expectRefused([=] { overlay.window(3, infinite); },
        "slices(\"head\").overlay.window(3, inf): a window goes from one number to another");
    expectRefused(
        [=] { labels.window(1, 2); }, "slices(\"head\").labels.window: labels have the colours of categories");
}

TEST(SlicesTest, ANameBelongsToOneKindOfView)
{
    image("picture", {1, 2}, 2, 1);
    testing::internal::CaptureStderr();
    slices("picture", EIGHT, {2, 2, 2});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("\"picture\" is a view of another kind"));
    inbox::take();
}

TEST(SlicesTest, AHandleOfNothingSendsNothing)
{
    testing::internal::CaptureStderr();
    Slices().window(1, 2).crosshair(1, 2, 3).overlay(EIGHT, {2, 2, 2}).opacity(1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
    EXPECT_FALSE(inbox::hasWaiting());
}

} // namespace
} // namespace tavo
