#pragma once

#include <QSize>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "benchmarks/support/Comparison.h"

namespace vireo_bench {

// Of every plot that is measured.
constexpr QSize PLOT_SIZE(800, 500);

// What is plotted: 0, 1, 2 ..., and a wave with noise on it.
std::vector<double> plotX(std::size_t count);
std::vector<double> plotY(std::size_t count);

// Curves that are sent to a plot of vireo's and painted. What it waits for the screen is left out.
Entry showingCurves(std::size_t numCurves, std::size_t numSamples);

// The same with new y alone, over so many xs in turn.
Entry showingAgainOver(std::size_t numXs, std::size_t numCurves, std::size_t numSamples);

// Moves and zooms what is seen of a curve to and fro.
Entry movingAlong(std::size_t numSamples);

// Paints a plot again that has its samples, such as after a window before it has gone.
Entry paintingAgain(std::size_t numSamples);

// The samples of a curve copied into fresh memory.
Entry copyingSamples(std::size_t numSamples, std::optional<double> ratioToReach);

// A widget that draws every sample, without any axes.
Entry drawingAll(std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToReach);

// The same by QCustomPlot, with its adaptive sampling; none where it was not found.
std::vector<Entry> qCustomPlots(std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToReach);
std::vector<Entry> qCustomPlotAgain(std::size_t numSamples, std::optional<double> ratioToReach);

// The same by Qwt's own curves.
Entry bareQwt(std::size_t numCurves, std::size_t numSamples);
Entry bareQwtMovingAlong(std::size_t numSamples);

} // namespace vireo_bench
