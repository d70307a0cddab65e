#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include "benchmarks/peers/pictures.h"
#include "benchmarks/support/PeakMemory.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/View.h"
#include "benchmarks/support/outputOf.h"
#include "benchmarks/works.h"
#include "vireo/context/GLObject.h"

namespace vireo_bench {

namespace {

constexpr double MEBIBYTE = 1024 * 1024;

// A work, and how many bytes whoever has done it must hold, textures and buffers of a driver that keeps them in memory
// among them; what it was given not.
struct Row
{
    Comparison comparison;
    double bytesToHold;
};

std::vector<Row> rows()
{
    constexpr unsigned int MILLION = 1'000'000;
    constexpr std::size_t NUM_OBJECTS = 100'000;
    const tavo::Vector3i& n = head().getExtends();
    const tavo::Vector3f direction = VIEWPOINT_OF_HEAD.eye * (-1 / 500.0f);
    const double stackOfHead = 4.0 * n[0] * n[1] * n[2];
    const double paddedStacksOfHead = 4.0 * 256 * 256 * (n[0] + n[1] + n[2]);
    const double points = 12.0 * MILLION;
    const double curves = 12.0 * NUM_CURVES * NUM_SAMPLES;
    const double image = 4.0 * IMAGE_SIDE * IMAGE_SIDE;
    return {
        {prepareBySliceRenderer("the head's three stacks", head()), 3 * stackOfHead},
        {prepareByTable("the head's three stacks", head()), 3 * stackOfHead},
        {prepareByTex2dRenderer("the head's three stacks", head()), paddedStacksOfHead},
        {drawBySliceRenderer("the head for the first time", head(), Scene::SIZE, direction), stackOfHead},
        {drawByTex2dRenderer("the head for the first time", head(), Scene::SIZE, direction), paddedStacksOfHead},
        {firstPicture("first picture of the head", Subject::HEAD), stackOfHead},
        {changedPicture("picture of the head after a changed transfer function", Subject::HEAD), 0},
        {firstPicture("first picture of the head, as a scene", Subject::VOLUME), 0.5 * stackOfHead},
        {drawPoints("1,000,000 points", [] { return randomPoints(MILLION); }), 0},
        {firstPicture("first picture of 1,000,000 points", Subject::POINTS), points},
        {drawPoints("the scanned building", scannedPoints), 0},
        {showCurves(NUM_CURVES, NUM_SAMPLES), curves},
        {firstPicture("picture of 10 curves of 100,000 samples, sent to painted", Subject::CURVES), curves},
        {uploadImage(IMAGE_SIDE), image},
        {firstPicture("first picture of a 4096 x 4096 image, red and blue exchanged", Subject::IMAGE), image},
        {takeRenderTexture(1), 0},
        {takeRenderTexture(1'000), 0},
        {recordVertices(MILLION), 36.0 * MILLION},
        {executeList(MILLION), 0},
        {drawSoftwareArrays(MILLION), 0},
        {drawVertexBuffer(MILLION), 0},
        {createAndDestroyObjects(NUM_OBJECTS), static_cast<double>(NUM_OBJECTS * sizeof(tavo::GLObject))},
        {deleteQueuedNames(NUM_OBJECTS), 0},
        {convertVertices(MILLION), 24.0 * MILLION},
    };
}

// Does the work in this process, which has done nothing else, and tells by how many bytes the process grew at most.
void measure(const Entry& entry)
{
    View::context();
    const std::unique_ptr<Contestant> contestant = entry.make();
    contestant->prepare();
    const PeakMemory peak;
    contestant->run();
    std::printf("%.0f\n", peak.bytes());
}

// Runs this program for one row and entry alone.
double peakOf(std::size_t row, std::size_t entry)
{
    const QByteArray output =
        outputOf(QCoreApplication::applicationFilePath(), {QString::number(row), QString::number(entry)});
    bool isNumber = false;
    const double bytes = output.split('\n').first().toDouble(&isNumber);
    if (!isNumber)
        throw std::runtime_error("no number of bytes: " + output.toStdString());
    return bytes;
}

// The median of several processes, and half the distance between the least and the most, in mebibytes.
std::string growthOf(std::size_t row, std::size_t entry)
{
    std::array<double, 5> peaks{};
    for (double& peak : peaks)
        peak = peakOf(row, entry) / MEBIBYTE;
    std::sort(peaks.begin(), peaks.end());
    char text[64];
    std::snprintf(text, sizeof text, "%.1f ± %.1f MiB", peaks[2], (peaks.back() - peaks.front()) / 2);
    return text;
}

void printTable(const std::vector<Row>& rows)
{
    std::printf("| work | must hold | who | grew by, at most |\n|---|---|---|---|\n");
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const Comparison& comparison = rows[row].comparison;
        std::printf("| %s | %.1f MiB ", comparison.work.c_str(), rows[row].bytesToHold / MEBIBYTE);
        for (std::size_t entry = 0; entry < comparison.entries.size(); ++entry) {
            std::printf("%s| %s | %s |\n", entry == 0 ? "" : "| | ", comparison.entries[entry].name.c_str(),
                growthOf(row, entry).c_str());
            std::fflush(stdout);
        }
    }
}

} // namespace

} // namespace vireo_bench

// Alone, prints the table; with the numbers of a row and of who does it, measures that.
int main(int argc, char** argv)
{
    using namespace vireo_bench;
    const Program program(argc, argv);
    const std::vector<Row> all = rows();
    if (argc == 3)
        measure(all.at(std::stoul(argv[1])).comparison.entries.at(std::stoul(argv[2])));
    else
        printTable(all);
    return 0;
}
