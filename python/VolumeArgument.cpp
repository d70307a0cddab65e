#include "python/VolumeArgument.h"

namespace tavo::python {

namespace {

// That of the array, whose last index is x.
VolumeSize sizeOf(const NumberArgument& samples, const std::optional<VolumeSize>& size)
{
    if (size || !samples.isLookedAt())
        return size.value_or(VolumeSize{});
    const std::size_t numDimensions = samples.getNumDimensions();
    const bool areColours = numDimensions == 4 && (samples.getExtent(3) == 3 || samples.getExtent(3) == 4);
    if (numDimensions != 3 && !areColours)
        samples.refuseShape(
            "(nz, ny, nx), or (nz, ny, nx, 3) or (nz, ny, nx, 4) for colours; another shape needs a size");
    VolumeSize extents;
    for (std::size_t i = 0; i < 3; ++i)
        extents[i] = static_cast<std::int64_t>(samples.getExtent(2 - i));
    return extents;
}

Spacing spacingOf(const py::handle& argument)
{
    if (argument.is_none())
        return 1;
    const NumberArgument spacing(argument, "spacing");
    if (spacing.isLookedAt() && spacing.getNumDimensions() == 0)
        return spacing.number();
    return vectorOf(argument, "spacing");
}

std::optional<Orientation> orientationOf(const py::object& argument)
{
    if (argument.is_none())
        return {};
    const NumberArgument numbers(argument, "orientation");
    if (numbers.isLookedAt() &&
        !(numbers.getNumDimensions() == 2 && numbers.getExtent(0) == 3 && numbers.getExtent(1) == 3))
        numbers.refuseShape("(3, 3)");
    const Numbers rows = numbers.copy();
    if (rows.isEmpty())
        return Orientation();
    const auto axis = [&rows](std::size_t first) { return Vector3d(rows[first], rows[first + 1], rows[first + 2]); };
    return Orientation{axis(0), axis(3), axis(6)};
}

} // namespace

Vector3d vectorOf(const py::handle& argument, const char* what)
{
    const NumberArgument vector(argument, what);
    if (vector.isLookedAt() && !(vector.getNumDimensions() == 1 && vector.getExtent(0) == 3))
        vector.refuseShape("(3,)");
    const Numbers numbers = vector.copy();
    return numbers.isEmpty() ? Vector3d() : Vector3d(numbers[0], numbers[1], numbers[2]);
}

VolumeArgument::VolumeArgument(const py::object& samples, const std::optional<VolumeSize>& size,
    const py::object& spacing, const py::object& origin, const py::object& orientation)
    : m_Samples(samples, "samples")
    , m_Size(sizeOf(m_Samples, size))
    , m_Spacing(spacingOf(spacing))
    , m_Origin(origin.is_none() ? Vector3d() : vectorOf(origin, "origin"))
    , m_Orientation(orientationOf(orientation))
{}

} // namespace tavo::python
