#include "apps/vireo-view/TableParser.h"

#include <cmath>
#include <gmock/gmock.h>
#include <sstream>

#include "apps/vireo-view/TimeStamp.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNan;

Table parse(const std::string& text)
{
    TableParser parser;
    std::istringstream stream(text);
    std::size_t number = 0;
    for (std::string line; std::getline(stream, line);)
        parser.parseLine(line, ++number);
    return parser.takeRows();
}

std::vector<std::string> namesOf(const Table& table)
{
    std::vector<std::string> names;
    for (const Column& column : table.columns)
        names.push_back(column.name);
    return names;
}

std::vector<std::vector<double>> valuesOf(const Table& table)
{
    std::vector<std::vector<double>> values;
    for (const Column& column : table.columns)
        values.push_back(column.values);
    return values;
}

TEST(TableParserTest, SplitsByWhateverTheFirstRowHas)
{
    for (const auto* text : {"1 2\n3  4\n", "1,2\n3,4\n", "1;2\n3;4\n", "1\t2\n3\t4\n", "  1 \t 2\n3 \t4  \n",
             "1, 2\n3 ,4\n", " 1  2 \n  3 4", "\"1\",\"2\"\n3,4\n"})
        EXPECT_THAT(valuesOf(parse(text)), ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4))) << text;
}

TEST(TableParserTest, TakesTheSeparatorThatExcelNames)
{
    const Table table = parse("sep=;\na, b;c\n1;2\n");
    EXPECT_THAT(namesOf(table), ElementsAre("a, b", "c"));
    EXPECT_THAT(valuesOf(table), ElementsAre(ElementsAre(1), ElementsAre(2)));
}

TEST(TableParserTest, TakesDecimalCommasWhereCommasDoNotSeparate)
{
    const auto isExpected = ElementsAre(ElementsAre(0.5, 1e-3), ElementsAre(-1.25, 7));
    EXPECT_THAT(valuesOf(parse("a;b\n0,5;-1,25\n1e-3;7\n")), isExpected);
    EXPECT_THAT(valuesOf(parse("0,5;-1,25\n1,0e-3;7\n")), isExpected);
    EXPECT_THAT(valuesOf(parse("a\tb\n0,5\t-1,25\n0,001\t7\n")), isExpected);
    EXPECT_THAT(valuesOf(parse("0,5\t-1,25\n0,001\t7\n")), isExpected);
    EXPECT_THAT(valuesOf(parse("a b\n0,5 -1,25\n0.001 7\n")), isExpected) << "separated as the names are";
    EXPECT_THAT(parse("a;b\n1;1.234,5\n").columns[1].firstText, "1.234,5") << "which might be anything";
}

TEST(TableParserTest, KeepsEveryDigit)
{
    const Table table = parse("0.1,1e308,5e-324,123456789012345678,+3\n");
    EXPECT_THAT(valuesOf(table), ElementsAre(ElementsAre(0.1), ElementsAre(1e308), ElementsAre(5e-324),
                                     ElementsAre(123456789012345678.0), ElementsAre(3)));
}

TEST(TableParserTest, TakesTheLastTextBeforeTheNumbersForNames)
{
    EXPECT_THAT(
        namesOf(parse("\"time, in s\",\"the \"\"height\"\"\"\n1,2\n")), ElementsAre("time, in s", "the \"height\""));
    EXPECT_THAT(namesOf(parse("Logger;X200\nPlace;roof\n\nt;p\n1;2\n")), ElementsAre("t", "p"));
    EXPECT_THAT(namesOf(parse("a title of five words\n1 2\n")), ElementsAre("", ""));
    EXPECT_THAT(namesOf(parse("1,2\n")), ElementsAre("", ""));
    EXPECT_THAT(namesOf(parse("Sensor #1;Sensor #2\n1;2\n")), ElementsAre("Sensor #1", "Sensor #2"));
    EXPECT_THAT(namesOf(parse("a;b\n1;2;\n3;4;\n")), ElementsAre("a", "b")) << "each line ends with a separator";
}

TEST(TableParserTest, TakesACommentForNamesWhereThereAreNoOthers)
{
    EXPECT_THAT(namesOf(parse("# made by hand today\n# t [s]  x (m)\n1 2\n")), ElementsAre("t [s]", "x (m)"));
    EXPECT_THAT(namesOf(parse("#t,x\n1,2\n")), ElementsAre("t", "x"));
    EXPECT_THAT(namesOf(parse("# a b\nt x\n1 2\n")), ElementsAre("t", "x"));
}

TEST(TableParserTest, JoinsNamesAndTheirUnits)
{
    EXPECT_THAT(namesOf(parse("time [s] p [kPa]\n1 2\n")), ElementsAre("time [s]", "p [kPa]"));
    EXPECT_THAT(namesOf(parse("time;p;n\n[s];(Pa);-\n1;2;3\n")), ElementsAre("time [s]", "p (Pa)", "n"));
}

TEST(TableParserTest, TakesTheSecondOfTwoLinesForUnits)
{
    const auto isExpected = ElementsAre("time [s]", "inlet [Pa]", "outlet [Pa]");
    for (const auto* text : {"time;inlet;outlet\ns;Pa;Pa\n0;1;2\n", "time inlet outlet\ns Pa Pa\n0 1 2\n",
             "time,inlet,outlet\ns,Pa,Pa\n\n0,1,2\n", "Logger of the roof\ntime;inlet;outlet\ns;Pa;Pa\n0;1;2\n",
             "of;the;roof\n\ntime;inlet;outlet\ns;Pa;Pa\n0;1;2\n", "time;inlet;outlet\ns;Pa;Pa\n0;1;2;\n"})
        EXPECT_THAT(namesOf(parse(text)), isExpected) << text;
    EXPECT_THAT(namesOf(parse("a;b;c;d\n;Pa;-;(m)\n0;1;2;3\n")), ElementsAre("a", "b [Pa]", "c", "d (m)"));
    EXPECT_THAT(namesOf(parse("a\tb\tc\ns\tPa\t\n0\t1\t2\n")), ElementsAre("a [s]", "b [Pa]", "c"));
    EXPECT_THAT(namesOf(parse("date;time;p\nd;h;Pa\n2024-05-01;12:30:01;7\n")), ElementsAre("date [d]", "p [Pa]"));
    EXPECT_THAT(namesOf(parse("Logger;X\nPlace;roof\nt;p\n1;2\n")), ElementsAre("t", "p")) << "a third line";
    EXPECT_THAT(namesOf(parse("Place;roof\n\nt;p\n1;2\n")), ElementsAre("t", "p")) << "apart";
    EXPECT_THAT(namesOf(parse("Place;roof\nt;p\n[s];[Pa]\n1;2\n")), ElementsAre("t [s]", "p [Pa]"));
}

TEST(TableParserTest, TakesNamesThatAreNoUtf8ForLatin1)
{
    EXPECT_THAT(namesOf(parse("T [\xB0"
                              "C];H\xF6he\n1;2\n")),
        ElementsAre("T [\xC2\xB0"
                    "C]",
            "H\xC3\xB6he"));
    EXPECT_THAT(namesOf(parse("H\xC3\xB6he;b\n1;2\n")), ElementsAre("H\xC3\xB6he", "b"));
}

TEST(TableParserTest, TakesTabsAtTheBeginningForEmptyCells)
{
    const Table index = parse("\ta\tb\n0\t1\t2\n1\t3\t4\n");
    EXPECT_THAT(namesOf(index), ElementsAre("", "a", "b"));
    EXPECT_THAT(valuesOf(index), ElementsAre(ElementsAre(0, 1), ElementsAre(1, 3), ElementsAre(2, 4)));
    const Table gap = parse("t\tp\tq\n1\t2\t3\n\t5\t6\n");
    EXPECT_THAT(valuesOf(gap), ElementsAre(ElementsAre(1, IsNan()), ElementsAre(2, 5), ElementsAre(3, 6)));
    EXPECT_THAT(gap.remarks(), IsEmpty());
    EXPECT_THAT(namesOf(parse("t\tp\tq\n\t(Pa)\t(m)\n1\t2\t3\n")), ElementsAre("t", "p (Pa)", "q (m)"));
    EXPECT_THAT(valuesOf(parse("\t1 2\n\t3 4\n")), ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4)))
        << "blanks separate";
}

TEST(TableParserTest, ReadsTimeStamps)
{
    const Table table = parse("t,p\n2024-05-01T00:00:00Z,1\n2024-05-01T00:00:01.5Z,2\n,3\n");
    EXPECT_TRUE(table.columns[0].isTime);
    EXPECT_FALSE(table.columns[1].isTime);
    EXPECT_THAT(table.columns[0].values, ElementsAre(1714521600, 1714521601.5, IsNan()));
}

TEST(TableParserTest, JoinsADayAndItsTime)
{
    const double moment = *timeStampOf("2024-05-01 12:30:01");
    for (const auto* text : {"date time p\n2024-05-01 12:30:01 7\n", "date;time;p\n01.05.2024;12:30:01;7\n",
             "date,time,p\n\"2024-05-01\",\"12:30:01\",7\n", "date p\n2024-05-01 12:30:01 7\n"}) {
        const Table table = parse(text);
        EXPECT_THAT(namesOf(table), ElementsAre("date", "p")) << text;
        EXPECT_THAT(valuesOf(table), ElementsAre(ElementsAre(moment), ElementsAre(7))) << text;
    }
}

TEST(TableParserTest, LeavesGapsWhereCellsAreEmpty)
{
    const Table table = parse("a,b,c\n1,,\n,NA,\nnan,n/a,\n-inf,4,\n--,5\n");
    EXPECT_THAT(table.columns[0].values, ElementsAre(1, IsNan(), IsNan(), -INFINITY, IsNan()));
    EXPECT_THAT(table.columns[1].values, ElementsAre(IsNan(), IsNan(), IsNan(), 4, 5));
    EXPECT_THAT(table.columns[2].values, IsEmpty());
    EXPECT_FALSE(table.columns[2].hasNumbers());
    EXPECT_THAT(table.remarks(), ElementsAre("1 line has not as many cells as line 2, the first of them line 6"));
}

TEST(TableParserTest, LeavesTextOutAndSaysSo)
{
    const Table table = parse("t,status,p\n1,OK,5\n2,retry,ERR\n3,7,6\n4,OK,7\n");
    EXPECT_FALSE(table.columns[1].hasNumbers());
    EXPECT_THAT(table.columns[2].values, ElementsAre(5, IsNan(), 6, 7));
    EXPECT_THAT(table.remarks(), ElementsAre("column 2 'status' is text and left out ('OK' in line 2)",
                                     "column 3 'p': 'ERR' in line 3 is not a number; there is a gap"));
    EXPECT_THAT(parse("1\nx\ny\n1\n1\n").remarks(),
        ElementsAre("column 1: 'x' in line 2 is not a number, nor is 1 more cell; there are gaps"));
}

TEST(TableParserTest, SaysNoMoreThanAPersonReads)
{
    std::string text;
    for (int i = 0; i < 30; ++i)
        text += "word,";
    const std::vector<std::string> remarks = parse("1," + text + "\n2," + text + "\n").remarks();
    ASSERT_THAT(remarks, testing::SizeIs(11));
    EXPECT_EQ(remarks.back(), "so it is with 20 more columns");
}

TEST(TableParserTest, TakesMoreColumnsWhereALineHasMore)
{
    const Table table = parse("3\n1 2 3\n4 5 6\n");
    EXPECT_THAT(table.columns[0].values, ElementsAre(3, 1, 4));
    EXPECT_THAT(table.columns[2].values, ElementsAre(IsNan(), 3, 6));
}

TEST(TableParserTest, LooksAtNoMoreThanTenThousandColumns)
{
    std::string line;
    for (int i = 0; i < 20'000; ++i)
        line += "1,";
    const Table table = parse(line + "\n");
    EXPECT_EQ(table.columns.size(), 10'000u);
    EXPECT_THAT(table.remarks(), ElementsAre("there are 10000 columns or more; the rest is left out"));
}

TEST(TableParserTest, LeavesOutCommentsAndEmptyLines)
{
    const Table table = parse("# one\n\n1 2 # two\n   \n#\n3 4 #\n\n");
    EXPECT_THAT(valuesOf(table), ElementsAre(ElementsAre(1, 3), ElementsAre(2, 4)));
    EXPECT_THAT(parse("a;colour\n1;#ff0000\n").columns[1].firstText, "#ff0000");
}

TEST(TableParserTest, GoesOnWithTheSameColumnsWhenRowsWereTaken)
{
    TableParser parser;
    parser.parseLine("a,b", 1);
    parser.parseLine("1,2", 2);
    EXPECT_THAT(valuesOf(parser.takeRows()), ElementsAre(ElementsAre(1), ElementsAre(2)));
    parser.parseLine("3,", 3);
    parser.parseLine("5,6", 4);
    const Table more = parser.takeRows();
    EXPECT_THAT(namesOf(more), ElementsAre("a", "b"));
    EXPECT_THAT(more.columns[1].values, ElementsAre(IsNan(), 6));
    EXPECT_EQ(more.columns[0].numValues, 3u);
    EXPECT_EQ(parser.getTable().numRows, 0u);
}

} // namespace
} // namespace vireo_view
