#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>

#include "benchmarks/plots/PlotWorks.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/Table.h"
#include "benchmarks/works.h"

namespace vireo_bench {

namespace {

constexpr unsigned int NUM_STEPS = 5;

// A work that is done in sizes up to one, each so many times the size before.
struct Growth
{
    std::string work;
    std::size_t largest;
    std::function<Comparison(std::size_t size)> make;

    std::size_t factor = 2;

    std::size_t size(unsigned int step) const
    {
        std::size_t size = largest;
        for (; step < NUM_STEPS; ++step)
            size /= factor;
        return size;
    }
};

// The head in a cube of about so many samples.
tavo::RegularVolume& cubeOf(std::size_t numSamples)
{
    return headInCube(static_cast<int>(std::lround(std::cbrt(numSamples))));
}

unsigned int sideOfImage(std::size_t numPixels)
{
    return static_cast<unsigned int>(std::lround(std::sqrt(numPixels)));
}

std::vector<Growth> growths()
{
    constexpr std::size_t MOST_SAMPLES = 8'365'427; // 203 a side
    constexpr std::size_t NUM_CURVES = 10;
    constexpr std::size_t FEWEST_PLOTTED = 1'000;
    constexpr std::size_t MOST_PLOTTED = 100'000'000;
    const auto samples = [](std::size_t n) { return withCommas(n) + " samples"; };
    return {
        {"prepare a volume's stacks, by samples", MOST_SAMPLES,
            [samples](std::size_t n) { return prepareBySliceRenderer(samples(n), cubeOf(n)); }},
        {"prepare with a table, by samples", MOST_SAMPLES,
            [samples](std::size_t n) { return prepareByTable(samples(n), cubeOf(n)); }},
        {"prepare by Tex2dVolumeRenderer, by samples", MOST_SAMPLES,
            [samples](std::size_t n) { return prepareByTex2dRenderer(samples(n), cubeOf(n)); }},
        {"draw a volume, by samples", MOST_SAMPLES,
            [samples](std::size_t n) {
                return drawBySliceRenderer(samples(n), cubeOf(n), 512, {0, 1, 0});
            }},
        {"draw by Tex2dVolumeRenderer, by samples", MOST_SAMPLES,
            [samples](std::size_t n) {
                return drawByTex2dRenderer(samples(n), cubeOf(n), 512, {0, 1, 0});
            }},
        {"draw points, by points", 2'000'000,
            [](std::size_t n) {
                const auto count = static_cast<unsigned int>(n);
                return drawPoints(withCommas(n) + " points", [count] { return randomPoints(count); });
            }},
        {"show 10 curves, by samples", 2'000'000, [](std::size_t n) { return showCurves(NUM_CURVES, n / NUM_CURVES); }},
        {"first picture of a plot, by samples", MOST_PLOTTED,
            [samples](std::size_t n) {
                return Comparison{"first picture of " + samples(n), {showingCurves(1, n), copyingSamples(n, {})}};
            },
            10},
        {"move and zoom along a plot, by samples", MOST_PLOTTED,
            [samples](std::size_t n) {
                Entry floor = movingAlong(FEWEST_PLOTTED);
                floor.agrees = anyResult;
                return Comparison{"move and zoom along " + samples(n), {movingAlong(n), std::move(floor)}};
            },
            10},
        {"image into a texture, by pixels", 16'777'216, [](std::size_t n) { return uploadImage(sideOfImage(n)); }},
        {"render texture from the cache, by free ones before it", 4096, takeRenderTexture},
        {"record and compile, by vertices", 2'000'000, recordVertices},
        {"execute a list, by vertices", 2'000'000, executeList},
        {"draw software vertex arrays, by vertices", 2'000'000, drawSoftwareArrays},
        {"draw a vertex buffer, by vertices", 2'000'000, drawVertexBuffer},
        {"convert between layouts, by vertices", 2'000'000, convertVertices},
        {"create and destroy objects, by objects", 320'000, createAndDestroyObjects},
        {"delete queued names, by names", 320'000, deleteQueuedNames},
    };
}

// Says nothing but what went wrong.
class Quiet : public Reporter
{
public:
    bool ReportContext(const Context&) override { return true; }
};

// The works of a growth, as they were added, in the order of their sizes.
using Works = std::vector<std::string>;

// Google Benchmark may have been told to leave some out.
bool wasMeasured(const Works& works)
{
    return std::none_of(
        works.begin(), works.end(), [](const std::string& work) { return measurementsOf(work).empty(); });
}

double secondsOf(const Works& works, unsigned int step, std::size_t entry)
{
    return measurementsOf(works[step]).at(entry).seconds;
}

// By what the time is multiplied with each doubling, on the average.
double factorOf(const Growth& growth, const Works& works, std::size_t entry)
{
    const double numDoublings = NUM_STEPS * std::log2(growth.factor);
    return std::pow(secondsOf(works, NUM_STEPS, entry) / secondsOf(works, 0, entry), 1 / numDoublings);
}

void printRow(const Growth& growth, const Works& works)
{
    std::printf("| %s | %s to %s | %s to %s | %.2f | %.2f |\n", growth.work.c_str(), withCommas(growth.size(0)).c_str(),
        withCommas(growth.largest).c_str(), withUnit(secondsOf(works, 0, 0)).c_str(),
        withUnit(secondsOf(works, NUM_STEPS, 0)).c_str(), factorOf(growth, works, 0), factorOf(growth, works, 1));
}

// A block for gnuplot: the name, then sizes and seconds of vireo and of the floor.
void writeData(std::FILE* file, const Growth& growth, const Works& works)
{
    std::fprintf(file, "# %s\n", growth.work.c_str());
    for (unsigned int i = 0; i <= NUM_STEPS; ++i)
        std::fprintf(file, "%zu %g %g\n", growth.size(i), secondsOf(works, i, 0), secondsOf(works, i, 1));
    std::fprintf(file, "\n\n");
}

} // namespace

} // namespace vireo_bench

// The first argument names the file that the figures for scripts/plot-growth go to; the others are Google Benchmark's.
int main(int argc, char** argv)
{
    using namespace vireo_bench;
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE [ARGUMENTS OF GOOGLE BENCHMARK]\n", argv[0]);
        return 2;
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> data(std::fopen(argv[1], "w"), std::fclose);
    if (!data) {
        std::perror(argv[1]);
        return 1;
    }
    std::swap(argv[0], argv[1]);
    int numOthers = argc - 1;
    Program program(numOthers, argv + 1);

    const std::vector<Growth> all = growths();
    std::vector<Works> worksOfAll(all.size());
    for (std::size_t i = 0; i < all.size(); ++i)
        for (unsigned int step = 0; step <= NUM_STEPS; ++step) {
            Comparison comparison = all[i].make(all[i].size(step));
            worksOfAll[i].push_back(comparison.work);
            add(std::move(comparison));
        }
    Quiet quiet;
    if (const int status = program.run(quiet))
        return status;
    std::printf("| work | size | vireo | vireo, each doubling | floor, each doubling |\n|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!wasMeasured(worksOfAll[i]))
            continue;
        printRow(all[i], worksOfAll[i]);
        writeData(data.get(), all[i], worksOfAll[i]);
    }
    return 0;
}
