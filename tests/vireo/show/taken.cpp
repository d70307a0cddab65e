#include "tests/vireo/show/taken.h"

namespace tavo {

namespace {

std::vector<std::string> namesOf(const PlotUpdate& plot)
{
    std::vector<std::string> names;
    for (const CurveUpdate& curve : plot.curves)
        names.push_back(curve.name);
    return names;
}

} // namespace

std::unique_ptr<PlotUpdate> takePlot(const std::string& name)
{
    std::unique_ptr<PlotUpdate> plot;
    for (Batch::Part& part : inbox::take())
        if (part.slot->name == name)
            plot.reset(static_cast<PlotUpdate*>(part.pending.update.release()));
    return plot;
}

std::vector<std::string> takeCurves(const std::string& name)
{
    const auto plot = takePlot(name);
    return plot ? namesOf(*plot) : std::vector<std::string>();
}

std::vector<std::string> curvesOf(const Batch::Part& part)
{
    return namesOf(static_cast<const PlotUpdate&>(*part.pending.update));
}

} // namespace tavo
