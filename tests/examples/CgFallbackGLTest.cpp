#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/examples/ExampleTest.h"

namespace {

using CgFallbackGLTest = tavo::ExampleTest;

TEST_F(CgFallbackGLTest, DrawsWithoutProgramsWhereTheRuntimeHasNone)
{
    const tavo::Outcome outcome = run("cg-program", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    for (const char* const kind : {"vertices: the Cg runtime does not see this context", "vp1", "fragments", "fp1"})
        EXPECT_THAT(complaints(outcome), testing::HasSubstr(kind));
    const std::string lines = complaints(outcome);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 4);
    EXPECT_FALSE(picture("picture.png").isNull());
}

} // namespace
