#include "apps/vireo-view/TransferFunction.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>

#include "tests/apps/vireo-view/TestVolume.h"

namespace vireo_view {
namespace {

using tavo::RGBA8;

constexpr double INF = std::numeric_limits<double>::infinity();

// A window from 10 to 30.
TransferFunction makeFunction()
{
    TransferFunction function;
    function.setWindow(20);
    function.setLevel(20);
    function.setOpacity(1);
    return function;
}

TEST(TransferFunctionTest, GoesThroughTheColoursWithinTheWindow)
{
    const TransferFunction function = makeFunction();
    EXPECT_EQ(function.look(10), RGBA8(0, 0, 0, 0));
    EXPECT_EQ(function.look(15), RGBA8(64, 64, 64, 64));
    EXPECT_EQ(function.look(20), RGBA8(128, 128, 128, 128));
    EXPECT_EQ(function.look(30), RGBA8(255, 255, 255, 255));
}

TEST(TransferFunctionTest, IsConstantBeyondTheWindow)
{
    const TransferFunction function = makeFunction();
    for (const double below : {9.99, -1e30, -INF})
        EXPECT_EQ(function.look(below), RGBA8(0, 0, 0, 0));
    for (const double above : {30.01, 1e30, INF})
        EXPECT_EQ(function.look(above), RGBA8(255, 255, 255, 255));
    EXPECT_EQ(function.look(NAN), RGBA8(0, 0, 0, 0));
}

TEST(TransferFunctionTest, IsAStepAtTheLevelWithoutAWindow)
{
    TransferFunction function = makeFunction();
    function.setWindow(0);
    EXPECT_EQ(function.partAt(19.99), 0);
    EXPECT_EQ(function.partAt(20), 1);
    EXPECT_EQ(function.partAt(21), 1);
    EXPECT_EQ(function.partAt(NAN), 0);
}

TEST(TransferFunctionTest, IsAsOpaqueAsIsSaidAtTheUpperEnd)
{
    TransferFunction function = makeFunction();
    function.setOpacity(0.2);
    EXPECT_EQ(function.look(30), RGBA8(255, 255, 255, 51));
    EXPECT_EQ(function.look(20), RGBA8(128, 128, 128, 26));
    function.setOpacity(0);
    EXPECT_EQ(function.look(30)[3], 0);
}

TEST(TransferFunctionTest, HasTheColoursOfItsMap)
{
    TransferFunction function = makeFunction();
    EXPECT_EQ(function.getColourMap(), 0u);
    function.setColourMap(1);
    EXPECT_EQ(function.look(17.5), RGBA8(255, 0, 0, 96)) << "hot";
    function.setColourMap(1000);
    EXPECT_EQ(function.getColourMap(), 1u);
}

TEST(TransferFunctionTest, BeginsWithAWindowThatSuitsTheVolume)
{
    std::vector<float> densities(1000, 0.0f);
    for (int i = 0; i < 200; ++i)
        densities[i] = 100;
    densities[999] = 1000;
    const TransferFunction function(Histogram(makeVolume({10, 10, 10}, densities)));
    EXPECT_NEAR(function.getLevel() - function.getWindow() / 2, 21, 1e-9) << "the mean";
    EXPECT_NEAR(function.getLevel() + function.getWindow() / 2, 100, 5) << "almost all";
    EXPECT_EQ(function.look(0)[3], 0);
}

TEST(TransferFunctionTest, SuitsVolumesOfOneValueAndOfNone)
{
    const TransferFunction one(Histogram(makeVolume({1, 1, 1}, {5})));
    EXPECT_EQ(one.getWindow(), 0);
    EXPECT_EQ(one.partAt(5), 1);
    const TransferFunction none(Histogram(makeVolume({1, 1, 1}, {NAN})));
    EXPECT_EQ(none, TransferFunction());
}

TEST(TransferFunctionTest, ComparesEverything)
{
    const TransferFunction function = makeFunction();
    TransferFunction other = function;
    EXPECT_EQ(other, function);
    other.setColourMap(2);
    EXPECT_NE(other, function);
}

} // namespace
} // namespace vireo_view
