#include "apps/vireo-view/showPlot.h"

#include <utility>

#include "vireo/show/show.h"

namespace vireo_view {

namespace {

tavo::Plot plotWithAxes(const PlotExhibit& exhibit)
{
    const tavo::Plot plot = tavo::plot(exhibit.name)
                                .xAxis(exhibit.x.label, exhibit.x.unit)
                                .yAxis(exhibit.y.label, exhibit.y.unit)
                                .y2Axis(exhibit.y2.label, exhibit.y2.unit)
                                .timeX(exhibit.isTime);
    for (const PlotExhibit::Curve& curve :
        exhibit.curves) // all of them: plots have curves in the order in which they are named
        plot.style(curve.name, curve.isOnY2 ? "y2" : "");
    return plot;
}

} // namespace

void showPlot(PlotExhibit exhibit)
{
    const tavo::Statement together;
    const tavo::Plot plot = plotWithAxes(exhibit);
    const bool hasX = !exhibit.xs.empty();
    const tavo::Numbers x(std::move(exhibit.xs)); // all curves share them
    for (PlotExhibit::Curve& curve : exhibit.curves) {
        const tavo::Numbers y(std::move(curve.y));
        hasX ? plot.curve(curve.name, x, y) : plot.curve(curve.name, y);
    }
}

void appendToPlot(const PlotExhibit& exhibit)
{
    const tavo::Statement together;
    const tavo::Plot plot = plotWithAxes(exhibit);
    for (const PlotExhibit::Curve& curve : exhibit.curves)
        plot.append(curve.name, exhibit.xs, curve.y);
}

} // namespace vireo_view
