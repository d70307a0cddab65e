// vireo-bench-clouds [MOST]
//
// What a view of 1024 x 768 pixels holds of clouds from 10,000 points on, each of ten times as many as the one before,
// up to MOST, 10,000,000 if nobody says. Each cloud has a process of its own.
#include <QApplication>
#include <algorithm>
#include <cstdio>

#include "benchmarks/scenes/BareCloud.h"
#include "benchmarks/scenes/clouds.h"
#include "benchmarks/scenes/seenView.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/Table.h"
#include "benchmarks/support/bytesInUse.h"
#include "benchmarks/support/outputOf.h"
#include "vireo/show/scenes/Stopwatch.h"

namespace vireo_bench {

namespace {

constexpr double BYTES_OF_POINT = 16; // that are sent: three coordinates and a scalar

// Frames of one gesture.
std::vector<double> turn(tavo::SceneView& view, int numFrames)
{
    std::vector<double> seconds;
    for (int i = 0; i < numFrames; ++i) {
        const tavo::Stopwatch watch;
        view.getCamera().turn(2, 0, view.getCamera().getPivot());
        view.showChoice();
        view.repaint();
        seconds.push_back(watch.seconds());
    }
    return seconds;
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// So that all is there that exists once, and what the driver keeps of drawing so many points.
void warmUp(tavo::SceneView& view, std::size_t number)
{
    show(view);
    for (const std::size_t sent : {number, std::size_t(1000)}) {
        send(view, colouredCloudOf(sent));
        untilItRests(view);
        turn(view, 2);
        untilItRests(view);
    }
}

void measureView(std::size_t number)
{
    tavo::SceneView view("scene");
    warmUp(view, number);
    const double before = bytesInUse();
    tavo::ItemUpdate item = colouredCloudOf(number);
    const tavo::Stopwatch sinceSent;
    send(view, std::move(item));
    view.repaint();
    const double firstSeconds = sinceSent.seconds();
    untilItRests(view);
    const double held = bytesInUse() - before;
    for (int gesture = 0; gesture < 5; ++gesture) {
        turn(view, 10);
        untilItRests(view);
    }
    const std::vector<double> frames = turn(view, 20);
    const double share = 100.0 * static_cast<double>(view.getPointMotion().numPhases()) / tavo::PointPhases::ALL;
    const double longest = untilItRests(view);
    std::printf("%g %g %g %g %g\n", firstSeconds, medianOf(frames), share, longest, held);
}

// What the driver and the application have of it in any case.
void measureBare(std::size_t number)
{
    tavo::SceneView view("scene");
    warmUp(view, number);
    BareCloud cloud;
    const double before = bytesInUse();
    cloud.upload(hills(number));
    cloud.forgetPoints();
    std::printf("%g\n", bytesInUse() - before);
}

void printTable(std::size_t most)
{
    std::printf("| points | sent to first picture | frame while turning | share of the points | longest wait at rest | "
                "memory beyond the driver's, by what was sent |\n|---|---|---|---|---|---|\n");
    for (std::size_t number = 10'000; number <= most; number *= 10) {
        const std::vector<double> view = numbersOf("view", number);
        const double driver = numbersOf("bare", number).at(0) + 4.0 * static_cast<double>(number); // and its colours
        const double held = (view.at(4) - driver) / (BYTES_OF_POINT * static_cast<double>(number));
        std::printf("| %s | %s | %s | %.1f %% | %s | %.2f |\n", withCommas(number).c_str(),
            withUnit(view.at(0)).c_str(), withUnit(view.at(1)).c_str(), view.at(2), withUnit(view.at(3)).c_str(), held);
        std::fflush(stdout);
    }
}

} // namespace

} // namespace vireo_bench

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    const Program program(argc, argv);
    const std::string who = argc == 3 ? argv[1] : "";
    if (who == "view")
        measureView(std::stoul(argv[2]));
    else if (who == "bare")
        measureBare(std::stoul(argv[2]));
    else
        printTable(argc == 2 ? std::stoul(argv[1]) : 10'000'000);
    return 0;
}
