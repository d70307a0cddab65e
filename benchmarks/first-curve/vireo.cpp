#include <QGLWidget>

#include "benchmarks/first-curve/painted.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "vireo/Library.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLGraphDisplayer.h"

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::initVireo();
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());
    tavo::debugOutputGraph("a wave", vireo_bench::wave(), {255, 200, 0, 255});
    // The first paint does not know the camera yet.
    vireo_bench::Painted(*tavo::debugOutput.getWindow()->findChild<QGLWidget*>(), 2);
    return 0;
}
