#pragma once

#include <QApplication>

namespace vireo_bench {

class Reporter;

// What the programs of benchmarks have in common: prepares Qt and the library, then runs the comparisons that were
// added and that Google Benchmark's arguments ask for.
class Program
{
public:
    // As main has them.
    Program(int& argc, char** argv);

    // Returns the exit status, 1 if a run had an error. The results are printed as a table, or go to another reporter.
    int run();
    int run(Reporter& reporter);

private:
    QApplication m_Application;
    int& m_Argc;
    char** m_Argv;
};

} // namespace vireo_bench
