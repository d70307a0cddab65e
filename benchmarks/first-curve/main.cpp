#include <QCoreApplication>
#include <QDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "benchmarks/support/outputOf.h"

namespace {

struct Program
{
    const char* name;
    QString file;
    std::vector<double> milliseconds{};
};

// From before the program is started to when it says that it has painted.
double millisecondsOf(const QString& file)
{
    using std::chrono::nanoseconds;
    const nanoseconds start = std::chrono::steady_clock::now().time_since_epoch();
    const nanoseconds painted(vireo_bench::outputOf(file).trimmed().toLongLong());
    return std::chrono::duration<double, std::milli>(painted - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

// Runs the programs of this folder that were built, by turns, and prints a table. Takes the number of rounds.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int numRounds = argc == 2 ? std::atoi(argv[1]) : 20;
    const QDir folder(QCoreApplication::applicationDirPath());
    std::vector<Program> programs = {
        {"vireo", folder.filePath("vireo-bench-first-curve-vireo")},
        {"a bare QGLWidget", folder.filePath("vireo-bench-first-curve-bare")},
        {"QCustomPlot", folder.filePath("vireo-bench-first-curve-qcustomplot")},
    };
    std::erase_if(programs, [](const Program& program) { return !QFile::exists(program.file); });
    for (int round = 0; round < numRounds; ++round)
        for (Program& program : programs)
            program.milliseconds.push_back(millisecondsOf(program.file));

    std::printf("| program | from its start to the first painted curve |\n|---|---|\n");
    for (const Program& program : programs)
        std::printf("| %s | %.0f ms |\n", program.name, median(program.milliseconds));
    return 0;
}
