#include <gtest/gtest.h>

#include "vireo/show/colours/cielab.h"
#include "vireo/show/plots/colours.h"

namespace tavo {

namespace {

TEST(ColourOfCurveTest, ColourBlindPeopleTellCurvesApart)
{
    const auto labOf = [](const QColor& colour, Vision vision) {
        return toLab(RGBA8(colour.red(), colour.green(), colour.blue(), 255), vision);
    };
    for (const bool isGroundDark : {false, true})
        for (const Vision vision : ALL_VISIONS)
            for (std::size_t i = 0; i < 8; ++i) {
                const Lab colour = labOf(colourOfCurve(i, isGroundDark), vision);
                EXPECT_GT(distance(colour, labOf(isGroundDark ? QColor(35, 38, 41) : Qt::white, vision)), 30) << i;
                for (std::size_t j = 0; j < i; ++j)
                    EXPECT_GT(distance(colour, labOf(colourOfCurve(j, isGroundDark), vision)), 10) << i << " " << j;
            }
}

} // namespace

} // namespace tavo
