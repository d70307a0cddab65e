#pragma once

#include <QImage>
#include <QRect>
#include <functional>

#include "vireo/Export.h"

namespace tavo {

// How pictures are cut.
struct Tiling
{
    int largest = 4096; // along a side; every driver has framebuffers of the default
    int margin = 32;    // around what is used of a tile, for thick lines and points
    QImage::Format format = QImage::Format_RGB888;
};

// A picture of that size, of tiles; of one, if it is no larger than they are. `takeTile` takes what lies in a rectangle
// of the picture, or a little beyond it: what is drawn there and reaches inside must be seen. Null if there is no
// memory for the picture, or a tile is null.
VIREO_EXPORT QImage joinTiles(
    const QSize& size, const std::function<QImage(const QRect&)>& takeTile, const Tiling& tiling = {});

} // namespace tavo
