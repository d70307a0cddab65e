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
