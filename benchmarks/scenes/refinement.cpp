#include <QApplication>
#include <QPainter>

#include "benchmarks/scenes/BareCloud.h"
#include "benchmarks/scenes/clouds.h"
#include "vireo/show/scenes/SceneView.h"

namespace vireo_bench {

namespace {

constexpr std::size_t TEN_MILLION = 10'000'000;

// A view at rest, from when it has to be drawn until it shows all points.
class Refinement : public Contestant
{
public:
    Refinement()
    {
        m_View.setAttribute(Qt::WA_ShowWithoutActivating);
        m_View.setWindowFlags(Qt::Window | Qt::BypassWindowManagerHint);
        m_View.resize(VIEW_SIZE);
        m_View.show();
        tavo::SceneUpdate update;
        update.items["item"] = cloudOf(TEN_MILLION);
        m_View.apply(update);
        run();
    }
    void run() override
    {
        tavo::SceneUpdate nothing;
        m_View.apply(nothing);
        do
            QApplication::processEvents();
        while (m_View.isBusy());
    }

private:
    tavo::SceneView m_View{"scene"};
};

class BareDrawing : public Contestant
{
public:
    BareDrawing()
    {
        m_Cloud.upload(hills(TEN_MILLION));
        m_Camera.fit(m_Cloud.box(), {double(VIEW_SIZE.width()), double(VIEW_SIZE.height())});
    }
    void run() override { m_Cloud.draw(m_Camera); }

private:
    BareCloud m_Cloud;
    tavo::SceneCamera m_Camera;
};

} // namespace

void addRefinement()
{
    add({"10,000,000 points at rest, until all are shown",
        {{"vireo", std::make_unique<Refinement>}, {"bare draw", std::make_unique<BareDrawing>, 1.2, anyResult}}});
}

} // namespace vireo_bench
