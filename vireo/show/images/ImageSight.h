#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>

namespace tavo {

// Which part of an image is seen, and how large: a pixel of the image is so many pixels of the screen wide. From 1 on
// magnifications are whole, so that all pixels are squares of one size.
struct ImageSight
{
    double scale = 1;
    QPointF centre; // in pixels of the image, what is in the middle of the view

    static constexpr double LEAST_SCALE = 1.0 / 4096;
    static constexpr double GREATEST_SCALE = 256;

    // All of an image of that size.
    static ImageSight fitting(const QSize& image, const QSize& view);

    // Steps larger, or smaller, with what is at that place of the view staying there.
    void zoom(int steps, const QPointF& place, const QSize& view);
    void zoomTo(double newScale, const QPointF& place, const QSize& view);

    // Some part of the image stays in view.
    void keepInView(const QSize& image);

    // Shows the same part of an image of another size, such as another level of a texture.
    void adapt(const QSizeF& before, const QSizeF& after);

    // Where the upper left corner of the image is in the view; on a whole pixel of the screen.
    QPointF origin(const QSize& view) const;

    QPointF toImage(const QPointF& place, const QSize& view) const;
    QPointF toView(const QPointF& point, const QSize& view) const;

    bool operator==(const ImageSight& other) const { return scale == other.scale && centre == other.centre; }
};

} // namespace tavo
