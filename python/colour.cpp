#include "python/colour.h"

#include <cstdint>
#include <pybind11/stl.h>
#include <vector>

namespace tavo::python {

namespace py = pybind11;

RGBA8 colourOf(const py::handle& colour)
{
    RGBA8 bytes(0, 0, 0, 255);
    try {
        const auto numbers = py::cast<std::vector<std::uint8_t>>(colour);
        if (numbers.size() == 3 || numbers.size() == 4) {
            for (std::size_t i = 0; i < numbers.size(); ++i)
                bytes[static_cast<unsigned int>(i)] = numbers[i];
            return bytes;
        }
    } catch (const py::cast_error&) {
        // as if there were too few
    }
    throw py::type_error(
        "a colour is three or four whole numbers from 0 to 255: red, green, blue and, if you like, opacity");
}

} // namespace tavo::python
