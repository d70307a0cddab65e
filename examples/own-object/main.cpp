// An object of one's own in the debug window: a spring, which draws itself and takes over the data of a newer one.
#include <QApplication>
#include <cmath>
#include <tavo/base/debug/EventDisplayer.h>
#include <utility>
#include <vector>
#include <vireo/Library.h>
#include <vireo/context/GLExtensions.h>
#include <vireo/displayers/GLEventDisplayer.h>
#include <vireo/displayers/GLEventObject.h>

#include "showDebugWindow.h"

namespace {

class Spring : public tavo::GLEventObject
{
public:
    Spring(float radius, float height, int numTurns)
        : m_Box({-radius, 0, -radius}, {radius, height, radius})
    {
        constexpr int stepsPerTurn = 64;
        const int numSteps = numTurns * stepsPerTurn;
        for (int i = 0; i <= numSteps; ++i) {
            const float angle = 6.2831853f * static_cast<float>(i) / stepsPerTurn;
            m_Points.emplace_back(radius * std::cos(angle), height * i / numSteps, radius * std::sin(angle));
        }
    }

    // The view places its camera by it.
    tavo::Box3f getBoundingBox() override { return m_Box; }

    // The view's context is current, and its matrices are loaded.
    void drawGL(QGLWidget*, tavo::Camera&) override
    {
        glLineWidth(3);
        glBegin(GL_LINE_STRIP);
        for (const tavo::Vector3f& point : m_Points) {
            const float height = point[1] / m_Box.getMax()[1];
            glColor3f(1, 1 - height, 0.2f);
            glVertex3fv(point.data());
        }
        glEnd();
        glLineWidth(1);
    }

    // What is sent under a name that is shown already comes here. It is freed afterwards.
    void updateData(tavo::GLEventObject* newer) override
    {
        if (auto* const spring = dynamic_cast<Spring*>(newer)) {
            m_Box = spring->m_Box;
            m_Points = std::move(spring->m_Points);
        }
    }

    // There is nothing to configure.
    tavo::GLEventConfiguration* createConfigWindow(QWidget*) override { return nullptr; }

private:
    tavo::Box3f m_Box;
    std::vector<tavo::Vector3f> m_Points;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::initVireo();
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());

    tavo::sendGLEventObject("a spring", new Spring(20, 100, 8)); // the window owns it
    tavo::sendGLEventObject("a spring", new Spring(20, 60, 8));  // and now it is pressed
    return showDebugWindow();
}
