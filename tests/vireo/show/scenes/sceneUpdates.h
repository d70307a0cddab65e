#pragma once

#include <QColor>
#include <QImage>
#include <cmath>
#include <utility>
#include <vector>

#include "vireo/show/Tuples.h"
#include "vireo/show/scenes/SceneView.h"

namespace tavo {

// What tests of scenes send, and what they look for.

inline ItemUpdate item(ItemKind kind, const Points& points, const Points& ends = {}, const Faces& faces = {})
{
    ItemUpdate update;
    update.shape.emplace();
    update.shape->kind = kind;
    update.shape->points.numbers = points;
    update.shape->ends.numbers = ends;
    update.shape->faces = {faces, faces.width() ? faces.width() : 3};
    update.shape->numCorners = faces.getNumCorners();
    return update;
}

inline void send(SceneView& view, const std::string& path, ItemUpdate update)
{
    SceneUpdate scene;
    scene.items[path] = std::move(update);
    view.apply(scene);
}

inline SceneUpdate seenFrom(const std::string& side, bool isOrthographic = true)
{
    SceneUpdate scene;
    scene.side = side;
    scene.isOrthographic = isOrthographic;
    return scene;
}

inline int numPixels(const QImage& picture, const QColor& colour)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            number += picture.pixelColor(x, y) == colour;
    return number;
}

// Of a point that is so large, about: its edge depends on where in a pixel its middle is.
inline int numPixelsOfDisc(double diameter)
{
    int number = 0;
    for (double x = 0.5; x < diameter; ++x)
        for (double y = 0.5; y < diameter; ++y)
            number += std::hypot(x - diameter / 2, y - diameter / 2) <= diameter / 2;
    return number;
}

// Of all pixels of the colour; invalid if there are none.
inline QRect rectOf(const QImage& picture, const QColor& colour)
{
    QRect rect;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == colour)
                rect |= QRect(x, y, 1, 1);
    return rect;
}

} // namespace tavo
