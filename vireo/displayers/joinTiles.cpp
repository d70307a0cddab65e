#include "vireo/displayers/joinTiles.h"

#include <QPainter>
#include <algorithm>

namespace tavo {

QImage joinTiles(const QSize& size, const std::function<QImage(const QRect&)>& takeTile)
{
    constexpr int LARGEST = 4096; // along a side
    constexpr int MARGIN = 32;    // for thick lines and points
    constexpr int STEP = LARGEST - 2 * MARGIN;
    if (std::max(size.width(), size.height()) <= LARGEST)
        return takeTile(QRect(QPoint(0, 0), size));
    QImage picture(size, QImage::Format_RGB888);
    QPainter painter;
    if (picture.isNull() || !painter.begin(&picture))
        return {};
    for (int y = 0; y < size.height(); y += STEP)
        for (int x = 0; x < size.width(); x += STEP) {
            const QRect tile(x, y, std::min(STEP, size.width() - x), std::min(STEP, size.height() - y));
            const QMargins margins(MARGIN, MARGIN, MARGIN, MARGIN);
            painter.drawImage(tile, takeTile(tile.marginsAdded(margins)), QRect(QPoint(MARGIN, MARGIN), tile.size()));
        }
    return picture;
}

} // namespace tavo
