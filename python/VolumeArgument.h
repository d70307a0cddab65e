#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <pybind11/stl.h>

#include "python/NumberArgument.h"
#include "vireo/show/Grid.h"

namespace tavo::python {

// Three numbers. Throws a TypeError, which names the argument, if it is of another shape.
Vector3d vectorOf(const py::handle& argument, const char* what);

// Along x, y and z.
using VolumeSize = std::array<std::int64_t, 3>;

// A volume as arguments have it: samples whose last index is x, or of the size that is said, and where they are.
class VolumeArgument
{
public:
    // The orientation has the directions of x, y and z. What is None is as if it were left out.
    VolumeArgument(const py::object& samples, const std::optional<VolumeSize>& size, const py::object& spacing,
        const py::object& origin, const py::object& orientation);

    // One copy; to be called without the interpreter's lock.
    Samples samples() const { return CopiedTuples<Samples>(m_Samples.copy()); }

    GridSize size() const { return {m_Size[0], m_Size[1], m_Size[2]}; }
    const Spacing& spacing() const { return m_Spacing; }
    const Vector3d& origin() const { return m_Origin; }
    Orientation orientation() const { return m_Orientation.value_or(Orientation()); }
    bool isOriented() const { return m_Orientation.has_value(); }

private:
    NumberArgument m_Samples;
    VolumeSize m_Size;
    Spacing m_Spacing;
    Vector3d m_Origin;
    std::optional<Orientation> m_Orientation;
};

} // namespace tavo::python
