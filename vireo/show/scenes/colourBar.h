#pragma once

#include <QRectF>
#include <QString>
#include <vector>

#include "vireo/show/colours/ColourMap.h"

class QFontMetricsF;
class QPainter;

namespace tavo {

// The numbers beside a bar of colours, whose least stands at its lower edge.
struct ColourBarNumbers
{
    struct Tick
    {
        double y;
        QString label;
    };

    std::vector<Tick> ticks;
    QString title; // of the field, in what its numbers count, and from where
};

// For a range that may be a single number.
ColourBarNumbers colourBarNumbers(
    const QRectF& bar, double from, double to, const QString& field, const QFontMetricsF& font);

// How wide the bar is with its numbers and its title.
double widthOfColourBar(const QRectF& bar, double from, double to, const QString& field, const QFontMetricsF& font);

// Draws the bar, its numbers to the right of it and its title above, with the pen and the font that are set.
void drawColourBar(
    QPainter& painter, const QRectF& bar, const ColourMap& map, double from, double to, const QString& field);

} // namespace tavo
