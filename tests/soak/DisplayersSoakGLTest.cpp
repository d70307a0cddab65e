#include <gtest/gtest.h>

#include "tests/soak/RandomSends.h"
#include "tests/soak/Soak.h"

// Random sends to displayers, with a person at the window.

TEST(DisplayersSoakGLTest, EverySectionShowsWhatWasSentAndNothingIsLost)
{
    vireo_soak::Soak soak;
    tavo::RandomSends sends(soak.getSeed());
    while (soak.hasNext())
        sends.step();
}
