#pragma once

#include <QImage>
#include <QRect>
#include <functional>

namespace tavo {

// A picture of that size, of tiles that every driver has framebuffers for; of one, if it is no larger. `takeTile` takes
// what lies in a rectangle of the picture, or a little beyond it: what is drawn there and reaches inside must be seen.
// Null if there is no memory for the picture.
QImage joinTiles(const QSize& size, const std::function<QImage(const QRect&)>& takeTile);

} // namespace tavo
