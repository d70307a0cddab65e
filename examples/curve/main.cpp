#include <QApplication>
#include <cmath>
#include <cstddef>
#include <tavo/base/debug/DebugOutput.h>
#include <tavo/base/debug/EventDisplayer.h>
#include <vector>
#include <vireo/Library.h>
#include <vireo/displayers/GLEventDisplayer.h>
#include <vireo/displayers/GLGraphDisplayer.h>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::initVireo();
    tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());

    std::vector<float> wave(500);
    for (std::size_t i = 0; i < wave.size(); ++i)
        wave[i] = 0.4f * std::sin(0.05f * i);
    tavo::debugOutputGraph("a wave", wave, {255, 200, 0, 255});
    tavo::debugOutput << "a wave of " << wave.size() << " samples\n";
    return application.exec();
}
