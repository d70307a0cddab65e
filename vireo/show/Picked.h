#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace tavo {

/// What a person clicked in a scene, in the terms in which the program sent it:
///
///     #include <iostream>
///     #include <vireo/show/Scene.h>
///
///     tavo::scene("world").onPick([](const tavo::Picked& picked) {
///         std::cout << picked.path << ", point " << picked.index << " at " << picked.position[2] << " m\n";
///         for (const tavo::Picked::Field& field : picked.fields)
///             std::cout << field.name << ": " << field.value << "\n";
///     });
///
/// Coordinates are in the units that were sent.
struct Picked
{
    /// Of those numbers that were sent under a name: that of the point, or of the face or line if they are as many.
    struct Field
    {
        std::string name;
        double value = 0;
    };

    /// The item's.
    std::string path;

    /// The point, vertex, arrow or box, counted from 0 as it was sent; points that are not shown count too. Of a
    /// surface or a line it is the vertex or point that is nearest to the place; of the axes of a frame, 0 to 2; of a
    /// volume the sample that hides what is behind it.
    std::size_t index = 0;

    /// The face of a surface, or the line of `lines` and `segments`, counted from 0; of anything else it is the index.
    std::size_t element = 0;

    /// The coordinates of that point, vertex, start of an arrow, lesser corner of a box, origin of a frame or sample
    /// of a volume, as they were sent: before `transform`.
    Vector3d position;

    /// The place in the scene, after `transform`: of a cloud that of the point, of a volume that of the sample, of
    /// anything else what was clicked on it.
    Vector3d place;

    /// Red, green, blue and opacity of the point, or of the face or line, and the normal, if they were sent.
    std::optional<RGBA8> colour;
    std::optional<Vector3d> normal;

    /// In the order in which they were sent first, those of labels too.
    std::vector<Field> fields;
};

} // namespace tavo
