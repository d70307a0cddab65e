#pragma once

#include <QSize>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/support/Comparison.h"

namespace vireo_bench {

// Of every plot that is measured.
constexpr QSize PLOT_SIZE(800, 500);

// What is plotted, made by the first call.
const std::vector<double>& plotX(std::size_t count);
const std::vector<double>& plotY(std::size_t count);

// The same curves, sent and painted; none where QCustomPlot was not found.
std::vector<Entry> qCustomPlots(std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToReach);

// A curve whose samples are there, painted again.
std::vector<Entry> qCustomPlotAgain(std::size_t numSamples, std::optional<double> ratioToReach);

} // namespace vireo_bench
