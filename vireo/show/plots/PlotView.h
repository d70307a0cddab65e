#pragma once

#include <array>
#include <memory>
#include <vector>

#include "vireo/show/plots/PlotSight.h"
#include "vireo/show/plots/PlotUpdate.h"
#include "vireo/show/window/View.h"

class QwtPlot;
class QwtPlotGrid;

namespace tavo {

class PlotCurve;
struct Extent;

// A plot: its curves over axes with numbers, and a legend where there are several.
class PlotView : public View
{
public:
    explicit PlotView(const std::string& name);
    ~PlotView() override;

    void apply(ViewUpdate& update) override;
    QImage picture(QSize size) override;
    std::string saveData(const QString& file) override;

    // Which part is seen; whoever changes it calls showSight().
    PlotSight& getSight() { return m_Sight; }
    void showSight();

    QwtPlot& getPlot() { return *m_Plot; }
    const std::vector<std::unique_ptr<PlotCurve>>& getCurves() const { return m_Curves; }

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyCurve(CurveUpdate& update);
    void applyAxis(PlotSight::Axis axis, AxisUpdate& update);
    void showLegend();
    void showColours();
    void fit();
    Extent xExtent() const;

    // Has the axes of a plot of that size numbered.
    void divideAxes(const QRectF& plot);
    void divideAxis(PlotSight::Axis axis, double pixels);

    std::vector<std::unique_ptr<PlotCurve>> m_Curves; // in the order in which they came
    std::size_t m_NumColours = 0;
    std::array<AxisUpdate, PlotSight::NUM_AXES> m_Axes;
    PlotSight m_Sight;
    QwtPlot* m_Plot;
    QwtPlotGrid* m_Grid;
};

} // namespace tavo
