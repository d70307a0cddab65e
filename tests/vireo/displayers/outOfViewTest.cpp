#include "vireo/displayers/outOfView.h"

#include <gmock/gmock.h>

#include "tavo/base/gui/Camera.h"

namespace tavo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

// Looks along Z, from one unit before the origin.
std::string describe(const Box3f& box)
{
    return describeOutOfView(box, Camera());
}

TEST(OutOfViewTest, SaysNothingOfWhatIsInView)
{
    EXPECT_THAT(describe({{-1, -1, 0}, {1, 1, 999}}), IsEmpty());
    EXPECT_THAT(describe({{-1, -1, -5}, {1, 1, 5}}), IsEmpty()) << "only a part is too near";
}

TEST(OutOfViewTest, SaysHowFarDataReachBeyondTheFarPlane)
{
    EXPECT_EQ(describe({{0, 0, 2000}, {1, 1, 2001}}),
        "the data, from (0, 0, 2000) to (1, 1, 2001), lie outside what this view shows: they reach 1002 beyond the far "
        "plane, which is 1000 from the eye at (0, 0, -1). A new view shows data from -150 to 150 along each axis: "
        "scale or shift them to there, or, if they are curves, send them to tavo::plot (vireo/show/show.h), which "
        "shows "
        "any range.");
    EXPECT_THAT(describe({{0, 0, 0}, {1, 1, 2001}}), HasSubstr("lie partly outside what this view shows"));
}

TEST(OutOfViewTest, SaysThatDataEndBeforeTheNearPlane)
{
    const std::string text = describe({{0, 0, -3}, {1, 1, -2}});
    EXPECT_THAT(text, HasSubstr("lie outside what this view shows: they end 1.01 before the near plane"));
    EXPECT_THAT(text, HasSubstr("enlarge them, or, if they are curves, send them to tavo::plot"));
}

} // namespace
} // namespace tavo
