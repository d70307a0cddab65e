#include "vireo/displayers/joinTiles.h"

#include <QPainter>
#include <algorithm>

namespace tavo {

QImage joinTiles(const QSize& size, const std::function<QImage(const QRect&)>& takeTile, const Tiling& tiling)
{
    const int margin = tiling.margin;
    const int step = tiling.largest - 2 * margin;
    if (std::max(size.width(), size.height()) <= tiling.largest)
        return takeTile(QRect(QPoint(0, 0), size));
    QImage picture(size, tiling.format);
    QPainter painter;
    if (picture.isNull() || !painter.begin(&picture))
        return {};
    for (int y = 0; y < size.height(); y += step)
        for (int x = 0; x < size.width(); x += step) {
            const QRect tile(x, y, std::min(step, size.width() - x), std::min(step, size.height() - y));
            const QImage drawn = takeTile(tile.marginsAdded({margin, margin, margin, margin}));
            if (drawn.isNull())
                return {};
            painter.drawImage(tile, drawn, QRect(QPoint(margin, margin), tile.size()));
        }
    return picture;
}

} // namespace tavo
