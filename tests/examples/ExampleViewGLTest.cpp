#include <gmock/gmock.h>

#include "tests/examples/ExampleTest.h"
#include "tests/support/fullDevice.h"

namespace {

using ExampleViewGLTest = tavo::ExampleTest;

TEST_F(ExampleViewGLTest, SaysThatItsPictureCannotBeSavedOnAFullDevice)
{
    if (!tavo::makeFullDevice(path("picture.png").toStdString()))
        GTEST_SKIP() << "this process may not make a device that is full";
    const tavo::Outcome outcome = run("geometry-list", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(complaints(outcome), "picture.png: the picture cannot be saved: is not a regular file\n");
}

TEST_F(ExampleViewGLTest, EndsWhereThereIsNoOpenGL)
{
    setEnvironment("QT_QPA_PLATFORM", "minimal");
    const tavo::Outcome outcome = run("geometry-list", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(complaints(outcome), testing::EndsWith("there is no OpenGL here: the example cannot be drawn\n"));
}

} // namespace
