#pragma once

#include <QPointF>
#include <QString>

class QPainter;

namespace tavo {

// Says how large things are in an orthographic view.
struct ScaleBar
{
    double length = 0; // in units of the scene: 1, 2 or 5 times a power of ten
    double pixels = 0;
    QString label;
};

// The longest one that is no longer than so many pixels.
ScaleBar scaleBarOf(double unitsPerPixel, double mostPixels, const QString& unit = {});

// Draws it to the right of a place, with its label above, with the pen and the font that are set.
void drawScaleBar(QPainter& painter, const ScaleBar& bar, const QPointF& leftEnd);

} // namespace tavo
