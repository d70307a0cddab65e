#include "apps/vireo-view/showPlot.h"

#include <cmath>
#include <gmock/gmock.h>
#include <iterator>

#include "tests/apps/vireo-view/FilesTest.h"
#include "vireo/show/show.h"

namespace vireo_view {
namespace {

class ShowPlotTest : public FilesTest
{
protected:
    ~ShowPlotTest() override { tavo::clear(); }

    // What the plot says that it shows.
    std::string dataOf(const std::string& name) const
    {
        const std::filesystem::path file = directory() / "data.csv";
        EXPECT_TRUE(tavo::saveData(name, file.string()));
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const PlotExhibit m_Exhibit{
        "a.csv", {"t", "s"}, {"", "Pa"}, false, {0.1, 1e308}, {{"p", {101325.0625, std::nan("")}}, {"q", {1, -2}}}, {}};
};

TEST_F(ShowPlotTest, ShowsAllCurvesOverOneXWithEveryDigit)
{
    showPlot(m_Exhibit);
    EXPECT_EQ(dataOf("a.csv"), "\"p x\",\"p\",\"q x\",\"q\"\n0.1,101325.0625,0.1,1\n1e+308,nan,1e+308,-2\n");
}

TEST_F(ShowPlotTest, CountsTheValuesWhereThereIsNoX)
{
    showPlot({"a.csv", {"index", ""}, {"p", ""}, false, {}, {{"p", {5, 7}}}, {}});
    EXPECT_EQ(dataOf("a.csv"), "\"p x\",\"p\"\n0,5\n1,7\n");
}

TEST_F(ShowPlotTest, CountsASecondUnitAtTheRight)
{
    PlotExhibit exhibit = m_Exhibit;
    exhibit.curves[1].isOnY2 = true;
    exhibit.y2 = {"flow", "kg/s"};
    showPlot(exhibit);
    const std::filesystem::path file = directory() / "two.svg";
    EXPECT_TRUE(tavo::savePicture("a.csv", file.string()));
    std::ifstream stream(file, std::ios::binary);
    const std::string svg{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_THAT(svg, testing::HasSubstr("flow [kg/s]"));
}

TEST_F(ShowPlotTest, HasItsCurvesInTheOrderOfTheExhibit)
{
    PlotExhibit exhibit = m_Exhibit;
    exhibit.curves[1].isOnY2 = true;
    const std::string rows = "\"p x\",\"p\",\"q x\",\"q\"\n0.1,101325.0625,0.1,1\n1e+308,nan,1e+308,-2\n";
    showPlot(exhibit);
    EXPECT_EQ(dataOf("a.csv"), rows);
    tavo::clear();
    appendToPlot(exhibit);
    EXPECT_EQ(dataOf("a.csv"), rows);
}

TEST_F(ShowPlotTest, AppendsToTheCurvesThatThereAre)
{
    appendToPlot(m_Exhibit);
    appendToPlot({"a.csv", {"t", "s"}, {"", "Pa"}, false, {1.5e308}, {{"q", {3}}}, {}});
    EXPECT_EQ(
        dataOf("a.csv"), "\"p x\",\"p\",\"q x\",\"q\"\n0.1,101325.0625,0.1,1\n1e+308,nan,1e+308,-2\n,,1.5e+308,3\n");
}

} // namespace
} // namespace vireo_view
