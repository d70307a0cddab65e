#include <map>
#include <pybind11/stl.h>
#include <variant>
#include <vector>

#include "python/VolumeArgument.h"
#include "python/colour.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using SlicesClass = py::class_<SlicesHandle>;
using OverlayClass = py::class_<SliceOverlayHandle, SlicesHandle>;
using Names = std::variant<std::vector<std::string>, std::map<std::int64_t, std::string>>;
using Size = std::optional<VolumeSize>;

constexpr const char* WHERE =
    " Samples have the shape (nz, ny, nx), or (nz, ny, nx, 3) or (nz, ny, nx, 4) for colours; or any shape, x fastest, "
    "with a size (nx, ny, nz). spacing is one number or three, for x, y and z; origin is where the first sample is.";

SlicesHandle sendSlices(const std::string& name, const py::object& samples, const Size& size, const py::object& spacing,
    const py::object& origin, const py::object& orientation)
{
    const VolumeArgument volume(samples, size, spacing, origin, orientation);
    return {name, withoutGil([&] {
                return volume.isOriented()
                           ? slices(name, volume.samples(), volume.size(), volume.spacing(), volume.origin(),
                                 volume.orientation())
                           : slices(name, volume.samples(), volume.size(), volume.spacing(), volume.origin());
            })};
}

SliceOverlayHandle sendOverlay(const SlicesHandle& handle, const py::object& samples, const Size& size,
    const py::object& spacing, const py::object& origin, const py::object& orientation)
{
    const VolumeArgument volume(samples, size, spacing, origin, orientation);
    return {handle, "overlay", withoutGil([&] {
                return handle.slices.overlay(
                    volume.samples(), volume.size(), volume.spacing(), volume.origin(), volume.orientation());
            })};
}

// Those of the volume's samples, which have its shape, or nothing but its order.
SliceOverlay sendLabelsOfItsSamples(const Slices& slices, const py::object& samples, const LabelNames& names)
{
    const NumberArgument labels(samples, "samples");
    if (labels.isLookedAt() && labels.getNumDimensions() != 3 && labels.getNumDimensions() != 1)
        labels.refuseShape("(nz, ny, nx)");
    return withoutGil([&] { return slices.labels(CopiedTuples<Samples>(labels.copy()), names); });
}

SliceOverlayHandle sendLabels(const SlicesHandle& handle, const py::object& samples, const Names& names,
    const Size& size, const py::object& spacing, const py::object& origin, const py::object& orientation)
{
    const LabelNames called = std::visit([](const auto& all) { return LabelNames(all); }, names);
    if (!size && spacing.is_none() && origin.is_none() && orientation.is_none())
        return {handle, "labels", sendLabelsOfItsSamples(handle.slices, samples, called)};
    const VolumeArgument labels(samples, size, spacing, origin, orientation);
    return {handle, "labels", withoutGil([&] {
                return handle.slices.labels(
                    labels.samples(), labels.size(), labels.spacing(), labels.origin(), labels.orientation(), called);
            })};
}

SliceOverlayHandle& sendLabelColours(SliceOverlayHandle& handle, const std::map<std::int64_t, py::object>& colours)
{
    std::map<std::int64_t, RGBA8> ofLabels;
    for (const auto& [label, colour] : colours)
        ofLabels[label] = colourOf(colour);
    withoutGil([&] { handle.overlay.colours(ofLabels); });
    return handle;
}

template <typename Handle, typename Shown, typename... Bases>
void addLooks(py::class_<Handle, Bases...>& shown, Shown Handle::*member)
{
    shown.def(
        "window",
        [member](Handle& handle, double low, double high) -> Handle& {
            (handle.*member).window(low, high);
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, WithoutGil(),
        "The numbers that are darkest and brightest, or have the first and the last colour of the map.");
    shown.def(
        "colour_map",
        [member](Handle& handle, const std::string& name) -> Handle& {
            (handle.*member).colourMap(name);
            return handle;
        },
        py::arg("name"), SAME_HANDLE, WithoutGil(), "The map from numbers to colours, such as \"bone\".");
}

void addOverlay(py::module_& module)
{
    OverlayClass overlay(module, "SliceOverlay", madeByCalls(),
        "What lies on the volume of slices: their overlay, or their labels. It has the operations of the slices, too. "
        "Every operation returns it, or what was sent.");
    addLooks(overlay, &SliceOverlayHandle::overlay);
    overlay.def(
        "opacity",
        [](SliceOverlayHandle& handle, double opacity) -> SliceOverlayHandle& {
            handle.overlay.opacity(opacity);
            return handle;
        },
        py::arg("opacity"), SAME_HANDLE, WithoutGil(), "How much it hides of what is below, from 0 to 1.");
    overlay.def(
        "outlines",
        [](SliceOverlayHandle& handle, bool areShown) -> SliceOverlayHandle& {
            handle.overlay.outlines(areShown);
            return handle;
        },
        py::arg("are_shown") = true, SAME_HANDLE, WithoutGil(),
        "Whether only the edges of labels are seen, and not what is within.");
    overlay.def("colours", &sendLabelColours, py::arg("colours"), SAME_HANDLE,
        "The colours of labels, in a dict; the others have those of categories.");
    overlay.def("__repr__", [](const SliceOverlayHandle& handle) {
        return "<" + handle.what + " of vireo.slices(" + quoted(handle.name) + ")>";
    });
}

void addWhatLiesOnThem(SlicesClass& shown)
{
    shown.def("overlay", &sendOverlay, py::arg("samples"), py::arg("size") = py::none(), py::arg("spacing") = 1.0,
        py::arg("origin") = py::make_tuple(0.0, 0.0, 0.0), py::arg("orientation") = py::none(),
        (std::string("Sends a second volume, in colours of its own, which may have another size and lie elsewhere.") +
            WHERE)
            .c_str());
    shown.def("labels", &sendLabels, py::arg("samples"), py::arg("names") = std::vector<std::string>(),
        py::arg("size") = py::none(), py::arg("spacing") = py::none(), py::arg("origin") = py::none(),
        py::arg("orientation") = py::none(),
        "The category of each sample of the volume, of its shape (nz, ny, nx), in the colours of categories. The "
        "pointer shows their names: a list, from category 0 on, or a dict. 0 is none.\n\n"
        "With a size, a spacing, an origin or an orientation, which are as those of a volume, the labels have a shape "
        "of their own and lie where these say.");
    shown.def(
        "remove_overlay",
        [](SlicesHandle& handle) -> SlicesHandle& {
            handle.slices.removeOverlay();
            return handle;
        },
        SAME_HANDLE, WithoutGil(), "Takes the overlay away.");
    shown.def(
        "remove_labels",
        [](SlicesHandle& handle) -> SlicesHandle& {
            handle.slices.removeLabels();
            return handle;
        },
        SAME_HANDLE, WithoutGil(), "Takes the labels away.");
}

} // namespace

void addSlices(py::module_& module)
{
    SlicesClass shown(module, "Slices", madeByCalls(),
        "A volume in three planes through a crosshair, in a view of the window. slices(name, samples) makes it.\n\n"
        "Every operation may be called by any thread, and returns the slices or what was sent.");
    addLooks(shown, &SlicesHandle::slices);
    addOverlay(module); // before what returns one, which says so in its signature
    addWhatLiesOnThem(shown);
    shown.def(
        "crosshair",
        [](SlicesHandle& handle, double x, double y, double z) -> SlicesHandle& {
            handle.slices.crosshair(x, y, z);
            return handle;
        },
        py::arg("x"), py::arg("y"), py::arg("z"), SAME_HANDLE, WithoutGil(),
        "Moves the crosshair to a place, in the coordinates of origin and spacing.");
    shown.def("__repr__", [](const SlicesHandle& handle) { return "vireo.slices(" + quoted(handle.name) + ")"; });
    shown.def("_repr_png_", [](const SlicesHandle& handle) { return pngOf(handle.name); });
    module.def(
        "slices",
        [](const std::string& name) {
            return SlicesHandle{name, withoutGil([&] { return tavo::slices(name); })};
        },
        py::arg("name"), "The slices of that name, to which nothing is sent.");
    module.def("slices", &sendSlices, py::arg("name"), py::arg("samples"), py::arg("size") = py::none(),
        py::arg("spacing") = 1.0, py::arg("origin") = py::make_tuple(0.0, 0.0, 0.0),
        py::arg("orientation") = py::none(),
        (std::string("Sends a volume: samples of any type.") + WHERE +
            " With an orientation, the directions of x, y and z, x leads to the right of a patient, y to the front and "
            "z upwards, and letters name the sides.\n\n"
            "    import numpy, vireo\n\n"
            "    z, y, x = numpy.mgrid[-1:1:64j, -1:1:64j, -1:1:64j]\n"
            "    vireo.slices(\"ball\", x * x + y * y + z * z).crosshair(32, 32, 32)\n"
            "    vireo.show()")
            .c_str());
}

} // namespace tavo::python
