#pragma once

#include <QByteArray>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"

namespace tavo {

class PlotCurve;

// The samples of curves as comma-separated values: for each curve a column of its x and one of its y, or of both edges
// of a band, under a line with their names. Those within a range of x, if there is one. Numbers have all their digits;
// what is missing at the end of a shorter curve is left empty. The text comes in pieces, one for each call, and then an
// empty one: see saveFile(). The curves stay until then.
std::function<QByteArray()> curvesAsText(
    const std::vector<const PlotCurve*>& curves, const std::optional<AxisUpdate::Range>& x = {});

// Saves that text in a file whose name ends with "csv". Why it could not be saved, for a person; empty if it was.
std::string saveCurves(
    const QString& file, const std::vector<const PlotCurve*>& curves, const std::optional<AxisUpdate::Range>& x = {});

} // namespace tavo
