#include <QApplication>
#include <QGLWidget>
#include <algorithm>
#include <array>
#include <utility>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/works.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"

#include <GL/gl.h>

namespace vireo_bench {

namespace {

const std::string NAME = "curves";

// The same curves from their ends to their beginnings.
Curves reversed(Curves curves)
{
    for (std::vector<float>& curve : curves)
        std::reverse(curve.begin(), curve.end());
    return curves;
}

// Shows curves in a view, which shows others, by turns: what is sent has the same box, so that the camera stays.
class Showing : public Contestant
{
public:
    Showing(std::size_t numCurves, std::size_t numSamples)
        : m_Curves(makeCurves(numCurves, numSamples))
        , m_Others(reversed(m_Curves))
        , m_Colours(makeColours(numCurves))
    {}
    void prepare() override { std::swap(m_Curves, m_Others); }
    void run() override
    {
        send();
        QApplication::processEvents();
        view().makeCurrent();
        glFinish();
    }
    // What was painted, and what is painted next.
    Bytes result() override
    {
        Bytes pictures = pixels();
        prepare();
        run();
        const Bytes next = pixels();
        pictures.insert(pictures.end(), next.begin(), next.end());
        return pictures;
    }

protected:
    virtual void send() = 0;
    virtual QGLWidget& view() = 0;

    Curves m_Curves;
    Curves m_Others;
    std::vector<tavo::RGBA8> m_Colours;

private:
    Bytes pixels()
    {
        QGLWidget& shown = view();
        shown.makeCurrent();
        Bytes bytes(
            std::size_t{4} * static_cast<std::size_t>(shown.width()) * static_cast<std::size_t>(shown.height()));
        glReadBuffer(GL_FRONT);
        glReadPixels(0, 0, shown.width(), shown.height(), GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
        glReadBuffer(GL_BACK);
        return bytes;
    }
};

// The view in the debug window.
QGLWidget& debugView()
{
    auto* const widget = tavo::debugOutput.getWindow()->findChild<tavo::GLEventDisplayerWidget*>();
    return *widget->findChild<QGLWidget*>();
}

class DebugOutputShowing : public Showing
{
public:
    // Shows them for the first time, in a view of a usual size, and paints until the camera has come to rest.
    DebugOutputShowing(std::size_t numCurves, std::size_t numSamples)
        : Showing(numCurves, numSamples)
    {
        constexpr unsigned int HEIGHT_256 = 8;
        send();
        tavo::debugOutput.getWindow()->findChild<tavo::GLEventDisplayerWidget*>()->setSizeIndex(HEIGHT_256);
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }

protected:
    void send() override { tavo::debugOutputGraphs(NAME, m_Curves, m_Colours); }
    QGLWidget& view() override { return debugView(); }
};

// A widget that draws the curves as the debug output's view does, with the camera that it has.
class BareShowing : public Showing
{
public:
    BareShowing(std::size_t numCurves, std::size_t numSamples)
        : Showing(numCurves, numSamples)
    {
        if (!tavo::debugOutput.getWindow())
            DebugOutputShowing(numCurves, numSamples); // measured alone, it has no view to take the camera of yet
        m_View.resize(debugView().size());
        m_View.takeCameraOf(debugView());
        m_View.show();
        QApplication::processEvents();
    }

protected:
    void send() override { m_View.showCurves(m_Curves, m_Colours); }
    QGLWidget& view() override { return m_View; }

private:
    class View : public QGLWidget
    {
    public:
        void takeCameraOf(QGLWidget& other)
        {
            other.makeCurrent();
            glGetFloatv(GL_PROJECTION_MATRIX, m_Projection.data());
            glGetFloatv(GL_MODELVIEW_MATRIX, m_ModelView.data());
        }

        // The sender may forget them.
        void showCurves(const Curves& curves, const std::vector<tavo::RGBA8>& colours)
        {
            m_Curves = curves;
            m_Colours = colours;
            update();
        }

    protected:
        void paintGL() override
        {
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            glViewport(0, 0, width(), height());
            glMatrixMode(GL_PROJECTION);
            glLoadMatrixf(m_Projection.data());
            glMatrixMode(GL_MODELVIEW);
            glLoadMatrixf(m_ModelView.data());
            for (std::size_t curve = 0; curve < m_Curves.size(); ++curve)
                drawCurve(m_Curves[curve], m_Colours[curve]);
        }

    private:
        static void drawCurve(const std::vector<float>& curve, const tavo::RGBA8& colour)
        {
            const auto count = static_cast<float>(curve.size());
            glColor4ubv(colour.data());
            glBegin(GL_LINE_STRIP);
            for (std::size_t i = 0; i < curve.size(); ++i)
                glVertex3f(static_cast<float>(i) / count, curve[i], 0);
            glEnd();
        }

        std::array<float, 16> m_Projection{};
        std::array<float, 16> m_ModelView{};
        Curves m_Curves;
        std::vector<tavo::RGBA8> m_Colours;
    };

    View m_View;
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> with(std::size_t numCurves, std::size_t numSamples)
{
    return [numCurves, numSamples] { return std::make_unique<Kind>(numCurves, numSamples); };
}

} // namespace

Comparison showCurves(std::size_t numCurves, std::size_t numSamples)
{
    const std::string curves = std::to_string(numCurves) + " curves of " + withCommas(numSamples) + " samples";
    return {"show " + curves + ", sent to painted", {{"vireo", with<DebugOutputShowing>(numCurves, numSamples)},
                                                        {"floor", with<BareShowing>(numCurves, numSamples), 1.10}}};
}

void addCurveWorks()
{
    add(showCurves(10, 100'000));
}

} // namespace vireo_bench
