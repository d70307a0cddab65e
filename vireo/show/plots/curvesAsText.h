#pragma once

#include <QByteArray>
#include <functional>
#include <vector>

namespace tavo {

class PlotCurve;

// The samples as comma-separated values: two columns for each curve, x and y, under a line with their names. Numbers
// have all their digits; what is missing at the end of a shorter curve is left empty. The text comes in pieces, one for
// each call, and then an empty one: see saveFile(). The curves stay until then.
std::function<QByteArray()> curvesAsText(const std::vector<const PlotCurve*>& curves);

} // namespace tavo
