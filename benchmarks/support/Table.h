#pragma once

#include <benchmark/benchmark.h>
#include <string>
#include <vector>

namespace vireo_bench {

// Three digits that count, in the unit that fits.
std::string withUnit(double seconds);

// Says on the standard error stream what went wrong in a run.
class Reporter : public benchmark::BenchmarkReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    bool hasErrors() const { return m_HasErrors; }

protected:
    // A run without an error.
    virtual void report(const Run&) {}

private:
    bool m_HasErrors = false;
};

// Prints comparisons as the rows of a Markdown table, as they stand in docs/figures.md, under the names of the
// machine and the driver.
class Table : public Reporter
{
public:
    bool ReportContext(const Context& context) override;

protected:
    void report(const Run& run) override;
};

} // namespace vireo_bench
