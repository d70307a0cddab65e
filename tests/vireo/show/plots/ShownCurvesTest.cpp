#include "vireo/show/plots/ShownCurves.h"

#include <gtest/gtest.h>

namespace tavo {

namespace {

std::string hiddenOf(const ShownCurves& shown)
{
    std::string hidden;
    for (const char* name : {"a", "b", "c"})
        if (shown.isHidden(name))
            hidden += name;
    return hidden;
}

TEST(ShownCurvesTest, HideAndShow)
{
    ShownCurves shown;
    EXPECT_TRUE(shown.areAllShown());
    shown.toggle("b");
    EXPECT_EQ(hiddenOf(shown), "b");
    EXPECT_FALSE(shown.areAllShown());
    shown.toggle("b");
    EXPECT_EQ(hiddenOf(shown), "");
    EXPECT_TRUE(shown.areAllShown());
}

TEST(ShownCurvesTest, IsolateOneAndGoBack)
{
    ShownCurves shown;
    shown.toggle("c");
    shown.isolate("a");
    EXPECT_EQ(hiddenOf(shown), "bc");
    EXPECT_FALSE(shown.areAllShown());
    shown.isolate("b");
    EXPECT_EQ(hiddenOf(shown), "ac");
    shown.isolate("b");
    EXPECT_EQ(hiddenOf(shown), "c");
}

TEST(ShownCurvesTest, ShowMoreBesideTheIsolated)
{
    ShownCurves shown;
    shown.isolate("a");
    shown.toggle("b");
    EXPECT_EQ(hiddenOf(shown), "c");
    shown.isolate("a");
    EXPECT_EQ(hiddenOf(shown), "bc");
    EXPECT_TRUE(shown.isHidden("one that comes later"));
}

} // namespace

} // namespace tavo
