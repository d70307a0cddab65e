#pragma once

#include <cstdint>
#include <istream>
#include <string>

namespace vireo_view {

class InputBuffer;

// What the header of a PLY file says about its points.
struct PlyHeader
{
    std::uint64_t numPoints = 0;
    std::string coordinateType; // of x, y and z, by its short name; "double" where it is float and double
};

// Reads the header from the buffer's beginning and checks what the reader of the points takes for granted: that the
// header is well-formed, that there are points with the numbers x, y and z, that nothing before their end has a size of
// its own, and that the file is large enough for them. Throws InputError if not.
PlyHeader readPlyHeader(InputBuffer& input);

} // namespace vireo_view
