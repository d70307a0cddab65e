#pragma once

#include <benchmark/benchmark.h>

namespace vireo_bench {

// Prints comparisons as the rows of a Markdown table, as they stand in docs/performance.md.
class Table : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
};

} // namespace vireo_bench
