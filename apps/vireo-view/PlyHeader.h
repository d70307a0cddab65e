#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/vireo-view/NumberColumn.h"

namespace vireo_view {

class InputBuffer;

struct PlyProperty
{
    std::string name;
    NumberKind type; // of a list, its items' type
    bool isList = false;
    NumberKind countType = NumberKind::UINT8; // of a list, the type of its length
};

struct PlyElement
{
    std::string name;
    std::uint64_t count = 0;
    std::vector<PlyProperty> properties = {};

    bool holdsPoints() const { return name == "vertex" || name == "vertices"; }
    bool holdsFaces() const { return name == "face" || name == "faces"; }
};

// What the header of a PLY file says.
struct PlyHeader
{
    bool isBinary = false;
    bool isBigEndian = false;
    std::vector<PlyElement> elements;
};

// Reads the header from the buffer's beginning and checks that it is well-formed, that there are points with the
// numbers x, y and z, and that the file is large enough for them and for what comes before. Throws InputError if not.
PlyHeader readPlyHeader(InputBuffer& input);

} // namespace vireo_view
