#include <QApplication>
#include <qcustomplot.h>

#include "benchmarks/peers/Scene.h"

namespace vireo_bench {

namespace {

// The curves by QCustomPlot, on black and without anything around them. It thins samples out that fall together in a
// column of pixels, unless it is to draw them all.
class PlotCurves : public Scene
{
public:
    explicit PlotCurves(bool drawsAll)
        : m_DrawsAll(drawsAll)
    {
        m_Plot.setBackground(Qt::black);
        m_Plot.axisRect()->setAutoMargins(QCP::msNone);
        m_Plot.axisRect()->setMargins({});
        m_Plot.xAxis->setVisible(false);
        m_Plot.yAxis->setVisible(false);
        m_Plot.xAxis->setRange(-0.35, 1.4); // so that they are as large as in vireo's view
        m_Plot.yAxis->setRange(-0.8, 0.8);
        m_Plot.setNotAntialiasedElements(QCP::aeAll);
        m_Plot.setAttribute(Qt::WA_ShowWithoutActivating);
        m_Plot.setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
        m_Plot.resize(SIZE, SIZE);
        m_Plot.show();
        QApplication::processEvents();
    }
    void load() override
    {
        for (std::size_t curve = 0; curve < m_Curves.size(); ++curve)
            addGraph(m_Curves[curve], m_Colours[curve]);
    }
    void unload() override { m_Plot.clearGraphs(); }
    void draw() override { m_Plot.replot(QCustomPlot::rpImmediateRefresh); }
    Bytes pixels() override
    {
        const QImage picture = m_Plot.grab().toImage().convertToFormat(QImage::Format_RGBA8888).mirrored();
        return {picture.constBits(), picture.constBits() + picture.sizeInBytes()};
    }

private:
    void addGraph(const std::vector<float>& curve, const tavo::RGBA8& colour)
    {
        QVector<QCPGraphData> samples;
        samples.reserve(static_cast<int>(curve.size()));
        for (std::size_t i = 0; i < curve.size(); ++i)
            samples.append({static_cast<double>(i) / static_cast<double>(curve.size()), double{curve[i]}});
        QCPGraph& graph = *m_Plot.addGraph();
        graph.setPen(QColor(colour[0], colour[1], colour[2]));
        graph.setAdaptiveSampling(!m_DrawsAll);
        graph.data()->set(samples, true);
    }

    bool m_DrawsAll;
    QCustomPlot m_Plot;
    Curves m_Curves = makeCurves(NUM_CURVES, NUM_SAMPLES);
    std::vector<tavo::RGBA8> m_Colours = makeColours(NUM_CURVES);
};

const Showings showings = {
    {Subject::CURVES, "QCustomPlot", [] { return std::make_unique<PlotCurves>(false); }},
    {Subject::CURVES, "QCustomPlot, every sample", [] { return std::make_unique<PlotCurves>(true); }},
};

} // namespace

} // namespace vireo_bench
