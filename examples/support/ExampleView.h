#pragma once

#include <QApplication>
#include <QGLWidget>
#include <cstdio>
#include <memory>
#include <string>
#include <tavo/base/files/saveFile.h>
#include <tavo/platform/wgl.h>
#include <utility>
#include <vireo/Library.h>
#include <vireo/context/GLContext.h>

#include <GL/glu.h>

// The window of the examples, and how an application brings its own GL context into the library: whatever has made the
// context, here a widget of Qt's, it is wrapped in a GLContext while it is current.
class ExampleView : public QGLWidget
{
public:
    // If there is a file name, a picture is also saved, and the program ended.
    explicit ExampleView(const QString& pictureFile)
        : m_PictureFile(pictureFile)
    {
        setFixedSize(320, 320);
    }

protected:
    // What an example does: make its GL objects, which live as long as the window does, and draw them, seen from the
    // origin towards negative Z.
    virtual void setUp(tavo::GLContext& context) = 0;
    virtual void draw(tavo::GLContext& context) = 0;

private:
    void initializeGL() override
    {
        m_Context = std::make_unique<tavo::GLContext>(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, this);
        m_Context->activate();
        setUp(*m_Context);
    }

    void paintGL() override
    {
        m_Context->activate();
        beginPicture();
        draw(*m_Context);
        if (m_PictureFile.isEmpty())
            return;
        // The first picture may be clipped: some drivers learn a window's size when they have shown it once.
        if (std::exchange(m_HasPainted, true))
            savePicture();
        else
            update();
    }

    void beginPicture()
    {
        glViewport(0, 0, width(), height());
        glClearColor(0.1f, 0.1f, 0.15f, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(40, 1, 0.1, 20);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    void savePicture()
    {
        const QString file = std::exchange(m_PictureFile, QString());
        const std::string error = tavo::savePicture(file, grabFrameBuffer());
        if (!error.empty())
            std::fprintf(stderr, "%s: the picture cannot be saved: %s\n", qPrintable(file), error.c_str());
        QCoreApplication::exit(error.empty() ? 0 : 1);
    }

    QString m_PictureFile;
    bool m_HasPainted = false;
    std::unique_ptr<tavo::GLContext> m_Context;
};

// Shows an example until its window is closed; or, with a file name as the argument, saves its picture and ends.
template <typename View>
int showExample(int argc, char** argv)
{
    QApplication application(argc, argv);
    tavo::initVireo();
    View view(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    if (!view.isValid()) {
        std::fputs("there is no OpenGL here: the example cannot be drawn\n", stderr);
        return 1;
    }
    view.show();
    return QApplication::exec();
}
