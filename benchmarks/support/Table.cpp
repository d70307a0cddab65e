#include "benchmarks/support/Table.h"

#include <cstdio>
#include <fstream>
#include <string>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"

#include <GL/gl.h>

namespace vireo_bench {

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

namespace {

bool misses(const Measurement& first, const Measurement& own, const Entry& entry)
{
    const bool isLate = !entry.secondsMore || first.seconds - own.seconds > *entry.secondsMore;
    return entry.ratioToReach && own.ratio > *entry.ratioToReach && isLate;
}

std::string ratioOf(const Measurement& first, const Measurement& own, const Entry& entry)
{
    char text[64];
    const int digits = own.ratio < 0.1 ? 4 : 2;
    std::snprintf(text, sizeof text, "%.*f ± %.*f", digits, own.ratio, digits, own.spread);
    return misses(first, own, entry) ? "**" + std::string(text) + "**" : text;
}

std::string ratioToReach(const Entry& entry)
{
    if (!entry.ratioToReach)
        return "";
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", *entry.ratioToReach);
    return entry.secondsMore ? text + (", or " + withUnit(*entry.secondsMore) + " more") : text;
}

std::string nameOfProcessor()
{
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.starts_with("model name"))
            return line.substr(line.find(':') + 2);
    return "unknown processor";
}

const char* stringOf(GLenum name)
{
    return reinterpret_cast<const char*>(glGetString(name));
}

void printRows(const Comparison& comparison, const std::vector<Measurement>& measurements)
{
    for (std::size_t i = 1; i < comparison.entries.size(); ++i) {
        const Entry& entry = comparison.entries[i];
        const bool isFirstRow = i == 1;
        std::printf("| %s | %s | %s: %s | %s | %s | %s |\n", isFirstRow ? comparison.work.c_str() : "",
            isFirstRow ? withUnit(measurements[0].seconds).c_str() : "", entry.name.c_str(),
            withUnit(measurements[i].seconds).c_str(), ratioOf(measurements[0], measurements[i], entry).c_str(),
            ratioToReach(entry).c_str(), withCommas(measurements[i].numRounds).c_str());
    }
}

} // namespace

void Reporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.error_occurred) {
            std::fprintf(stderr, "%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            m_HasErrors = true;
        } else {
            report(run);
        }
    }
}

bool Table::ReportContext(const Context& context)
{
    View::context();
    std::printf("%s, %d cores; %s, OpenGL %s\n\n", nameOfProcessor().c_str(), context.cpu_info.num_cpus,
        stringOf(GL_RENDERER), stringOf(GL_VERSION));
    std::printf("| work | vireo | against | ratio | at most | rounds |\n|---|---|---|---|---|---|\n");
    std::fflush(stdout);
    return true;
}

void Table::report(const Run& run)
{
    printRows(comparisonOf(run.run_name.function_name), measurementsOf(run.run_name.function_name));
    std::fflush(stdout);
}

} // namespace vireo_bench
