#pragma once

#include "apps/vireo-view/TablePlot.h"

namespace vireo_view {

// Shows the curves in the plot of their name.
void showPlot(PlotExhibit exhibit);

// Shows them behind what the plot has already; each has an x.
void appendToPlot(const PlotExhibit& exhibit);

} // namespace vireo_view
