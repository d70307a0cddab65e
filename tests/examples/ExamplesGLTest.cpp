#include <gmock/gmock.h>
#include <string>

#include "tests/examples/ExampleTest.h"
#include "tests/support/PictureComparison.h"

namespace {

using tavo::Outcome;
using tavo::toPicture;
using testing::MatchesRegex;

class ExamplesGLTest : public tavo::ExampleTest, public testing::WithParamInterface<const char*>
{};

TEST_P(ExamplesGLTest, SavesItsPicture)
{
    const Outcome outcome = run(GetParam(), "picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(complaints(outcome), "");
    // Drivers place the edges of slanted faces and of texels differently.
    EXPECT_TRUE(tavo::matchesReference(toPicture(picture("picture.png")), std::string("examples/") + GetParam(),
        {.perChannel = 8, .differingPixels = 0.01}));
}

TEST_P(ExamplesGLTest, SaysThatItsPictureCannotBeSaved)
{
    const Outcome outcome = run(GetParam(), "missing/picture.png");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(complaints(outcome), MatchesRegex("missing/picture.png: the picture cannot be saved: .+\n"));
}

INSTANTIATE_TEST_SUITE_P(All, ExamplesGLTest, testing::ValuesIn(VIREO_EXAMPLE_NAMES), [](const auto& info) {
    std::string name = info.param;
    std::erase(name, '-');
    return name;
});

} // namespace
