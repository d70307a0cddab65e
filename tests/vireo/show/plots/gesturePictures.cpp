#include <QApplication>
#include <QDir>
#include <QToolButton>
#include <QWidget>
#include <cmath>
#include <cstdio>
#include <qwt_plot.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/plots/curves.h"
#include "vireo/show/plots/PlotMeasure.h"
#include "vireo/show/plots/PlotView.h"

// Makes the pictures of docs/plots.md that show a plot while a person works with it: gesturePictures FOLDER.

using namespace tavo;

namespace {

constexpr QSize SIZE(900, 500);
constexpr int NUM_SAMPLES = 2000;

class ShownPlot
{
public:
    ShownPlot()
    {
        PlotUpdate update;
        update.x.name = AxisUpdate::Name{"time", "s"};
        update.y.name = AxisUpdate::Name{"pressure", "Pa"};
        m_View.apply(update);
        m_View.resize(SIZE);
        m_View.show();
        QApplication::processEvents();
    }

    PlotView& view() { return m_View; }
    QWidget* canvas() { return m_View.getPlot().canvas(); }

    void send()
    {
        PlotUpdate update;
        update.curve("inlet").samples = samplesOf([](double t) { return 300 * std::sin(t); });
        update.curve("outlet").samples = samplesOf([](double t) { return 300 * std::exp(-0.1 * t) * std::sin(2 * t); });
        m_View.apply(update);
        QApplication::processEvents();
    }

    void append()
    {
        PlotUpdate update;
        for (int i = 0; i < NUM_SAMPLES; ++i)
            update.curve("inlet").append({0.01 * i, 101325 + 300 * std::sin(0.01 * i)});
        update.window = 10;
        m_View.apply(update);
        QApplication::processEvents();
    }

    QPoint at(double x, double y)
    {
        return {qRound(m_View.pixelMap(PlotSight::X).toPixel(x)), qRound(m_View.pixelMap(PlotSight::Y).toPixel(y))};
    }

    bool save(const QDir& folder, const char* name)
    {
        QApplication::processEvents();
        return m_View.grab().save(folder.filePath(name));
    }

private:
    template <typename Signal>
    static CurveSamples samplesOf(const Signal& signal)
    {
        std::vector<double> x;
        std::vector<double> y;
        for (int i = 0; i < NUM_SAMPLES; ++i) {
            x.push_back(0.01 * i);
            y.push_back(101325 + signal(x.back()));
        }
        return {numbers(std::move(x)), numbers(std::move(y)), {}, CurveKind::Line};
    }

    PlotView m_View{"pressure"};
};

bool saveZoomBox(const QDir& folder)
{
    ShownPlot plot;
    plot.send();
    const QPoint end = plot.at(8, 101120);
    pressMouse(plot.canvas(), Qt::RightButton, plot.at(3, 101560));
    moveMouse(plot.canvas(), Qt::RightButton, end);
    const bool isSaved = plot.save(folder, "plot-zoom-box.png");
    releaseMouse(plot.canvas(), Qt::RightButton, end);
    return isSaved && plot.view().getSight().isChosen(PlotSight::X);
}

bool saveCursors(const QDir& folder)
{
    ShownPlot plot;
    plot.send();
    clickKey(plot.canvas(), Qt::Key_M);
    return plot.save(folder, "plot-cursors.png") && plot.view().getMeasure().isOn();
}

bool saveFollowButton(const QDir& folder)
{
    ShownPlot plot;
    plot.append();
    dragMouse(plot.canvas(), Qt::LeftButton, plot.at(14, 101325), plot.at(16, 101325));
    const bool isOffered = plot.view().findChild<QToolButton*>("follow")->isVisible();
    return plot.save(folder, "plot-follow.png") && isOffered;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QDir folder(argc > 1 ? argv[1] : ".");
    const bool areMade = saveZoomBox(folder) && saveCursors(folder) && saveFollowButton(folder);
    if (!areMade)
        std::fprintf(stderr, "gesturePictures: not all pictures could be made\n");
    return areMade ? 0 : 1;
}
