#pragma once

#include <memory>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"
#include "vireo/show/window/View.h"

class QwtPlot;

namespace tavo {

class PlotCurve;

// A plot: its curves over two axes with numbers, and a legend where there are several.
class PlotView : public View
{
public:
    explicit PlotView(const std::string& name);
    ~PlotView() override;

    void apply(ViewUpdate& update) override;
    QImage picture(QSize size) override;
    std::string saveData(const QString& file) override;

private:
    void applyCurve(CurveUpdate& update);
    void showAxis(int axis, const AxisUpdate& update);
    void showLegend();
    void fit();

    std::vector<std::unique_ptr<PlotCurve>> m_Curves; // in the order in which they came
    std::size_t m_NumColours = 0;
    AxisUpdate m_X;
    AxisUpdate m_Y;
    QwtPlot* m_Plot;
};

} // namespace tavo
