#include "benchmarks/plots/PlotWorks.h"

namespace vireo_bench {

std::vector<Entry> qCustomPlots(std::size_t, std::size_t, std::optional<double>)
{
    return {};
}

std::vector<Entry> qCustomPlotAgain(std::size_t, std::optional<double>)
{
    return {};
}

} // namespace vireo_bench
