// Plots beside QCustomPlot, beside bare Qwt, and beside what the work cannot do without.
#include <utility>

#include "benchmarks/plots/PlotWorks.h"
#include "benchmarks/support/Program.h"

namespace vireo_bench {

namespace {

void addShowing(
    std::size_t numCurves, std::size_t numSamples, double ratioToPeer, std::optional<double> ratioToAll = {})
{
    const std::string curves = numCurves == 1 ? "a smooth line" : std::to_string(numCurves) + " curves";
    Comparison comparison{"plot " + curves + " of " + withCommas(numSamples) + " samples, sent to painted",
        {showingCurves(numCurves, numSamples)}};
    for (Entry& peer : qCustomPlots(numCurves, numSamples, ratioToPeer))
        comparison.entries.push_back(std::move(peer));
    comparison.entries.push_back(bareQwt(numCurves, numSamples));
    if (ratioToAll)
        comparison.entries.push_back(drawingAll(numCurves, numSamples, ratioToAll));
    add(std::move(comparison));
}

void addShowingWithOwnX(std::size_t numCurves, std::size_t numSamples)
{
    Entry oneX = showingAgainOver(1, numCurves, numSamples);
    oneX.name = "all over one x";
    oneX.ratioToReach = 1.3;
    oneX.agrees = anyResult;
    add({"plot " + std::to_string(numCurves) + " curves of " + withCommas(numSamples) +
             " samples, each over an x of its own, sent to painted",
        {showingAgainOver(numCurves, numCurves, numSamples), std::move(oneX)}});
}

void addPaintingAgain(std::size_t numSamples)
{
    Comparison comparison{
        "paint a smooth line of " + withCommas(numSamples) + " samples again", {paintingAgain(numSamples)}};
    for (Entry& peer : qCustomPlotAgain(numSamples, 0.6))
        comparison.entries.push_back(std::move(peer));
    add(std::move(comparison));
}

void addMovingAlong()
{
    constexpr double MILLISECOND = 1e-3;
    Entry few = movingAlong(10'000);
    few.name = "10,000 samples";
    few.ratioToReach = 2.5;
    few.secondsMore = MILLISECOND;
    few.agrees = anyResult;
    add({"move and zoom along 10,000,000 samples, a frame", {movingAlong(10'000'000), std::move(few)}});
    add({"move and zoom along 1,000,000 samples, a frame", {movingAlong(1'000'000), bareQwtMovingAlong(1'000'000)}});
}

void addFirstPictures()
{
    for (const std::size_t count : {1'000u, 100'000u, 1'000'000u, 10'000'000u}) {
        const auto ratio = count == 10'000'000 ? std::optional(3.0) : std::nullopt;
        add({"first picture of " + withCommas(count) + " samples",
            {showingCurves(1, count), copyingSamples(count, ratio)}});
    }
}

} // namespace

} // namespace vireo_bench

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addShowing(10, 100'000, 0.7, 0.15);
    addShowingWithOwnX(10, 100'000);
    addShowing(1, 1'000, 0.6);
    addPaintingAgain(1'000);
    addMovingAlong();
    addFirstPictures();
    return program.run();
}
