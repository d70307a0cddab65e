#include "vireo/displayers/ViewPicture.h"

#include <QGLFramebufferObject>
#include <QGLWidget>
#include <QScopeGuard>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/PlainPixels.h"
#include "vireo/displayers/ViewContext.h"

#include <GL/gl.h>

namespace tavo {

namespace {

using Paint = std::function<void()>;

bool hasFramebuffers()
{
    return isExtensionSupported("GL_EXT_framebuffer_object");
}

GLint boundFramebuffer()
{
    GLint framebuffer = 0;
    if (hasFramebuffers())
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer);
    return framebuffer;
}

void bindFramebuffer(GLint framebuffer)
{
    if (hasFramebuffers())
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer);
}

void paintInto(QGLWidget& view, const Paint& paint)
{
    view.makeCurrent();
    paint();
    view.makeCurrent(); // whatever the object has left current
}

// What has been drawn to the bound framebuffer, without alpha: a window shows none.
QImage readPixels(const QSize& size, GLenum buffer)
{
    const PlainPixels pixels;
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(0); // what the driver may not write
    glReadBuffer(buffer);
    glReadPixels(0, 0, picture.width(), picture.height(), GL_RGB, GL_UNSIGNED_BYTE, picture.bits());
    return picture.mirrored();
}

QImage paintToDrawable(QGLWidget& view, const QSize& size, const Paint& paint)
{
    paintInto(view, paint);
    const GLint framebuffer = boundFramebuffer();
    bindFramebuffer(0);
    const QImage picture = readPixels(size, view.doubleBuffer() ? GL_BACK : GL_FRONT);
    bindFramebuffer(framebuffer);
    return picture;
}

// Null if the driver has no such object, or if it may have been left while the view was painted: somebody has bound
// another one, or made the view current, as Qt does to draw text to the window.
QImage paintToFramebufferObject(QGLWidget& view, const ViewContext& context, const QSize& size, const Paint& paint)
{
    if (!QGLFramebufferObject::hasOpenGLFramebufferObjects())
        return {};
    QGLFramebufferObject target(size, QGLFramebufferObject::CombinedDepthStencil);
    if (!target.bind())
        return {};
    const unsigned int before = context.getNumMadeCurrent();
    paint();
    const bool wasMadeCurrent = context.getNumMadeCurrent() != before;
    view.makeCurrent();
    const bool isBound = boundFramebuffer() == static_cast<GLint>(target.handle());
    const QImage picture = isBound && !wasMadeCurrent ? readPixels(size, GL_COLOR_ATTACHMENT0_EXT) : QImage();
    target.release();
    return picture;
}

} // namespace

QImage takePicture(QGLWidget& view, ViewContext& context, const QSize& size, const Paint& paint)
{
    // Shows the camera of the paint before. Here, where the window is current as it will be later, the object makes
    // what it draws with.
    paintInto(view, paint);

    if (context.beginPbuffer(size)) {
        const auto end = qScopeGuard([&context] { context.endPbuffer(); });
        return paintToDrawable(view, size, paint);
    }
    const QImage picture = paintToFramebufferObject(view, context, size, paint);
    return picture.isNull() && size == view.size() ? paintToDrawable(view, size, paint) : picture;
}

} // namespace tavo
