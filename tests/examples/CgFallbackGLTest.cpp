#include "tests/examples/ExampleTest.h"

namespace {

using CgFallbackGLTest = tavo::ExampleTest;

TEST_F(CgFallbackGLTest, DrawsWithoutProgramsWhereTheRuntimeHasNone)
{
    const tavo::Outcome outcome = run("cg-program", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(complaints(outcome), "this context does not support the Cg profile arbvp1\n"
                                   "this context does not support the Cg profile arbfp1\n");
    EXPECT_FALSE(picture("picture.png").isNull());
}

} // namespace
