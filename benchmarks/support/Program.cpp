#include "benchmarks/support/Program.h"

#include <benchmark/benchmark.h>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Table.h"
#include "vireo/context/Library.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace vireo_bench {

Program::Program(int& argc, char** argv)
    : m_Application(argc, argv)
    , m_Argc(argc)
    , m_Argv(argv)
{
    tavo::initVireo();
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());
}

int Program::run()
{
    Table table;
    return run(table);
}

int Program::run(Reporter& reporter)
{
    benchmark::Initialize(&m_Argc, m_Argv);
    if (benchmark::ReportUnrecognizedArguments(m_Argc, m_Argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    dismissContestants();
    benchmark::Shutdown();
    return reporter.hasErrors() ? 1 : 0;
}

} // namespace vireo_bench
