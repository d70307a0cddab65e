#include <QApplication>
#include <QPainter>
#include <QPolygonF>
#include <cmath>
#include <map>
#include <memory>
#include <qwt_plot.h>
#include <random>

#include "benchmarks/plots/PlotWorks.h"
#include "benchmarks/support/Program.h"
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

// Sends curves to a plot and has it painted; what it waits for the screen is left out.
class PlotShowing : public Contestant
{
public:
    PlotShowing(std::size_t numCurves, std::size_t numSamples)
        : m_X(plotX(numSamples))
    {
        for (std::size_t i = 0; i < numCurves; ++i) {
            m_Ys.push_back(plotY(numSamples));
            for (double& y : m_Ys.back())
                y += static_cast<double>(i);
        }
        m_View.resize(PLOT_SIZE);
        m_View.show();
        QApplication::processEvents();
    }

    // New samples each time, or copies of the old ones would be found; of the same ranges, as the peer's are.
    void prepare() override
    {
        constexpr double LITTLE = 1e-6;
        const std::size_t middle = m_X.size() / 2;
        m_X[middle] += LITTLE;
        for (std::vector<double>& ys : m_Ys)
            ys[middle] += LITTLE;
    }

    void run() override
    {
        tavo::PlotUpdate update;
        for (std::size_t i = 0; i < m_Ys.size(); ++i)
            addCurve(update, i, m_X, m_Ys[i]);
        m_View.apply(update);
        QApplication::processEvents();
    }

protected:
    std::vector<double> m_X;
    std::vector<std::vector<double>> m_Ys;
    tavo::PlotView m_View{"plot"};
};

// Moves what is seen of a curve to and fro.
class Panning : public PlotShowing
{
public:
    explicit Panning(std::size_t numSamples)
        : PlotShowing(1, numSamples)
    {
        PlotShowing::run();
        m_View.getSight().zoom(tavo::PlotSight::X, 0.5, static_cast<double>(numSamples) / 2);
        m_View.showChoice();
        QApplication::processEvents();
    }

    void prepare() override {}
    void run() override
    {
        for (const double part : {0.01, 0.02, -0.02, -0.01}) {
            m_View.getSight().move(tavo::PlotSight::X, part);
            m_View.showChoice();
            QApplication::processEvents();
        }
    }
    double repetitions() const override { return 4; }
};

// Paints a plot again that has its samples, such as after a window before it has gone.
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

// The samples copied into fresh memory.
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
    const std::vector<double>& m_X;
    const std::vector<double>& m_Y;
    std::unique_ptr<std::vector<double>> m_CopyOfX;
    std::unique_ptr<std::vector<double>> m_CopyOfY;
};

// A widget that draws every sample, without any axes.
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
            , m_NumSamples(numSamples)
        {}

    protected:
        void paintEvent(QPaintEvent*) override
        {
            const std::vector<double>& y = plotY(m_NumSamples);
            const double height = this->height() / static_cast<double>(m_NumCurves + 1);
            QPainter painter(this);
            painter.setRenderHint(QPainter::Antialiasing);
            for (std::size_t curve = 0; curve < m_NumCurves; ++curve) {
                QPolygonF line;
                line.reserve(static_cast<int>(m_NumSamples));
                for (std::size_t i = 0; i < m_NumSamples; ++i)
                    line.push_back({static_cast<double>(i) / static_cast<double>(m_NumSamples) * width(),
                        (y[i] + static_cast<double>(curve)) * height});
                painter.drawPolyline(line);
            }
        }

    private:
        std::size_t m_NumCurves;
        std::size_t m_NumSamples;
    };

    Widget m_Widget;
};

template <typename Kind, typename... Arguments>
std::function<std::unique_ptr<Contestant>()> with(Arguments... arguments)
{
    return [=] { return std::make_unique<Kind>(arguments...); };
}

void addShowing(
    std::size_t numCurves, std::size_t numSamples, std::optional<double> ratioToPeer, std::optional<double> ratioToAll)
{
    const std::string curves = numCurves == 1 ? "a curve" : std::to_string(numCurves) + " curves";
    Comparison comparison{"plot " + curves + " of " + withCommas(numSamples) + " samples, sent to painted",
        {{"vireo", with<PlotShowing>(numCurves, numSamples)}}};
    for (Entry& peer : qCustomPlots(numCurves, numSamples, ratioToPeer))
        comparison.entries.push_back(std::move(peer));
    if (ratioToAll)
        comparison.entries.push_back({"every sample", with<DrawingAll>(numCurves, numSamples), ratioToAll, anyResult});
    add(std::move(comparison));
}

void addWorks()
{
    addShowing(10, 100'000, 0.7, 0.15);
    addShowing(1, 1'000, {}, {});
    Comparison again{
        "paint a smooth line of 1,000 samples again", {{"vireo", with<PaintingAgain>(std::size_t{1'000})}}};
    for (Entry& peer : qCustomPlotAgain(1'000, 0.6))
        again.entries.push_back(std::move(peer));
    add(std::move(again));
    add({"move along 10,000,000 samples, a frame",
        {{"vireo", with<Panning>(std::size_t{10'000'000})},
            {"10,000 samples", with<Panning>(std::size_t{10'000}), 2.5, anyResult}}});
    for (const std::size_t count : {1'000u, 100'000u, 1'000'000u, 10'000'000u})
        add({"first picture of " + withCommas(count) + " samples",
            {{"vireo", with<PlotShowing>(std::size_t{1}, count)},
                {"copying", with<Copying>(count), count == 10'000'000 ? std::optional(3.0) : std::nullopt,
                    anyResult}}});
}

} // namespace

const std::vector<double>& plotX(std::size_t count)
{
    static std::map<std::size_t, std::vector<double>> made;
    std::vector<double>& x = made[count];
    for (std::size_t i = x.size(); i < count; ++i)
        x.push_back(static_cast<double>(i));
    return x;
}

// A wave with noise on it.
const std::vector<double>& plotY(std::size_t count)
{
    static std::map<std::size_t, std::vector<double>> made;
    std::vector<double>& y = made[count];
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(0, 0.1);
    for (std::size_t i = y.size(); i < count; ++i)
        y.push_back(0.4 * std::sin(30.0 * static_cast<double>(i) / static_cast<double>(count)) + noise(random));
    return y;
}

} // namespace vireo_bench

int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    addWorks();
    return program.run();
}
