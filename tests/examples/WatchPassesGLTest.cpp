#include <QDir>

#include "tests/examples/ExampleTest.h"

namespace {

using tavo::Outcome;

class WatchPassesGLTest : public tavo::ExampleTest
{};

// How much of a picture is neither black nor the ground around the image.
int numBright(const QImage& picture)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            number += qRed(picture.pixel(x, y)) > 20 && picture.pixel(x, y) != picture.pixel(1, 1);
    return number;
}

TEST_F(WatchPassesGLTest, ShowsWhatEachPassLeaves)
{
    setEnvironment("VIREO_SHOW", ("pictures:" + path("passes")).toLocal8Bit().constData());
    const Outcome outcome = run("watch-passes", "picture.png");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(complaints(outcome), "");
    const int bright = numBright(picture("passes/1_what_is_bright.png"));
    const int rows = numBright(picture("passes/2_rows.png"));
    const int columns = numBright(picture("passes/3_columns.png"));
    EXPECT_GT(bright, 1000);
    EXPECT_GT(rows, bright) << "what is blurred spreads";
    EXPECT_GT(columns, rows);
}

} // namespace
