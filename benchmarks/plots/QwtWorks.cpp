#include <QApplication>
#include <memory>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_div.h>

#include "benchmarks/plots/PlotWorks.h"

namespace vireo_bench {

namespace {

// Qwt's own curves, smooth, with all that it has to draw less.
class QwtShowing : public Contestant
{
public:
    QwtShowing(std::size_t numCurves, std::size_t numSamples)
        : m_X(plotX(numSamples))
        , m_Y(plotY(numSamples))
    {
        (new QwtPlotGrid)->attach(&m_Plot);
        for (std::size_t i = 0; i < numCurves; ++i) {
            m_Curves.push_back(new QwtPlotCurve); // the plot owns it
            m_Curves.back()->setRenderHint(QwtPlotItem::RenderAntialiased);
            m_Curves.back()->setPaintAttribute(QwtPlotCurve::FilterPoints);
            m_Curves.back()->attach(&m_Plot);
        }
        m_Plot.resize(PLOT_SIZE);
        m_Plot.show();
        QApplication::processEvents();
    }

    void run() override
    {
        for (std::size_t i = 0; i < m_Curves.size(); ++i) {
            QVector<QPointF> samples;
            samples.reserve(static_cast<int>(m_X.size()));
            for (std::size_t j = 0; j < m_X.size(); ++j)
                samples.append({m_X[j], m_Y[j] + static_cast<double>(i)});
            m_Curves[i]->setSamples(samples);
        }
        m_Plot.replot();
        QApplication::processEvents();
    }

protected:
    QwtPlot m_Plot;

private:
    std::vector<double> m_X;
    std::vector<double> m_Y;
    std::vector<QwtPlotCurve*> m_Curves;
};

class QwtMovingAlong : public QwtShowing
{
public:
    explicit QwtMovingAlong(std::size_t numSamples)
        : QwtShowing(1, numSamples)
        , m_Length(static_cast<double>(numSamples))
    {
        QwtShowing::run();
    }

    void run() override
    {
        for (const double from : {0.26, 0.28, 0.26, 0.25})
            show(from, from + 0.5);
        show(0.3, 0.7);
        show(0.25, 0.75);
    }
    double repetitions() const override { return 6; }

private:
    void show(double from, double to)
    {
        m_Plot.setAxisScale(QwtPlot::xBottom, from * m_Length, to * m_Length);
        m_Plot.replot();
        QApplication::processEvents();
    }

    double m_Length;
};

} // namespace

Entry bareQwt(std::size_t numCurves, std::size_t numSamples)
{
    return {"Qwt", [=] { return std::make_unique<QwtShowing>(numCurves, numSamples); }, std::nullopt, anyResult};
}

Entry bareQwtMovingAlong(std::size_t numSamples)
{
    return {"Qwt", [=] { return std::make_unique<QwtMovingAlong>(numSamples); }, std::nullopt, anyResult};
}

} // namespace vireo_bench
