#include "benchmarks/plots/PlotWorks.h"

#include <QApplication>
#include <QPainter>
#include <QPolygonF>
#include <cmath>
#include <memory>
#include <numeric>
#include <qwt_plot.h>
#include <random>

#include "vireo/show/Numbers.h"
#include "vireo/show/plots/PlotView.h"

namespace vireo_bench {

namespace {

// A curve as a plot is sent it: copied.
void addCurve(tavo::PlotUpdate& update, std::size_t number, const std::vector<double>& x, const std::vector<double>& y)
{
    tavo::CurveUpdate& curve = update.curve("curve " + std::to_string(number));
    curve.samples = tavo::CurveSamples{tavo::Numbers(x), tavo::Numbers(y), {}, tavo::CurveKind::Line};
}

class PlotShowing : public Contestant
{
public:
    PlotShowing(std::size_t numCurves, std::size_t numSamples, std::size_t numXs = 1, bool isXNew = true)
        : m_IsXNew(isXNew)
        , m_Xs(numXs, plotX(numSamples))
        , m_Ys(numCurves, plotY(numSamples))
    {
        for (std::size_t i = 0; i < numCurves; ++i)
            for (double& y : m_Ys[i])
                y += static_cast<double>(i);
        m_View.resize(PLOT_SIZE);
        m_View.show();
        QApplication::processEvents();
    }

    // New samples each time, or copies of the old ones would be found; of the same ranges, as the peer's are.
    void prepare() override
    {
        constexpr double LITTLE = 1e-6;
        for (std::vector<double>& y : m_Ys)
            y[y.size() / 2] += LITTLE;
        if (m_IsXNew)
            for (std::vector<double>& x : m_Xs)
                x[x.size() / 2] += LITTLE;
    }

    void run() override
    {
        tavo::PlotUpdate update;
        for (std::size_t i = 0; i < m_Ys.size(); ++i)
            addCurve(update, i, m_Xs[i % m_Xs.size()], m_Ys[i]);
        m_View.apply(update);
        QApplication::processEvents();
    }

protected:
    bool m_IsXNew;
    std::vector<std::vector<double>> m_Xs;
    std::vector<std::vector<double>> m_Ys;
    tavo::PlotView m_View{"plot"};
};

class MovingAlong : public PlotShowing
{
public:
    explicit MovingAlong(std::size_t numSamples)
        : PlotShowing(1, numSamples)
        , m_Middle(static_cast<double>(numSamples) / 2)
    {
        PlotShowing::run();
        m_View.getSight().zoom(tavo::PlotSight::X, 0.5, m_Middle);
        show();
    }

    void prepare() override {}
    void run() override
    {
        for (const double part : {0.01, 0.02, -0.02, -0.01}) {
            m_View.getSight().move(tavo::PlotSight::X, part);
            show();
        }
        for (const double factor : {0.8, 1 / 0.8}) {
            m_View.getSight().zoom(tavo::PlotSight::X, factor, m_Middle);
            show();
        }
    }
    double repetitions() const override { return 6; }

private:
    void show()
    {
        m_View.showChoice();
        QApplication::processEvents();
    }

    double m_Middle;
};

class PaintingAgain : public PlotShowing
{
public:
    explicit PaintingAgain(std::size_t numSamples)
        : PlotShowing(1, numSamples)
    {
        PlotShowing::run();
    }

    void prepare() override {}
    void run() override
    {
        m_View.getPlot().replot();
        QApplication::processEvents();
    }
};

class Copying : public Contestant
{
public:
    explicit Copying(std::size_t numSamples)
        : m_X(plotX(numSamples))
        , m_Y(plotY(numSamples))
    {}
    void run() override
    {
        m_CopyOfX = std::make_unique<std::vector<double>>(m_X);
        m_CopyOfY = std::make_unique<std::vector<double>>(m_Y);
    }
    void cleanUp() override
    {
        m_CopyOfX.reset();
        m_CopyOfY.reset();
    }

private:
    std::vector<double> m_X;
    std::vector<double> m_Y;
    std::unique_ptr<std::vector<double>> m_CopyOfX;
    std::unique_ptr<std::vector<double>> m_CopyOfY;
};

class DrawingAll : public Contestant
{
public:
    DrawingAll(std::size_t numCurves, std::size_t numSamples)
        : m_Widget(numCurves, numSamples)
    {
        m_Widget.resize(PLOT_SIZE);
        m_Widget.show();
        QApplication::processEvents();
    }
    void run() override
    {
        m_Widget.update();
        QApplication::processEvents();
    }

private:
    class Widget : public QWidget
    {
    public:
        Widget(std::size_t numCurves, std::size_t numSamples)
            : m_NumCurves(numCurves)
            , m_Y(plotY(numSamples))
        {}

    protected:
        void paintEvent(QPaintEvent*) override
        {
            const double height = this->height() / static_cast<double>(m_NumCurves + 1);
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing);
            for (std::size_t curve = 0; curve < m_NumCurves; ++curve) {
                QPolygonF line;
                line.reserve(static_cast<int>(m_Y.size()));
                for (std::size_t i = 0; i < m_Y.size(); ++i)
                    line.push_back({static_cast<double>(i) / static_cast<double>(m_Y.size()) * width(),
                        (m_Y[i] + static_cast<double>(curve)) * height});
                painter.drawPolyline(line);
            }
        }

    private:
        std::size_t m_NumCurves;
        std::vector<double> m_Y;
    };

    Widget m_Widget;
};

template <typename Kind, typename... Arguments>
std::function<std::unique_ptr<Contestant>()> with(Arguments... arguments)
{
    return [=] { return std::make_unique<Kind>(arguments...); };
}

} // namespace

std::vector<double> plotX(std::size_t count)
{
    std::vector<double> x(count);
    std::iota(x.begin(), x.end(), 0.0);
    return x;
}

std::vector<double> plotY(std::size_t count)
{
    std::vector<double> y(count);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(0, 0.1);
    for (std::size_t i = 0; i < count; ++i)
        y[i] = 0.4 * std::sin(30.0 * static_cast<double>(i) / static_cast<double>(count)) + noise(random);
    return y;
}

Entry showingCurves(std::size_t numCurves, std::size_t numSamples)
{
    return {"vireo", with<PlotShowing>(numCurves, numSamples)};
}

Entry showingAgainOver(std::size_t numXs, std::size_t numCurves, std::size_t numSamples)
{
    return {"vireo", with<PlotShowing>(numCurves, numSamples, numXs, false)};
}

Entry movingAlong(std::size_t numSamples)
{
    return {"vireo", with<MovingAlong>(numSamples)};
}

Entry paintingAgain(std::size_t numSamples)
{
    return {"vireo", with<PaintingAgain>(numSamples)};
}

Entry copyingSamples(std::size_t numSamples, std::optional<double> ratioToReach)
{
    return {"copying", with<Copying>(numSamples), ratioToReach, anyResult};
}

Entry drawingAll(std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToReach)
{
    return {"every sample", with<DrawingAll>(numCurves, numSamples), ratioToReach, anyResult};
}

} // namespace vireo_bench
