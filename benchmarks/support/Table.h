#pragma once

#include <benchmark/benchmark.h>
#include <string>

namespace vireo_bench {

// Three digits that count, in the unit that fits.
std::string withUnit(double seconds);

// Prints comparisons as the rows of a Markdown table, as they stand in docs/performance.md, under the names of the
// machine and the driver.
class Table : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
};

} // namespace vireo_bench
