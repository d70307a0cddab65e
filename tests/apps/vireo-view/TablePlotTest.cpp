#include "apps/vireo-view/TablePlot.h"

#include <cmath>
#include <gmock/gmock.h>
#include <sstream>

#include "apps/vireo-view/TimeStamp.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNan;

class TablePlotTest : public testing::Test
{
protected:
    static Table parse(const std::string& text)
    {
        TableParser parser;
        std::istringstream stream(text);
        std::size_t number = 0;
        for (std::string line; std::getline(stream, line);)
            parser.parseLine(line, ++number);
        return parser.takeRows();
    }

    TablePlot plan(const std::string& text, const ColumnChoice& choice = {}) const
    {
        return planPlot(m_File, parse(text), choice);
    }

    PlotExhibit plot(const std::string& text, const ColumnChoice& choice = {}) const
    {
        return makePlot(parse(text), plan(text, choice), "p");
    }

    std::string xOf(const std::string& text, const ColumnChoice& choice = {}) const
    {
        return plan(text, choice).x.label;
    }

    std::vector<std::string> curvesOf(const std::string& text, const ColumnChoice& choice = {}) const
    {
        std::vector<std::string> names;
        for (const TablePlot::Curve& curve : plan(text, choice).curves)
            names.push_back(curve.name);
        return names;
    }

    template <typename Error>
    std::string errorOf(const std::string& text, const ColumnChoice& choice) const
    {
        try {
            plan(text, choice);
        } catch (const Error& error) {
            return error.what();
        }
        return {};
    }

    const std::filesystem::path m_File = "a.csv";
};

TEST_F(TablePlotTest, TakesTheFirstColumnForXIfItGoesOneWayAndHasAName)
{
    EXPECT_EQ(xOf("a,b\n1,5\n1,3\n4,4\n"), "a");
    EXPECT_EQ(xOf("a,b\n9,5\n,2\n7,3\n"), "a");
    EXPECT_EQ(xOf("a,b\n1,5\n4,3\n2,4\n"), "index");
    EXPECT_EQ(xOf("a,b\n1,5\n1,3\n"), "index") << "where nothing changes, it would hide the other";
    EXPECT_EQ(xOf("s,a,b\nx,1,5\ny,2,4\n"), "a") << "text is no column";
}

TEST_F(TablePlotTest, TakesAColumnWithoutANameForXIfItAlwaysGrows)
{
    EXPECT_EQ(plan("0 5\n0.1 3\n0.25 4\n").xColumn, 0u);
    EXPECT_EQ(plan("0 5\n0 3\n1 4\n").xColumn, std::nullopt);
    EXPECT_EQ(plan("3 5\n2 3\n1 4\n").xColumn, std::nullopt);
    EXPECT_EQ(plan("3 5\n").xColumn, std::nullopt);
}

TEST_F(TablePlotTest, TakesTimeStampsForXWhereverTheyStand)
{
    const std::string text = "id,when,p\n1,2024-05-01T12:00:00Z,5\n2,2024-05-01T11:00:00Z,6\n";
    EXPECT_EQ(xOf(text), "when");
    EXPECT_TRUE(plan(text).isTime);
    EXPECT_THAT(curvesOf(text), ElementsAre("id", "p"));
    const TablePlot plot = plan("begin,end,p\n2024-05-01,2024-05-02,5\n");
    EXPECT_THAT(plot.leftOut, ElementsAre(1u)) << "as a curve, it would hide the others";
    EXPECT_EQ(plot.curves.size(), 1u);
}

TEST_F(TablePlotTest, KnowsSecondsSince1970AndTheirFractions)
{
    for (const auto* text : {"time,p\n1714521600,1\n", "timestamp,p\n1714521600000,1\n", "Zeit;p\n1714521600000000;1\n",
             "t,p\n1714521600000000000,1\n", "unix time [s],p\n1714521600.5,1\n", "time [ms],p\n1714521600000,1\n",
             "DateTime,p\n1714521600,1\n,2\n"})
        EXPECT_TRUE(plan(text).isTime) << text;
    for (const auto* text : {"time,p\n0,1\n1714521600,1\n", "f,p\n1714521600,1\n", "1714521600,1\n1714521601,1\n",
             "time [ns],p\n1714521600,1\n", "time,p\n12.5,1\n", "time,p\n1714521600,1\n1714521600000,2\n"})
        EXPECT_FALSE(plan(text).isTime) << text;
    EXPECT_EQ(plan("time [s],p\n1714521600,1\n").x.unit, "") << "dates are shown";
    EXPECT_EQ(plan("time [s],p\n12,1\n").x.unit, "s");
}

TEST_F(TablePlotTest, ShowsOneColumnOverItsIndex)
{
    const PlotExhibit exhibit = plot("time\n1\n2\n3\n");
    EXPECT_EQ(exhibit.x.label, "index");
    EXPECT_EQ(exhibit.y.label, "time");
    EXPECT_THAT(exhibit.xs, IsEmpty());
    ASSERT_EQ(exhibit.curves.size(), 1u);
    EXPECT_THAT(exhibit.curves[0].y, ElementsAre(1, 2, 3));
}

TEST_F(TablePlotTest, KeepsGapsAndLeavesRowsWithoutXOut)
{
    const PlotExhibit exhibit = plot("t,p,T\n1,5,\n,6,7\n3,,8\n");
    EXPECT_THAT(exhibit.xs, ElementsAre(1, 3));
    EXPECT_THAT(exhibit.curves[0].y, ElementsAre(5, IsNan()));
    EXPECT_THAT(exhibit.curves[1].y, ElementsAre(IsNan(), 8));
}

TEST_F(TablePlotTest, PutsAUnitThatAllCurvesHaveOnTheAxis)
{
    const TablePlot shared = plan("t [s],inlet [Pa],outlet (Pa)\n1,2,3\n");
    EXPECT_EQ(shared.x.label, "t");
    EXPECT_EQ(shared.x.unit, "s");
    EXPECT_EQ(shared.y.label, "");
    EXPECT_EQ(shared.y.unit, "Pa");
    EXPECT_EQ(shared.curves[0].name, "inlet");
    const TablePlot one = plan("t,p [Pa]\n1,2\n");
    EXPECT_EQ(one.y.label, "p");
    EXPECT_EQ(one.y.unit, "Pa");
}

TEST_F(TablePlotTest, GivesASecondUnitTheRightAxis)
{
    const TablePlot two = plan("t,p [Pa],T [K],q [Pa]\n1,2,3,4\n");
    EXPECT_EQ(two.y.unit, "Pa");
    EXPECT_EQ(two.y.label, "");
    EXPECT_EQ(two.y2.unit, "K");
    EXPECT_EQ(two.y2.label, "T");
    EXPECT_EQ(two.curves[0].name, "p [Pa]");
    EXPECT_FALSE(two.curves[0].isOnY2 || two.curves[2].isOnY2);
    EXPECT_TRUE(two.curves[1].isOnY2);
    EXPECT_THAT(two.withoutAxis, IsEmpty());
    EXPECT_TRUE(plot("t,p [Pa],T [K]\n1,2,3\n").curves[1].isOnY2);

    const TablePlot three = plan("t,p [Pa],T [K],h [%]\n1,2,3,4\n");
    EXPECT_EQ(three.y.unit, "") << "counts two units";
    EXPECT_EQ(three.y2.unit, "K");
    EXPECT_FALSE(three.curves[2].isOnY2);
    EXPECT_THAT(three.withoutAxis, ElementsAre(3));
}

TEST_F(TablePlotTest, UnitsKeepTheirAxesWhenColumnsGetNumbersLater)
{
    const TablePlot before = plan("t,T [K],p [Pa],q [m]\n1,,2,3\n");
    EXPECT_EQ(before.y.unit, "Pa");
    const TablePlot later = planAgain(m_File, parse("t,T [K],p [Pa],q [m]\n1,7,2,3\n"), {}, before);
    EXPECT_EQ(later.curves.size(), 3u);
    EXPECT_FALSE(later.curves[1].isOnY2);
    EXPECT_TRUE(later.curves[2].isOnY2);
    EXPECT_THAT(later.withoutAxis, ElementsAre(1)) << "T came too late";
}

TEST_F(TablePlotTest, GivesEveryCurveANameOfItsOwn)
{
    EXPECT_THAT(curvesOf("t,p,p,,\n1,2,3,4,5\n"), ElementsAre("p", "p (2)", "column 4", "column 5"));
    EXPECT_THAT(curvesOf("t,\x1B[2J\n1,2\n"), ElementsAre("\\x1b[2J"));
}

TEST_F(TablePlotTest, TakesTheColumnsThatAreAskedFor)
{
    const std::string text = "t,p [Pa],T\n1,5,7\n2,6,8\n";
    EXPECT_EQ(xOf(text, {"T", {}}), "T");
    EXPECT_EQ(xOf(text, {"p [Pa]", {}}), "p");
    EXPECT_EQ(xOf(text, {"P", {}}), "p") << "without unit and case";
    EXPECT_EQ(xOf(text, {"3", {}}), "T");
    EXPECT_EQ(xOf(text, {"0", {}}), "index");
    EXPECT_THAT(curvesOf(text, {"T", {}}), ElementsAre("t", "p [Pa]"));
    EXPECT_THAT(curvesOf(text, {"", {"T", "p", "3"}}), ElementsAre("T", "p [Pa]"));
    EXPECT_EQ(xOf(text, {"", {"T"}}), "t");
    EXPECT_EQ(xOf(text, {"", {"t", "p"}}), "index") << "t is asked for as a curve";
    EXPECT_EQ(xOf("5 6\n4 5\n", {"1", {}}), "column 1");
}

TEST_F(TablePlotTest, NamesTheColumnsThatThereAre)
{
    EXPECT_EQ(errorOf<NoSuchColumn>("t,p,s\n1,5,x\n", {"nosuch", {}}),
        "a.csv: has no column 'nosuch'; its columns are t, p, s");
    EXPECT_EQ(errorOf<NoSuchColumn>("1 2\n", {"", {"3"}}), "a.csv: has no column '3'; its columns are 1, 2");
    EXPECT_EQ(errorOf<NoSuchColumn>("t,p,s\n1,5,x\n", {"s", {}}), "a.csv: column 3 's' has no numbers");
    EXPECT_EQ(errorOf<NoSuchColumn>("1 2 3 4 5 6 7 8 9 10\n", {"x", {}}),
        "a.csv: has no column 'x'; its columns are 1, 2, 3, 4, 5, 6, 7, 8 and 2 more");
}

TEST_F(TablePlotTest, RefusesATableWithNothingButX)
{
    EXPECT_EQ(errorOf<InputError>("t,s\n2024-05-01,x\n", {}),
        "a.csv: has no column of numbers for a curve over column 1 't'");
    EXPECT_EQ(
        errorOf<InputError>("p\n1\n", {"p", {}}), "a.csv: has no column of numbers for a curve over column 1 'p'");
}

} // namespace
} // namespace vireo_view
