#pragma once

#include <QImage>
#include <functional>

class QGLWidget;

namespace tavo {

class ViewContext;

// A picture of what a view shows, whether or not its window can be seen. Paints the view several times;
// the view's context must be current, and is so afterwards, whatever painting makes current or releases. While the
// picture is painted it is framebuffer 0, as the window is otherwise, where the driver makes pbuffers. Elsewhere it is
// painted into a framebuffer object, or where that will not do, and it has the view's size, into the window's back
// buffer. Null if it is larger than any of these can be.
QImage takePicture(QGLWidget& view, ViewContext& context, const QSize& size, const std::function<void()>& paint);

} // namespace tavo
