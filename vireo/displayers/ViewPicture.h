#pragma once

#include <QImage>
#include <functional>

class QGLWidget;

namespace tavo {

class ViewContext;

// A picture of what a view shows, of its size, whether or not its window can be seen. Paints the view several times;
// the view's context must be current, and is so afterwards, whatever painting makes current or releases. While the
// picture is painted it is framebuffer 0, as the window is otherwise, where the driver makes pbuffers. Elsewhere it is
// painted into a framebuffer object, or where that will not do, into the window's back buffer.
QImage takePicture(QGLWidget& view, ViewContext& context, const std::function<void()>& paint);

} // namespace tavo
