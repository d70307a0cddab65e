#include "benchmarks/support/Program.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <clocale>
#include <cstdlib>
#include <string_view>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Table.h"
#include "vireo/Library.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace vireo_bench {

namespace {

// The comparisons last as long as Google Benchmark is told that its runs should.
void takeTimeOf(int argc, char** argv)
{
    constexpr std::string_view OPTION = "--benchmark_min_time=";
    for (int i = 1; i < argc; ++i)
        if (std::string_view(argv[i]).starts_with(OPTION))
            setSecondsOfComparison(std::strtod(argv[i] + OPTION.size(), nullptr));
}

// Google Benchmark knows nothing of it.
void takeProcessorTime(int& argc, char** argv)
{
    const auto isIt = [](const char* argument) { return argument == std::string_view("--processor-time"); };
    char** const end = std::remove_if(argv + 1, argv + argc, isIt);
    if (end != argv + argc)
        measureProcessorTime();
    argc = static_cast<int>(end - argv);
}

} // namespace

Program::Program(int& argc, char** argv)
    : m_Application(argc, argv)
    , m_Argc(argc)
    , m_Argv(argv)
{
    std::setlocale(LC_NUMERIC, "C"); // Qt has taken over the user's, and numbers are read and written here
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
    takeTimeOf(m_Argc, m_Argv);
    takeProcessorTime(m_Argc, m_Argv);
    benchmark::Initialize(&m_Argc, m_Argv);
    if (benchmark::ReportUnrecognizedArguments(m_Argc, m_Argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return reporter.hasErrors() ? 1 : 0;
}

} // namespace vireo_bench
