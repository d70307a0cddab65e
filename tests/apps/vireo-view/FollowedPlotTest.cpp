#include "apps/vireo-view/FollowedPlot.h"

#include <gmock/gmock.h>

#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::IsNan;

class FollowedPlotTest : public FilesTest
{
protected:
    void append(std::string_view text)
    {
        std::ofstream(directory() / "a.log", std::ios::binary | std::ios::app) << text;
    }

    FollowedPlot follow(const ColumnChoice& choice = {}) { return {directory() / "a.log", "a.log", choice}; }
};

TEST_F(FollowedPlotTest, PlansByTheFirstRowsAndAddsTheLater)
{
    write("a.log", "t,p\n1,5\n2,6\n");
    FollowedPlot plot = follow();
    FollowedPlot::News news = plot.poll();
    ASSERT_TRUE(news.rows);
    EXPECT_EQ(news.rows->name, "a.log");
    EXPECT_EQ(news.rows->x.label, "t");
    EXPECT_THAT(news.rows->xs, ElementsAre(1, 2));
    EXPECT_FALSE(plot.poll().rows);
    append("1,7\n3,8\n4,");
    news = plot.poll();
    ASSERT_TRUE(news.rows);
    EXPECT_THAT(news.rows->xs, ElementsAre(1, 3)) << "x stays x";
    EXPECT_THAT(news.rows->curves.at(0).y, ElementsAre(7, 8));
    EXPECT_FALSE(news.isAnew);
}

TEST_F(FollowedPlotTest, CountsRowsOnWhereThereIsNoX)
{
    write("a.log", "5\n7\n6\n");
    FollowedPlot plot = follow();
    EXPECT_THAT(plot.poll().rows->xs, ElementsAre(0, 1, 2));
    append("9\n\n8\n");
    EXPECT_THAT(plot.poll().rows->xs, ElementsAre(3, 4));
}

TEST_F(FollowedPlotTest, WaitsForNumbers)
{
    write("a.log", "time,p\n");
    FollowedPlot plot = follow();
    EXPECT_FALSE(plot.poll().rows);
    append("2024-05-01T12:00:00Z,\n");
    EXPECT_FALSE(plot.poll().rows) << "there is no curve yet";
    append("2024-05-01T12:00:01Z,5\n");
    const FollowedPlot::News news = plot.poll();
    ASSERT_TRUE(news.rows);
    EXPECT_TRUE(news.rows->isTime);
    EXPECT_THAT(news.rows->curves.at(0).y, ElementsAre(IsNan(), 5));
}

TEST_F(FollowedPlotTest, AddsColumnsThatGetNumbersLater)
{
    write("a.log", "t,p [Pa],T [K]\n1,5,\n");
    FollowedPlot plot = follow();
    ASSERT_EQ(plot.poll().rows->curves.size(), 1u);
    append("2,6,300\n");
    const FollowedPlot::News news = plot.poll();
    ASSERT_EQ(news.rows->curves.size(), 2u);
    EXPECT_EQ(news.rows->curves[0].name, "p") << "which is the curve that there is";
    EXPECT_EQ(news.rows->curves[1].name, "T [K]");
}

TEST_F(FollowedPlotTest, BeginsAnewWithAnotherFileAndSaysSo)
{
    write("a.log", "t,p,T\n1,5,7\n2,6,8\n");
    FollowedPlot plot = follow();
    plot.poll();
    write("a.log", "t;q\n1;5\n");
    FollowedPlot::News news = plot.poll();
    EXPECT_TRUE(news.isAnew);
    EXPECT_THAT(news.lines, ElementsAre(EndsWith("a.log: was cut or replaced, and is shown anew")));
    news = plot.poll();
    EXPECT_FALSE(news.isAnew);
    EXPECT_EQ(news.rows->curves.at(0).name, "q");
}

TEST_F(FollowedPlotTest, SaysThatTheFileIsGoneAndComesBack)
{
    write("a.log", "1\n2\n");
    FollowedPlot plot = follow();
    plot.poll();
    std::filesystem::remove(directory() / "a.log");
    EXPECT_THAT(plot.poll().lines, ElementsAre(EndsWith("a.log: is not there; waiting for it")));
    EXPECT_THAT(plot.poll().lines, IsEmpty());
    write("a.log", "3\n");
    const FollowedPlot::News news = plot.poll();
    EXPECT_THAT(news.lines, ElementsAre(EndsWith("a.log: is there")));
    EXPECT_TRUE(news.isAnew);
    EXPECT_THAT(plot.poll().rows->xs, ElementsAre(0));
}

TEST_F(FollowedPlotTest, SaysWhatIsLeftOut)
{
    write("a.log", "t,s\n1,x\n");
    FollowedPlot plot = follow();
    EXPECT_THAT(plot.poll().lines, ElementsAre(EndsWith("a.log: column 2 's' is text and left out ('x' in line 2)")));
    append("2,y\n");
    EXPECT_THAT(plot.poll().lines, IsEmpty()) << "once";
}

TEST_F(FollowedPlotTest, SaysOnceWhatOfTheLaterLinesIsNoRow)
{
    write("a.log", "t,p\n1,5\n2,6\n3,7\n");
    FollowedPlot plot = follow();
    EXPECT_THAT(plot.poll().lines, IsEmpty());
    append("4,x\n5,y\n");
    EXPECT_THAT(plot.poll().lines, ElementsAre(EndsWith("a.log: column 2 'p': 'x' in line 5 is not a number, nor is 1 "
                                                        "more cell; there are gaps")));
    append("6,8\n7\n8,9,1\n");
    EXPECT_THAT(plot.poll().lines,
        ElementsAre(EndsWith("a.log: 2 lines have not as many cells as line 2, the first of them line 8")));
    append("9,z\n10\n");
    EXPECT_THAT(plot.poll().lines, IsEmpty());
    append("now,9\n");
    EXPECT_THAT(
        plot.poll().lines, ElementsAre(EndsWith("column 1 't': 'now' in line 12 is not a number; there is a gap")));
}

TEST_F(FollowedPlotTest, SaysThatAThirdUnitHasNoAxis)
{
    write("a.log", "t,p [Pa],T [K],h [%]\n1,2,3,4\n");
    EXPECT_THAT(follow().poll().lines, ElementsAre(EndsWith("a.log: column 4 'h [%]' has a third unit, and two have an "
                                                            "axis: the left one counts it, too")));
}

TEST_F(FollowedPlotTest, NamesTheColumnsThatThereAre)
{
    write("a.log", "t,p\n");
    FollowedPlot plot = follow({"nosuch", {}});
    plot.poll();
    append("1,2\n");
    EXPECT_EQ(messageOf<NoSuchColumn>([&] { plot.poll(); }), "a.log: has no column 'nosuch'; its columns are t, p");
}

TEST_F(FollowedPlotTest, ShowsTheSameAsTheWholeFile)
{
    std::string text = "t;p\n";
    for (int i = 0; i < 100; ++i)
        text += std::to_string(i) + ",5;" + std::to_string(i * i) + ",25\r\n";
    write("a.log", "");
    FollowedPlot plot = follow();
    std::vector<double> xs, ys;
    for (std::size_t i = 0; i < text.size(); i += 7) {
        append(text.substr(i, 7));
        if (const FollowedPlot::News news = plot.poll(); news.rows) {
            xs.insert(xs.end(), news.rows->xs.begin(), news.rows->xs.end());
            ys.insert(ys.end(), news.rows->curves.at(0).y.begin(), news.rows->curves.at(0).y.end());
        }
    }
    ASSERT_EQ(xs.size(), 100u);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(xs[i], i + 0.5);
        EXPECT_EQ(ys[i], i * i + 0.25);
    }
}

} // namespace
} // namespace vireo_view
