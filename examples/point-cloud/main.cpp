// A cloud of points in the debug window: a shell with a wavy surface.
#include <QApplication>
#include <cmath>
#include <memory>
#include <tavo/base/debug/EventDisplayer.h>
#include <tavo/points/PointSet.h>
#include <vireo/Library.h>
#include <vireo/displayers/GLEventDisplayer.h>
#include <vireo/displayers/GLPointCloudDisplayer.h>

#include "showDebugWindow.h"

namespace {

// Points that turn by the golden angle from one to the next, and so lie evenly.
std::unique_ptr<tavo::PointSet> makeShell(unsigned int numPoints)
{
    tavo::VertexDescriptor layout;
    layout.pushAttrib(tavo::VertexAttribDescriptor("position", 3, tavo::VertexAttribDescriptor::TYPE_FLOAT));
    auto points = std::make_unique<tavo::PointSet>(layout, numPoints);
    const tavo::AttributeAccessToken position = points->getAAT("position");
    for (unsigned int i = 0; i < numPoints; ++i) {
        const double z = 1 - (2 * i + 1.0) / numPoints;
        const double angle = 2.39996323 * i;
        const double radius = 40 + 3 * std::cos(6 * std::acos(z)) * std::cos(5 * angle);
        const double ring = radius * std::sqrt(1 - z * z);
        const float xyz[] = {static_cast<float>(50 + ring * std::cos(angle)), static_cast<float>(50 + radius * z),
            static_cast<float>(50 + ring * std::sin(angle))};
        points->set3f(i, position, xyz);
    }
    return points;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::initVireo();
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());

    // The displayer owns the points, and the window owns the displayer.
    tavo::sendGLEventObject("a shell", new tavo::GLPointCloudDisplayer(makeShell(20000).release()));
    return showDebugWindow();
}
