// vireo-bench-volumes [MOST]
//
// What a view of 1024 x 768 pixels takes to show volumes of 64 samples a side and more, each of twice as many as the
// one before, up to MOST, 512 if nobody says. Each volume has a process of its own.
#include <QApplication>
#include <cstdio>

#include "benchmarks/scenes/headVolume.h"
#include "benchmarks/scenes/seenView.h"
#include "benchmarks/support/PeakMemory.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/Table.h"
#include "benchmarks/support/outputOf.h"
#include "benchmarks/works.h"
#include "vireo/show/scenes/Stopwatch.h"
#include "vireo/show/volumes/VolumeSlices.h"

namespace vireo_bench {

namespace {

constexpr double MEBIBYTE = 1024 * 1024;

// So that what exists once is there.
void warmUp(tavo::SceneView& view)
{
    show(view);
    send(view, headVolumeInCube(16));
    untilItRests(view);
}

void measureView(int side)
{
    tavo::ItemUpdate item = headVolumeInCube(side);
    tavo::SceneView view("scene");
    warmUp(view);
    view.getCamera() = cameraOfHead();
    const PeakMemory peak;
    const tavo::Stopwatch sinceSent;
    send(view, std::move(item));
    view.repaint();
    const double firstSeconds = sinceSent.seconds();
    const double longest = untilItRests(view);
    std::printf("%g %g %g %g\n", firstSeconds, sinceSent.seconds(), longest, peak.bytes());
}

// The same volume's textures alone, by the renderer that has a transfer function called for each sample.
void measureRenderer(int side)
{
    const std::unique_ptr<Contestant> renderer = stackBySliceRenderer(headInCube(side), VIEW_OF_HEAD);
    renderer->prepare();
    const PeakMemory peak;
    const tavo::Stopwatch watch;
    renderer->run();
    std::printf("%g %g\n", watch.seconds(), peak.bytes());
}

// Textures of two bytes a sample, and of four where there are fewer samples at first.
double bytesToHold(int side)
{
    double coarse = side;
    const auto cube = [](double edge) { return edge * edge * edge; };
    while (cube(coarse) > tavo::VolumeSlices::COARSE)
        coarse /= 2;
    return 2 * cube(side) + (coarse < side ? 4 * cube(coarse) : 0);
}

void printTable(int most)
{
    std::printf("| samples | sent to first picture | until it is whole | longest wait meanwhile | "
                "textures | grew by, at most | SliceVolumeRenderer's textures | grew by |\n"
                "|---|---|---|---|---|---|---|---|\n");
    for (int side = 64; side <= most; side *= 2) {
        const std::vector<double> view = numbersOf("view", side);
        const std::vector<double> renderer = numbersOf("renderer", side);
        std::printf("| %d x %d x %d | %s | %s | %s | %.1f MiB | %.1f MiB | %s | %.1f MiB |\n", side, side, side,
            withUnit(view.at(0)).c_str(), withUnit(view.at(1)).c_str(), withUnit(view.at(2)).c_str(),
            bytesToHold(side) / MEBIBYTE, view.at(3) / MEBIBYTE, withUnit(renderer.at(0)).c_str(),
            renderer.at(1) / MEBIBYTE);
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
        measureView(std::stoi(argv[2]));
    else if (who == "renderer")
        measureRenderer(std::stoi(argv[2]));
    else
        printTable(argc == 2 ? std::stoi(argv[1]) : 512);
    return 0;
}
