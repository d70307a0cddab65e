#pragma once

#include <QApplication>

namespace benchmark {
class BenchmarkReporter;
}

namespace vireo_bench {

// What the programs of benchmarks have in common: prepares Qt and the library, then runs the comparisons that were
// added and that Google Benchmark's arguments ask for.
class Program
{
public:
    // As main has them.
    Program(int& argc, char** argv);

    // Returns the exit status. The results are printed as a table, or go to another reporter.
    int run();
    int run(benchmark::BenchmarkReporter& reporter);

private:
    QApplication m_Application;
    int& m_Argc;
    char** m_Argv;
};

} // namespace vireo_bench
