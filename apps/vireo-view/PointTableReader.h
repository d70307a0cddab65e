#pragma once

#include <vector>

#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/TableParser.h"

namespace vireo_view {

// Reads a text with a line for each point: x, y and z, and whatever is behind them (see TableParser). The number of
// points may come first. Columns without names are taken for colours, normals or scalars by their numbers. Throws
// InputError if a line is no point.
GeometryFile readPointTable(InputBuffer& input);

// Makes points of a table whose columns of x, y and z are these.
GeometryFile pointsOfTable(Table table, const std::vector<std::size_t>& xyz);

} // namespace vireo_view
