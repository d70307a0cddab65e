#include "apps/vireo-view/ColumnReader.h"

#include <gmock/gmock.h>
#include <limits>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNan;

class ColumnReaderTest : public FilesTest
{
protected:
    Columns read(std::string_view contents) { return readColumns(write("a.csv", contents), nullptr); }

    std::string errorReading(std::string_view contents)
    {
        return messageOf<InputError>([&] { read(contents); });
    }
};

TEST_F(ColumnReaderTest, ReadsOneColumn)
{
    const Columns columns = read("1\n-2.5\n3e2\n");
    EXPECT_THAT(columns.values, ElementsAre(ElementsAre(1, -2.5, 300)));
    EXPECT_THAT(columns.names, IsEmpty());
    EXPECT_EQ(columns.getNumRows(), 3u);
}

TEST_F(ColumnReaderTest, ReadsColumnsSeparatedByWhateverTheFirstLineHas)
{
    for (const auto* contents : {"1 2\n3  4\n", "1,2\n3,4\n", "1;2\n3;4\n", "1\t2\n3\t4\n", "  1 \t 2\n3 \t4  \n",
             "1, 2\n3 ,4\n", " 1  2 \n\t3 4"})
        EXPECT_THAT(read(contents).values, ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4))) << contents;
}

TEST_F(ColumnReaderTest, ReadsAllKindsOfLineEnds)
{
    for (const auto* contents : {"1,2\r\n3,4\r\n", "1,2\r3,4\r", "1,2\n3,4",
             "\xEF\xBB\xBF"
             "1,2\r\n3,4"})
        EXPECT_THAT(read(contents).values, ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4))) << contents;
}

TEST_F(ColumnReaderTest, LeavesOutCommentsAndEmptyLines)
{
    EXPECT_THAT(
        read("# made by hand\n\n1 2 # first\n   \n#\n3 4\n").values, ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4)));
}

TEST_F(ColumnReaderTest, TakesAFirstLineWithoutNumbersForTheHeader)
{
    const Columns columns = read("\"time, in s\",height\n1,2\n");
    EXPECT_THAT(columns.names, ElementsAre("time, in s", "height"));
    EXPECT_THAT(columns.values, ElementsAre(ElementsAre(1), ElementsAre(2)));
    EXPECT_THAT(read("time height\n1 2\n").names, ElementsAre("time", "height"));
    EXPECT_THAT(read("time (s)\theight (m)\n1\t2\n").names, ElementsAre("time (s)", "height (m)"));
}

TEST_F(ColumnReaderTest, ReadsNumbersInEveryUsualNotation)
{
    EXPECT_THAT(read("+1,-1,.5,5.,1E3,1e-3,\"7\",-0\n").values,
        ElementsAre(ElementsAre(1), ElementsAre(-1), ElementsAre(0.5), ElementsAre(5), ElementsAre(1000),
            ElementsAre(0.001), ElementsAre(7), ElementsAre(0)));
}

TEST_F(ColumnReaderTest, ReadsDecimalPointsInEveryLocale)
{
    if (!useDecimalComma())
        GTEST_SKIP() << "there is no locale with a decimal comma: de_DE.UTF-8 can neither be found nor made";
    EXPECT_THAT(read("1.5\n").values, ElementsAre(ElementsAre(1.5)));
}

TEST_F(ColumnReaderTest, KnowsCellsWithoutAValue)
{
    EXPECT_THAT(read("1,2\n,4\nnan,NaN\nNA,6\ninf,-inf\n").values,
        ElementsAre(ElementsAre(1, IsNan(), IsNan(), IsNan(), IsNan()), ElementsAre(2, 4, IsNan(), 6, IsNan())));
}

TEST_F(ColumnReaderTest, DropsColumnsWithoutAnyValue)
{
    const Columns columns = read("a,,b,\n1,,2,\n3,,4,\n");
    EXPECT_THAT(columns.names, ElementsAre("a", "b"));
    EXPECT_THAT(columns.values, ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4)));
}

TEST_F(ColumnReaderTest, NamesTheLineOfACellThatIsNoNumber)
{
    EXPECT_EQ(errorReading("1 2\n\n3 four\n"), "a.csv:3: 'four' is not a number");
    EXPECT_EQ(errorReading("1,2x\n"), "a.csv:1: '2x' is not a number");
    EXPECT_EQ(errorReading("1.5;2\n1,5;2\n"), "a.csv:2: '1,5' is not a number");
    EXPECT_EQ(errorReading("a,b\nc,d\n"), "a.csv:2: 'c' is not a number");
    EXPECT_EQ(errorReading("1\n+-1\n"), "a.csv:2: '+-1' is not a number");
    EXPECT_EQ(errorReading("1\n1e999\n"), "a.csv:2: '1e999' is not a number");
    EXPECT_EQ(errorReading("1\n0x10\n"), "a.csv:2: '0x10' is not a number");
}

TEST_F(ColumnReaderTest, NamesTheLineThatHasNotAsManyCellsAsTheFirst)
{
    EXPECT_EQ(errorReading("1 2\n3 4\n5\n"), "a.csv:3: has 1 column where line 1 has 2");
    EXPECT_EQ(errorReading("# x\nx,y\n1,2,3\n"), "a.csv:3: has 3 columns where line 2 has 2");
}

TEST_F(ColumnReaderTest, TurnsAwayAFileWithoutNumbers)
{
    for (const auto* contents : {"\n", "# nothing\n", "x,y\n", "NA\nnan\n"})
        EXPECT_EQ(errorReading(contents), "a.csv: has no numbers") << contents;
}

TEST_F(ColumnReaderTest, SaysWhenItsReadingWasStopped)
{
    const auto file = write("a.csv", "1\n2\n");
    EXPECT_EQ(messageOf<InputError>([&] { readColumns(file, [](double) { return false; }); }),
        "a.csv: the reading was stopped");
}

TEST_F(ColumnReaderTest, DoesNotBlameTheFileForALineThatStoppingCutOff)
{
    std::string lines;
    for (int i = 0; i < 40000; ++i)
        lines += "1,2,345\n";
    const auto file = write("a.csv", lines + "1,2,3\n");
    for (int chunks = 0; chunks < 4; ++chunks) {
        int numAsked = 0;
        EXPECT_EQ(messageOf<InputError>([&] { readColumns(file, [&](double) { return numAsked++ < chunks; }); }),
            "a.csv: the reading was stopped");
    }
}

} // namespace
} // namespace vireo_view
