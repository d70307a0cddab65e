#pragma once

#include <string>
#include <vector>

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/UniqueNames.h"

namespace vireo_view {

struct NamedColumn
{
    std::string name;
    NumberColumn values;
};

// Makes a geometry of columns of one length, by their names in any case: x, y and z, which must be there; nx, ny and
// nz; red, green, blue and maybe alpha, or their first letters; label, class or classification, if the numbers are
// whole. All others are scalars, each under a name of its own. A "scalar_" that some programs put before a name goes.
Geometry geometryOf(std::vector<NamedColumn> columns);

// The same of columns that belong to faces: colours, categories and scalars.
Geometry::OfFaces faceFieldsOf(std::vector<NamedColumn> columns);

// Gives the points colours of 3 or 4 channels, which may be numbers up to 1, or up to 255, or up to 65535.
void setColours(Geometry& geometry, NumberColumn colours, unsigned int numChannels);

// Adds numbers under a name of their own, or as labels if the name says so and they are whole.
void addField(Geometry& geometry, UniqueNames& names, const std::string& name, NumberColumn values);

} // namespace vireo_view
