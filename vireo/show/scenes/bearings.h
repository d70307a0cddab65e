#pragma once

#include <QLineF>
#include <QRectF>
#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "tavo/base/math/vectors.h"

class QFontMetricsF;
class QPainter;

namespace tavo {

// Where a point is in the picture, from the top left corner; nowhere if it is behind the eye.
using ToPicture = std::function<std::optional<QPointF>(const Vector3d&)>;

// An edge of the box around the data, with numbers along it.
struct Bearing
{
    struct Tick
    {
        QPointF place;
        QString label; // empty where it has no room
        QRectF labelBox;
    };

    int axis = 0;     // 0, 1 and 2 for x, y and z
    QLineF edge;      // in the picture, up the axis
    QPointF outwards; // across the edge, away from the box; one pixel long
    std::vector<Tick> ticks;
    QString title; // the axis, in what its numbers count, and from where
    QRectF titleBox;
};

// The numbered edges of a box, at most one for each axis: of those on the outline of the box, the lower one, or the
// left one if it goes up. Numbers stand outside, and do not touch. An axis has none if it is seen from its end, and no
// axis has any if a part of the box is behind the eye.
std::vector<Bearing> bearingsOf(const Box3d& box, const ToPicture& toPicture, const QFontMetricsF& font,
    const std::array<QString, 3>& names = {"x", "y", "z"});

// Of the edges of a box, those that are not in front of it: nine, where three faces are seen.
std::vector<QLineF> edgesBehind(const Box3d& box, const ToPicture& toPicture);

// Draws them with the pen and the font that are set.
void drawBearings(QPainter& painter, const std::vector<Bearing>& bearings);

} // namespace tavo
