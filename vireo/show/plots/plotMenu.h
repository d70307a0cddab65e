#pragma once

class QPoint;

namespace tavo {

class PlotView;

// Opens a menu of what can be done with a plot. What its dock can do, such as saving it, is in there, too.
void openPlotMenu(PlotView& view, const QPoint& place);

} // namespace tavo
