#pragma once

#include <QPolygonF>
#include <QRectF>

namespace tavo {

// Lines that go to and fro may cover what is seen many times over. More of them show nothing new there.

// How many pixels of a view a line covers, one by one: about.
double coveredPixels(const QPolygonF& line, const QRectF& view);

// Of each so many points in a row the first, the last, and the farthest in each direction, in their order: what sticks
// out stays.
QPolygonF thinnedOut(const QPolygonF& line, int numTogether);

} // namespace tavo
