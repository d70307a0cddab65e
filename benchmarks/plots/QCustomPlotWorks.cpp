#include <QApplication>
#include <qcustomplot.h>

#include "benchmarks/plots/PlotWorks.h"

namespace vireo_bench {

namespace {

// Curves over axes, smooth, with QCustomPlot's adaptive sampling.
class QCustomPlotShowing : public Contestant
{
public:
    QCustomPlotShowing(std::size_t numCurves, std::size_t numSamples)
        : m_X(plotX(numSamples))
        , m_Y(plotY(numSamples))
    {
        m_Plot.resize(PLOT_SIZE);
        for (std::size_t i = 0; i < numCurves; ++i)
            m_Plot.addGraph()->setAntialiased(true);
        m_Plot.show();
        QApplication::processEvents();
    }

    void run() override
    {
        for (int i = 0; i < m_Plot.graphCount(); ++i) {
            QVector<QCPGraphData> samples;
            samples.reserve(static_cast<int>(m_X.size()));
            for (std::size_t j = 0; j < m_X.size(); ++j)
                samples.append({m_X[j], m_Y[j] + i});
            m_Plot.graph(i)->data()->set(samples, true);
        }
        m_Plot.rescaleAxes();
        m_Plot.replot(QCustomPlot::rpImmediateRefresh);
        QApplication::processEvents();
    }

protected:
    QCustomPlot m_Plot;

private:
    std::vector<double> m_X;
    std::vector<double> m_Y;
};

class QCustomPlotAgain : public QCustomPlotShowing
{
public:
    explicit QCustomPlotAgain(std::size_t numSamples)
        : QCustomPlotShowing(1, numSamples)
    {
        QCustomPlotShowing::run();
    }

    void run() override
    {
        m_Plot.replot(QCustomPlot::rpImmediateRefresh);
        QApplication::processEvents();
    }
};

} // namespace

std::vector<Entry> qCustomPlotAgain(std::size_t numSamples, std::optional<double> ratioToReach)
{
    return {{"QCustomPlot", [=] { return std::make_unique<QCustomPlotAgain>(numSamples); }, ratioToReach, anyResult}};
}

std::vector<Entry> qCustomPlots(std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToReach)
{
    const auto make = [=] { return std::make_unique<QCustomPlotShowing>(numCurves, numSamples); };
    return {{"QCustomPlot", make, ratioToReach, anyResult}};
}

} // namespace vireo_bench
