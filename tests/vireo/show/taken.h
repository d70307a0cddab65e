#pragma once

#include <string>
#include <vector>

#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

// What waits for a plot, which is taken with all else; null if nothing does.
std::unique_ptr<PlotUpdate> takePlot(const std::string& name);

// The names of the curves that wait for it.
std::vector<std::string> takeCurves(const std::string& name);
std::vector<std::string> curvesOf(const Batch::Part& part);

} // namespace tavo
