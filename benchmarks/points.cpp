#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/support/inputs.h"
#include "benchmarks/works.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/points/PointSet.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

#include <GL/glu.h>

namespace vireo_bench {

namespace {

constexpr int VIEW_SIZE = 512;

// Draws points that lie in the unit cube around the origin.
class PointDrawing : public Contestant
{
public:
    void prepare() override
    {
        View::ofSize(VIEW_SIZE, VIEW_SIZE);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(45, 1, 0.01, 1000);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(0.8, 0.9, 1.4, 0, 0, 0, 0, 1, 0);
    }
    void run() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        draw();
        glFinish();
    }
    Bytes result() override { return View::ofSize(VIEW_SIZE, VIEW_SIZE).pixels(); }

protected:
    virtual void draw() = 0;
};

class DisplayerDrawing : public PointDrawing
{
public:
    explicit DisplayerDrawing(const Points& points)
        : m_Displayer(pointSetOf(points).release())
    {
        m_Displayer.setShowCoords(false);
    }

protected:
    void draw() override { m_Displayer.drawGL(nullptr, m_Camera); }

private:
    tavo::GLPointCloudDisplayer m_Displayer;
    tavo::Camera m_Camera;
};

class BareDrawing : public PointDrawing
{
public:
    explicit BareDrawing(Points points)
        : m_Points(std::move(points))
    {}

protected:
    void draw() override
    {
        glEnable(GL_DEPTH_TEST);
        glColor3f(1, 1, 1);
        glBegin(GL_POINTS);
        for (const tavo::Vector3f& point : m_Points)
            glVertex3fv(point.data());
        glEnd();
    }

private:
    Points m_Points;
};

} // namespace

Comparison drawPoints(const std::string& name, const std::function<Points()>& makePoints)
{
    return {"draw " + name, {{"vireo", [makePoints] { return std::make_unique<DisplayerDrawing>(makePoints()); }},
                                {"floor", [makePoints] { return std::make_unique<BareDrawing>(makePoints()); }, 1.05}}};
}

void addPointWorks()
{
    add(drawPoints("1,000,000 points", [] { return randomPoints(1'000'000); }));
    add(drawPoints("the scanned building", scannedPoints));
}

} // namespace vireo_bench
