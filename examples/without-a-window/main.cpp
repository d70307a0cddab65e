// A picture from a program without a window, on a machine without a display: EGL makes the context, and a render
// texture takes the place of the window.
#define EGL_NO_X11 // whose macros get in everybody's way

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <QImage>
#include <QString>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <tavo/base/files/saveFile.h>
#include <tavo/platform/wgl.h>
#include <vireo/context/GLContext.h>
#include <vireo/context/GLExtensions.h>
#include <vireo/geometry/GLSimpleObjects.h>
#include <vireo/offscreen/GLRenderTextureFBO.h>

namespace {

// Without a surface to draw to.
bool makeContextCurrent()
{
    EGLDisplay const display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API))
        return false;
    const EGLint attributes[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint numConfigs = 0;
    eglChooseConfig(display, attributes, &config, 1, &numConfigs);
    EGLContext const context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    return eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context);
}

// A wave of bars.
void drawBars(tavo::GLContext& context)
{
    for (int x = -6; x <= 6; ++x) {
        for (int z = -6; z <= 6; ++z) {
            const float height = 1.3f + std::cos(0.7f * std::hypot(float(x), float(z)));
            tavo::GLSimpleBox bar;
            bar.setup({x - 0.4, 0, z - 0.4}, {x + 0.4, height, z + 0.4});
            glColor3f(0.3f, height / 2.5f, 0.8f);
            bar.draw(&context, nullptr);
        }
    }
}

void draw(tavo::GLContext& context)
{
    glClearColor(0.1f, 0.1f, 0.15f, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    for (const GLenum capability : {GL_DEPTH_TEST, GL_LIGHTING, GL_LIGHT0, GL_COLOR_MATERIAL, GL_NORMALIZE})
        glEnable(capability);
    glMatrixMode(GL_PROJECTION);
    glFrustum(-0.5, 0.5, -0.5, 0.5, 1, 100);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, -1, -21);
    glRotatef(35, 1, 0, 0);
    glRotatef(-40, 0, 1, 0);
    drawBars(context);
}

std::string savePicture(tavo::GLContext& context, const QString& file)
{
    tavo::GLRenderTextureFBO target(&context);
    if (!target.create(320, 320, 4, tavo::GLRenderTextureFBO::FLAG_DEPTH))
        return "the driver has no such render texture";
    target.activate();
    draw(context);
    const std::unique_ptr<tavo::RGBAImage> picture(target.getRGBAImage());
    target.deactivate();
    return tavo::savePicture(file, picture->toQImage().mirrored()); // GL's row 0 is at the bottom
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || !makeContextCurrent()) {
        std::fputs(argc == 2 ? "there is no OpenGL here\n" : "usage: without-a-window PICTURE.png\n", stderr);
        return 1;
    }
    tavo::GLContext context(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
    context.activate();
    const std::string error = savePicture(context, argv[1]);
    if (!error.empty())
        std::fprintf(stderr, "%s: the picture cannot be saved: %s\n", argv[1], error.c_str());
    return error.empty() ? 0 : 1;
}
