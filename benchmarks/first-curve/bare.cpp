#include <QGLWidget>

#include "benchmarks/first-curve/painted.h"

namespace {

class View : public QGLWidget
{
protected:
    void paintGL() override
    {
        const std::vector<float> wave = vireo_bench::wave();
        glClear(GL_COLOR_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, 1, -0.5, 0.5, -1, 1);
        glColor3ub(255, 200, 0);
        glBegin(GL_LINE_STRIP);
        for (std::size_t i = 0; i < wave.size(); ++i)
            glVertex2f(static_cast<float>(i) / static_cast<float>(wave.size()), wave[i]);
        glEnd();
    }
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    View view;
    view.show();
    vireo_bench::Painted(view, 1);
    return 0;
}
