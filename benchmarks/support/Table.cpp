#include "benchmarks/support/Table.h"

#include <cstdio>

#include "benchmarks/support/Comparison.h"

namespace vireo_bench {

namespace {

// Three digits that count, in the unit that fits.
std::string withUnit(double seconds)
{
    const char* unit = "s";
    for (const char* smaller : {"ms", "µs", "ns"}) {
        if (seconds >= 1)
            break;
        seconds *= 1000;
        unit = smaller;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s", seconds < 10 ? 2 : seconds < 100 ? 1 : 0, seconds, unit);
    return text;
}

std::string ratioOf(const Measurement& measurement, const Entry& entry)
{
    char text[64];
    const int digits = measurement.ratio < 0.1 ? 4 : 2;
    std::snprintf(text, sizeof text, "%.*f ± %.*f", digits, measurement.ratio, digits, measurement.spread);
    const bool misses = entry.ratioToReach && measurement.ratio > *entry.ratioToReach;
    return misses ? "**" + std::string(text) + "**" : text;
}

std::string ratioToReach(const Entry& entry)
{
    if (!entry.ratioToReach)
        return "";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", *entry.ratioToReach);
    return text;
}

void printRows(const Comparison& comparison, const std::vector<Measurement>& measurements)
{
    for (std::size_t i = 1; i < comparison.entries.size(); ++i) {
        const Entry& entry = comparison.entries[i];
        const bool isFirstRow = i == 1;
        std::printf("| %s | %s | %s: %s | %s | %s |\n", isFirstRow ? comparison.work.c_str() : "",
            isFirstRow ? withUnit(measurements[0].seconds).c_str() : "", entry.name.c_str(),
            withUnit(measurements[i].seconds).c_str(), ratioOf(measurements[i], entry).c_str(),
            ratioToReach(entry).c_str());
    }
}

} // namespace

bool Table::ReportContext(const Context&)
{
    std::printf("| work | vireo | against | ratio | at most |\n|---|---|---|---|---|\n");
    std::fflush(stdout);
    return true;
}

void Table::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.error_occurred)
            std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
        else
            printRows(comparisonOf(run.run_name.function_name), measurementsOf(run.run_name.function_name));
    }
    std::fflush(stdout);
}

} // namespace vireo_bench
