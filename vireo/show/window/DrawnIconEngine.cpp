#include "vireo/show/window/DrawnIconEngine.h"

#include <QPainter>
#include <QPixmap>

namespace tavo {

QPixmap DrawnIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state)
{
    if (size.isEmpty())
        return {};
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, pixmap.rect(), mode, state);
    return pixmap;
}

} // namespace tavo
