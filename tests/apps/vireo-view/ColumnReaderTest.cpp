#include "apps/vireo-view/ColumnReader.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;

class ColumnReaderTest : public FilesTest
{
protected:
    Table read(std::string_view contents) { return readColumns(write("a.csv", contents), nullptr); }

    std::string errorReading(std::string_view contents)
    {
        return messageOf<InputError>([&] { read(contents); });
    }
};

TEST_F(ColumnReaderTest, ReadsAllKindsOfLineEnds)
{
    for (const auto* contents : {"1,2\r\n3,4\r\n", "1,2\r3,4\r", "1,2\n3,4",
             "\xEF\xBB\xBF"
             "1,2\r\n3,4"}) {
        const Table table = read(contents);
        ASSERT_EQ(table.columns.size(), 2u) << contents;
        EXPECT_THAT(table.columns[0].values, ElementsAre(1, 3)) << contents;
        EXPECT_THAT(table.columns[1].values, ElementsAre(2, 4)) << contents;
        EXPECT_EQ(table.numRows, 2u);
    }
}

TEST_F(ColumnReaderTest, ReadsDecimalPointsInEveryLocale)
{
    if (!useDecimalComma())
        GTEST_SKIP() << "there is no locale with a decimal comma: de_DE.UTF-8 can neither be found nor made";
    EXPECT_THAT(read("1.5\n").columns[0].values, ElementsAre(1.5));
}

TEST_F(ColumnReaderTest, NumbersLinesAsEditorsDo)
{
    EXPECT_EQ(read("# one\n\nt,s\n1,x\n").columns[1].lineOfFirstText, 4u);
}

TEST_F(ColumnReaderTest, FindsTheTableBelowOtherLines)
{
    const std::string rows = "0;1,5\n1;2,5\n2;4\n";
    for (const auto* above : {"Logger 3000\nSerial;123\n\n", "Logger;3000\nSerial;123\n\n", "# none\n1 2 3\n4\n"}) {
        const Table table = read(above + ("t;p\n" + rows));
        ASSERT_EQ(table.columns.size(), 2u) << above;
        EXPECT_EQ(table.columns[1].name, "p") << above;
        EXPECT_THAT(table.columns[1].values, ElementsAre(1.5, 2.5, 4)) << above;
        EXPECT_THAT(table.remarks(), ElementsAre("the table begins in line 4; 3 lines before it are left out"))
            << above;
    }
    EXPECT_EQ(read("Logger 3000\nt;p\ns;Pa\n" + rows).columns[0].name, "t [s]");
    EXPECT_THAT(read("Logger 3000\nt;p\n" + rows).remarks(),
        ElementsAre("the table begins in line 2; 1 line before it is left out"));
}

TEST_F(ColumnReaderTest, LeavesNoRowsOutThatMayBeOfTheTable)
{
    for (const auto* contents : {"t;p\n0;1\nERR;ERR\n1;2\n2;3\n", "0;1\nt;p\n1;2\n2;3\n", "t p\n0 1\n0,5 1,5\n1,5 2\n",
             "s;p\nOK;1\ns;p\n0;1\n1;2\n", "3\n1 2 3\n4 5 6\n", "sep=;\n1\nt;p\n1;2\n2;3\n"}) {
        const Table table = read(contents);
        EXPECT_EQ(table.numBefore, 0u) << contents;
        EXPECT_GT(table.numRows, 2u) << contents;
    }
}

TEST_F(ColumnReaderTest, TurnsAwayAFileWithoutNumbers)
{
    for (const auto* contents : {"\n", "# nothing\n", "x,y\n", "NA\nnan\n", "Dear reader,\n\nthere are no numbers.\n"})
        EXPECT_EQ(errorReading(contents), "a.csv: has no numbers") << contents;
}

TEST_F(ColumnReaderTest, SaysWhenItsReadingWasStopped)
{
    std::string lines;
    for (int i = 0; i < 40000; ++i)
        lines += "1,2,345\n";
    const auto file = write("a.csv", lines);
    for (int chunks = 0; chunks < 4; ++chunks) {
        int numAsked = 0;
        EXPECT_EQ(messageOf<InputError>([&] { readColumns(file, [&](double) { return numAsked++ < chunks; }); }),
            "a.csv: the reading was stopped");
    }
}

} // namespace
} // namespace vireo_view
