#include <QCoreApplication>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "benchmarks/peers/pictures.h"
#include "benchmarks/support/Program.h"
#include "benchmarks/support/View.h"
#include "benchmarks/support/outputOf.h"
#include "benchmarks/works.h"
#include "vireo/context/GLObject.h"

namespace vireo_bench {

namespace {

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
    const tavo::StaticVector<int, 3>& n = head().getExtends();
    const double stackOfHead = 4.0 * n[0] * n[1] * n[2];
    const double paddedStacksOfHead = 4.0 * 256 * 256 * (n[0] + n[1] + n[2]);
    const double points = 12.0 * MILLION;
    const double curves = 12.0 * NUM_CURVES * NUM_SAMPLES;
    const double image = 4.0 * IMAGE_SIDE * IMAGE_SIDE;
    return {
        {prepareBySliceRenderer("the head's three stacks", head()), 3 * stackOfHead},
        {prepareByTex2dRenderer("the head's three stacks", head()), paddedStacksOfHead},
        {drawVolume("the head for the first time", head(), Scene::SIZE, VIEWPOINT_OF_HEAD.eye * (-1 / 500.0f)),
            stackOfHead},
        {firstPicture("first picture of the head", Subject::HEAD), stackOfHead},
        {changedPicture("picture of the head after a changed transfer function"), 0},
        {drawPoints("1,000,000 points", [] { return randomPoints(MILLION); }), 0},
        {firstPicture("first picture of 1,000,000 points", Subject::POINTS), points},
        {showCurves(NUM_CURVES, NUM_SAMPLES), curves},
        {firstPicture("picture of 10 curves of 100,000 samples, sent to painted", Subject::CURVES), curves},
        {uploadImage(IMAGE_SIDE), image},
        {firstPicture("first picture of a 4096 x 4096 image, red and blue exchanged", Subject::IMAGE), image},
        {recordVertices(MILLION), 36.0 * MILLION},
        {convertVertices(MILLION), 24.0 * MILLION},
        {createAndDestroyObjects(NUM_OBJECTS), static_cast<double>(NUM_OBJECTS * sizeof(tavo::GLObject))},
    };
}

// A line of /proc/self/status, in bytes.
double statusOf(const std::string& key)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(key + ":"))
            return std::stod(line.substr(key.size() + 1)) * 1024;
    return 0;
}

// Does the work in this process, which has done nothing else, and tells by how many bytes the process grew at most.
void measure(const Entry& entry)
{
    View::context();
    const std::unique_ptr<Contestant> contestant = entry.make();
    contestant->prepare();
    if (!(std::ofstream("/proc/self/clear_refs") << 5 << std::flush)) // forgets the peak until now
        throw std::runtime_error("this system does not let a process forget its peak");
    const double before = statusOf("VmRSS");
    contestant->run();
    std::printf("%.0f\n", statusOf("VmHWM") - before);
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

void printTable(const std::vector<Row>& rows)
{
    constexpr double MEBIBYTE = 1024 * 1024;
    std::printf("| work | must hold | who | grew by, at most |\n|---|---|---|---|\n");
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const Comparison& comparison = rows[row].comparison;
        std::printf("| %s | %.1f MiB ", comparison.work.c_str(), rows[row].bytesToHold / MEBIBYTE);
        for (std::size_t entry = 0; entry < comparison.entries.size(); ++entry) {
            const double peak = peakOf(row, entry) / MEBIBYTE;
            std::printf(
                "%s| %s | %.1f MiB |\n", entry == 0 ? "" : "| | ", comparison.entries[entry].name.c_str(), peak);
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
