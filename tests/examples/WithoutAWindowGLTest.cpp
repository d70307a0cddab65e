#include <gmock/gmock.h>

#include "tests/examples/ExampleTest.h"
#include "tests/support/PictureComparison.h"

namespace {

using tavo::Outcome;
using tavo::toPicture;

class WithoutAWindowGLTest : public tavo::ExampleTest
{
protected:
    void SetUp() override
    {
        ExampleTest::SetUp();
        setEnvironment("DISPLAY", "");
    }
};

TEST_F(WithoutAWindowGLTest, SavesItsPictureWithoutADisplay)
{
    const Outcome outcome = run("without-a-window", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(complaints(outcome), "");
    // Drivers place edges and round colours differently.
    EXPECT_TRUE(tavo::matchesReference(
        toPicture(picture("picture.png")), "examples/without-a-window", {.perChannel = 8, .differingPixels = 0.01}));
}

TEST_F(WithoutAWindowGLTest, SaysThatItsPictureCannotBeSaved)
{
    const Outcome outcome = run("without-a-window", "missing/picture.png");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(complaints(outcome), testing::MatchesRegex("missing/picture.png: the picture cannot be saved: .+\n"));
}

} // namespace
